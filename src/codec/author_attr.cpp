#include "codec/author_attr.h"

#include <aaadom/codes.h>
#include <aaadom/domain.h>

#include <algorithm>
#include <cstring>
#include <iterator>

#include "codec/field_table.h"

namespace aaadom {
namespace {

// The kind-18 text runs over its 32 bytes into the byte that follows them.
constexpr uint16_t kKind18Size = 33;
static_assert(offsetof(AuthorAttr, kind18_byte) ==
              offsetof(AuthorAttr, kind18_text) + kKind18Size - 1);
// The first four words of kind 3 travel as one block.
constexpr uint16_t kKind3BlockSize = 16;
constexpr size_t kKind3Word5 = offsetof(AuthorAttr, kind3_words) + kKind3BlockSize;

constexpr size_t Rate(size_t index) {
    return offsetof(AuthorAttr, kind21_rates) + index * sizeof(uint32_t);
}

#define AT(member) offsetof(AuthorAttr, member)
#define TEXT_AT(member) offsetof(AuthorAttr, member), sizeof(AuthorAttr::member)
using enum FieldKind;
constexpr Field kAttributeFieldList[] = {
    {DOM_TLV_ATTR_K0_WORD1, kWord, AT(kind0_word1)},
    {DOM_TLV_ATTR_K0_WORD2, kWord, AT(kind0_word2)},
    {DOM_TLV_ATTR_K0_WORD3, kWord, AT(kind0_word3)},
    {DOM_TLV_ATTR_K1_TEXT, kText, TEXT_AT(kind1_text)},
    {DOM_TLV_ATTR_K2_TEXT, kText, TEXT_AT(kind2_text)},
    {DOM_TLV_ATTR_K3_BLOCK, kBlock, AT(kind3_words), kKind3BlockSize},
    {DOM_TLV_ATTR_K3_WORD5, kWord, kKind3Word5},
    {DOM_TLV_ATTR_K4_TEXT, kText, TEXT_AT(kind4_text)},
    {DOM_TLV_ATTR_K5_ADDR, kBlock, TEXT_AT(kind5_addr)},
    {DOM_TLV_ATTR_K6_ADDR, kBlock, TEXT_AT(kind6_addr)},
    {DOM_TLV_ATTR_K16_ADDR, kBlock, TEXT_AT(kind16_addr)},
    {DOM_TLV_ATTR_K17_ADDR, kBlock, TEXT_AT(kind17_addr)},
    {DOM_TLV_ATTR_K7_TEXT, kText, TEXT_AT(kind7_text)},
    {DOM_TLV_ATTR_K8_TEXT, kText, TEXT_AT(kind8_text)},
    {DOM_TLV_ATTR_K9_WORD, kWord, AT(kind9_word)},
    {DOM_TLV_ATTR_K10_WORD, kWord, AT(kind10_word)},
    {DOM_TLV_ATTR_K11_WORD, kWord, AT(kind11_word)},
    {DOM_TLV_ATTR_ITA_POLICY, kTextLowerCase, TEXT_AT(ita_policy_name)},
    {DOM_TLV_ATTR_K13_WORD, kWord, AT(kind13_word)},
    {DOM_TLV_ATTR_K14_WORD1, kWord, AT(kind14_word1)},
    {DOM_TLV_ATTR_K14_WORD2, kWord, AT(kind14_word2)},
    {DOM_TLV_ATTR_K15_WORD, kWord, AT(kind15_word)},
    {DOM_TLV_ATTR_K18_TEXT, kText, AT(kind18_text), kKind18Size},
    {DOM_TLV_ATTR_K19_WORD, kWord, AT(kind19_word)},
    {DOM_TLV_ATTR_K20_TEXT, kText, TEXT_AT(kind20_text)},
    {DOM_TLV_ATTR_RATE1_X1024, kRateScaled, Rate(0)},
    {DOM_TLV_ATTR_RATE2_X1024, kRateScaled, Rate(1)},
    {DOM_TLV_ATTR_RATE3_X1024, kRateScaled, Rate(2)},
    {DOM_TLV_ATTR_RATE4_X1024, kRateScaled, Rate(3)},
    {DOM_TLV_ATTR_RATE1, kRate, Rate(0)},
    {DOM_TLV_ATTR_RATE2, kRate, Rate(1)},
    {DOM_TLV_ATTR_RATE3, kRate, Rate(2)},
    {DOM_TLV_ATTR_RATE4, kRate, Rate(3)},
    {DOM_TLV_ATTR_K23_WORD, kWord, AT(kind23_word)},
    {DOM_TLV_ATTR_K22_TEXT, kText, TEXT_AT(kind22_text)},
    {DOM_TLV_ATTR_K24_WORD, kWord, AT(kind24_word)},
    {DOM_TLV_AUTHOR_PROFILE_NAME, kText, TEXT_AT(author_profile_name)},
    {DOM_TLV_ATTR_K26_SELECTED, kTextSelected, TEXT_AT(kind26_text), AT(kind26_selector)},
    {DOM_TLV_ATTR_K26_OTHER, kTextOther, TEXT_AT(kind26_text), AT(kind26_selector)},
};
#undef TEXT_AT
#undef AT
constexpr FieldTable kAttributeFields(kAttributeFieldList);

constexpr Field UsualForm(Field field) {
    if (field.kind == kRateScaled) field.kind = kWordWriteOnly;
    if (field.kind == kRate) field.kind = kWord;
    if (field.kind == kTextLowerCase) field.kind = kText;
    return field;
}

/// The attributes of a message that has every rate unscaled, as all but old senders write it: then
/// the scaled ones count for nothing, so all numbers are plain. The policy name is read as it
/// comes.
struct UsualFieldList {
    Field fields[std::size(kAttributeFieldList)];

    constexpr UsualFieldList() : fields{} {
        for (size_t i = 0; i < std::size(fields); ++i) {
            fields[i] = UsualForm(kAttributeFieldList[i]);
        }
    }
};
constexpr FieldTable kUsualFields(UsualFieldList().fields);

/// No rate that anybody sets. One that is set all the same is read the long way.
constexpr uint32_t kNoRate = 0x9E3779B1;

}  // namespace

void AppendAttributes(Appender& append, const AuthorAttr& attributes) noexcept {
    append.Nested(DOM_TLV_AUTHOR_ATTR,
                  [&](Appender& nested) { AppendFields(nested, &attributes, kAttributeFields); });
}

uint32_t DecodeAttributes(TLV_MSG* sub, AuthorAttr& attributes) noexcept {
    return ReadFields(sub, &attributes, kAttributeFields);
}

uint32_t ReadAttributes(const TlvItem& nested, AuthorAttr& attributes) noexcept {
    auto& rates = attributes.kind21_rates;
    decltype(AuthorAttr::kind21_rates) former;
    memcpy(former, rates, sizeof former);
    std::fill(std::begin(rates), std::end(rates), kNoRate);
    const uint32_t result = ReadNestedFields(nested, &attributes, kUsualFields);
    if (result != DOM_OK) return result;
    DOM_ToLowerCaseStr(attributes.ita_policy_name);
    if (std::find(std::begin(rates), std::end(rates), kNoRate) == std::end(rates)) return DOM_OK;
    memcpy(rates, former, sizeof former);
    return ReadNestedFields(nested, &attributes, kAttributeFields);
}

}  // namespace aaadom
