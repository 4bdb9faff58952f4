#include "domain/author_attr.h"

#include <aaadom/results.h>
#include <strings.h>

#include <cstddef>
#include <cstring>

#include "base/attribute_defaults.h"
#include "base/text.h"

namespace aaadom {
namespace {

constexpr uint16_t kFamilyIpv4 = 2;  // only the first 4 address bytes count
constexpr size_t kIpv4Bytes = 4;

enum class Shape : uint8_t {
    kNumbers,         // copied whole, reset to the initial values
    kBesideText,      // copied whole, kept by a reset: readers look at it only when there is a text
    kAddress,         // the family and as many address bytes as the family has
    kText,            // copied up to the terminator
    kWholeText,       // every byte of the field is copied
    kTextIfNew,       // kText, but a mere change of case keeps the stored spelling
    kWholeTextIfNew,  // kWholeText, likewise
};

struct Field {
    uint8_t kind;
    Shape shape;
    uint16_t offset;
    uint16_t size;
};

#define AUTHOR_ATTR_FIELD(kind, shape, member) \
    { kind, Shape::shape, offsetof(AuthorAttr, member), sizeof(AuthorAttr::member) }

constexpr Field kFields[] = {
    AUTHOR_ATTR_FIELD(0, kNumbers, kind0_word1),
    AUTHOR_ATTR_FIELD(0, kNumbers, kind0_word2),
    AUTHOR_ATTR_FIELD(0, kNumbers, kind0_word3),
    AUTHOR_ATTR_FIELD(1, kWholeText, kind1_text),
    AUTHOR_ATTR_FIELD(2, kWholeTextIfNew, kind2_text),
    AUTHOR_ATTR_FIELD(3, kNumbers, kind3_words),
    AUTHOR_ATTR_FIELD(4, kTextIfNew, kind4_text),
    AUTHOR_ATTR_FIELD(5, kAddress, kind5_addr),
    AUTHOR_ATTR_FIELD(6, kAddress, kind6_addr),
    AUTHOR_ATTR_FIELD(7, kText, kind7_text),
    AUTHOR_ATTR_FIELD(8, kText, kind8_text),
    AUTHOR_ATTR_FIELD(9, kNumbers, kind9_word),
    AUTHOR_ATTR_FIELD(10, kNumbers, kind10_word),
    AUTHOR_ATTR_FIELD(11, kNumbers, kind11_word),
    AUTHOR_ATTR_FIELD(12, kText, ita_policy_name),
    AUTHOR_ATTR_FIELD(13, kNumbers, kind13_word),
    AUTHOR_ATTR_FIELD(14, kNumbers, kind14_word1),
    AUTHOR_ATTR_FIELD(14, kNumbers, kind14_word2),
    AUTHOR_ATTR_FIELD(15, kNumbers, kind15_word),
    AUTHOR_ATTR_FIELD(16, kAddress, kind16_addr),
    AUTHOR_ATTR_FIELD(17, kAddress, kind17_addr),
    AUTHOR_ATTR_FIELD(18, kWholeText, kind18_text),
    AUTHOR_ATTR_FIELD(18, kBesideText, kind18_byte),
    AUTHOR_ATTR_FIELD(19, kNumbers, kind19_word),
    AUTHOR_ATTR_FIELD(20, kText, kind20_text),
    AUTHOR_ATTR_FIELD(21, kNumbers, kind21_rates),
    AUTHOR_ATTR_FIELD(22, kText, kind22_text),
    AUTHOR_ATTR_FIELD(23, kNumbers, kind23_word),
    AUTHOR_ATTR_FIELD(24, kNumbers, kind24_word),
    AUTHOR_ATTR_FIELD(25, kText, author_profile_name),
    AUTHOR_ATTR_FIELD(26, kText, kind26_text),
    AUTHOR_ATTR_FIELD(26, kBesideText, kind26_selector),
};

#undef AUTHOR_ATTR_FIELD

constexpr AuthorAttr MakeInitial() noexcept {
    AuthorAttr initial{};
    PresetAttributes(initial);
    return initial;
}
constexpr AuthorAttr kInitial = MakeInitial();

const char* Bytes(const AuthorAttr& block, const Field& field) noexcept {
    return reinterpret_cast<const char*>(&block) + field.offset;
}

char* Bytes(AuthorAttr& block, const Field& field) noexcept {
    return reinterpret_cast<char*>(&block) + field.offset;
}

void CopyAddress(char* to, const char* from) noexcept {
    uint16_t family;
    memcpy(&family, from + offsetof(AttrAddress, family), sizeof family);
    memcpy(to + offsetof(AttrAddress, family), &family, sizeof family);
    memmove(to + offsetof(AttrAddress, address), from + offsetof(AttrAddress, address),
            family == kFamilyIpv4 ? kIpv4Bytes : sizeof(AttrAddress::address));
}

// The block may be the domain's own, so copies allow source and destination to be the same.
void CopyFieldOf(const Field& field, char* to, const char* from) noexcept {
    switch (field.shape) {
        case Shape::kAddress:
            CopyAddress(to, from);
            break;
        case Shape::kTextIfNew:
        case Shape::kWholeTextIfNew:
            if (strncasecmp(to, from, field.size) == 0) return;
            if (field.shape == Shape::kWholeTextIfNew) {
                memmove(to, from, field.size);
            } else {
                CopyBounded(to, field.size, from, field.size);
            }
            break;
        case Shape::kText:
            CopyBounded(to, field.size, from, field.size);
            break;
        case Shape::kNumbers:
        case Shape::kBesideText:
        case Shape::kWholeText:
            memmove(to, from, field.size);
            break;
    }
}

void ResetFieldOf(const Field& field, char* bytes) noexcept {
    switch (field.shape) {
        case Shape::kNumbers:
        case Shape::kAddress:
            memcpy(bytes, Bytes(kInitial, field), field.size);
            break;
        case Shape::kBesideText:
            break;
        case Shape::kText:
        case Shape::kWholeText:
        case Shape::kTextIfNew:
        case Shape::kWholeTextIfNew:
            bytes[0] = '\0';
            break;
    }
}

}  // namespace

void InitAuthorAttr(AuthorAttr& block) noexcept {
    block = kInitial;
}

uint32_t CopyAuthorAttr(AuthorAttr& to, const AuthorAttr& from, uint32_t kind) noexcept {
    if (kind >= DOM_ATTR_KINDS) return DOM_ERR_FAILED;
    for (const Field& field : kFields) {
        if (field.kind == kind) CopyFieldOf(field, Bytes(to, field), Bytes(from, field));
    }
    return DOM_OK;
}

uint32_t ResetAuthorAttr(AuthorAttr& block, uint32_t kind) noexcept {
    if (kind >= DOM_ATTR_KINDS) return DOM_ERR_FAILED;
    for (const Field& field : kFields) {
        if (field.kind == kind) ResetFieldOf(field, Bytes(block, field));
    }
    return DOM_OK;
}

}  // namespace aaadom
