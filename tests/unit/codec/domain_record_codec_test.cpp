// Whole domains: TLV order, what is read back, what hostile messages can do.
#include <aaadom/domain.h>
#include <aaadom/domain_codec.h>
#include <aaadom/method_list.h>

#include <memory>

#include "codec/domain_record.h"
#include "unit/codec/codec_test_support.h"

namespace {

using namespace codec_test;
using aaadom::EncodeDomainRecord;

struct FreeDomain {
    void operator()(DomainInfo* record) const { DOM_DestroyDomain(record); }
};
using DomainPtr = std::unique_ptr<DomainInfo, FreeDomain>;

const std::vector<uint32_t> kScalarOrder = {0,  2,   1,   3,   4,   6,   38,  51,
                                            76, 353, 374, 375, 376, 415, 358, 411};
const std::vector<uint32_t> kAttributeOrder = {
    26, 27, 75, 28, 29, 39, 40, 41, 42, 43, 66,  67,  44,  45,  46,  47,  48,  61, 62,
    63, 64, 65, 68, 69, 70, 71, 72, 73, 74, 468, 469, 470, 471, 412, 413, 414, 430};

Message List(uint32_t row, uint32_t column, uint32_t kind, uint32_t extra_kind = 0,
             const char* extra_name = "") {
    Message list;
    list.U32(DOM_TLV_AAA_TYPE, row)
        .U32(DOM_TLV_SERVICE, column)
        .Sub(DOM_TLV_METHOD_ITEM, Item(0, kind))
        .Sub(DOM_TLV_EXTRA_ITEM, Item(0, extra_kind, extra_name));
    return list;
}

AuthorAttr DefaultAttributes() {
    AuthorAttr attr;
    DOM_InitAuthorAttr(&attr);
    return attr;
}

class DomainRecord : public CodecTest {
  protected:
    DomainRecord() : record_(DOM_CreateDomain()) { strcpy(record_->name, "isp"); }
    ~DomainRecord() override { record_.reset(); }

    TlvPtr Encoded() { return EncodeDomainRecord(*record_); }
    DomainPtr Decode(const Message& msg) { return DomainPtr(DOM_DecodeDomain(msg.get())); }
    DomainPtr RoundTrip() {
        const TlvPtr msg = Encoded();
        return DomainPtr(DOM_DecodeDomain(msg.get()));
    }

    DomainPtr record_;
};

TEST_F(DomainRecord, TlvOrderIsScalarsThenListsThenAttributes) {
    std::vector<uint32_t> want = kScalarOrder;
    want.insert(want.end(), {7, 7, 7, 24});
    EXPECT_EQ(TypesOf(Encoded().get()), want);
}

TEST_F(DomainRecord, ListsFollowRowsThenColumns) {
    for (const auto& [row, column] :
         std::vector<std::pair<uint32_t, uint32_t>>{{5, 0}, {0, 11}, {4, 2}, {0, 0}}) {
        MethodList* list = DOM_CreateMethodList();
        list->aaa_type = row;
        list->service = column;
        record_->method_lists[row][column] = list;
    }
    std::vector<std::pair<uint32_t, uint32_t>> places;
    const TlvPtr msg = Encoded();
    for (aaadom::TlvItem item : aaadom::TlvWalk(msg.get())) {
        if (item.Type() != DOM_TLV_METHOD_LIST) continue;
        const TlvPtr sub = item.Sub();
        places.emplace_back(NumberOf(sub.get(), DOM_TLV_AAA_TYPE),
                            NumberOf(sub.get(), DOM_TLV_SERVICE));
    }
    const std::vector<std::pair<uint32_t, uint32_t>> want = {{0, 0}, {0, 5}, {0, 11}, {4, 2},
                                                             {4, 5}, {5, 0}, {5, 5}};
    EXPECT_EQ(places, want);
}

TEST_F(DomainRecord, EveryListCarriesTheExtraItemOfItsColumnWithPositionZero) {
    record_->service_extras[5] = Entry(3, "extra", 8);
    const TlvPtr msg = Encoded();
    int lists = 0;
    for (aaadom::TlvItem item : aaadom::TlvWalk(msg.get())) {
        if (item.Type() != DOM_TLV_METHOD_LIST) continue;
        const TlvPtr list = item.Sub();
        EXPECT_EQ(TypesOf(list.get()), (std::vector<uint32_t>{8, 9, 10, 50}));
        const TlvPtr extra = aaadom::FindTlv(list.get(), DOM_TLV_EXTRA_ITEM).Sub();
        EXPECT_EQ(NumberOf(extra.get(), DOM_TLV_ITEM_POSITION), 0u);
        EXPECT_EQ(TextOf(extra.get(), DOM_TLV_SCHEME_NAME), "extra");
        ++lists;
    }
    EXPECT_EQ(lists, 3);
}

TEST_F(DomainRecord, EmptyListSendsRowColumnAndExtraItemOnly) {
    record_->method_lists[0][5]->methods[0] = MethodEntry{};
    const TlvPtr msg = Encoded();
    const TlvPtr list = aaadom::FindTlv(msg.get(), DOM_TLV_METHOD_LIST).Sub();
    EXPECT_EQ(TypesOf(list.get()), (std::vector<uint32_t>{8, 9, 50}));
}

TEST_F(DomainRecord, AttributeOrder) {
    const TlvPtr msg = Encoded();
    const TlvPtr sub = aaadom::FindTlv(msg.get(), DOM_TLV_AUTHOR_ATTR).Sub();
    EXPECT_EQ(TypesOf(sub.get()), kAttributeOrder) << "no kind-26 text, so neither 472 nor 473";
}

TEST_F(DomainRecord, UnterminatedFieldsAreSentWholeAndReadBackCut) {
    AuthorAttr& attributes = record_->author_attr;
    memset(attributes.kind1_text, 'a', sizeof attributes.kind1_text);
    strcpy(attributes.kind2_text, "next field");
    memset(record_->name, 'n', sizeof record_->name);
    attributes.kind0_word1 = 0x7A7A7A7A;  // follows the name
    const TlvPtr msg = Encoded();
    EXPECT_EQ(TextOf(msg.get(), DOM_TLV_DOMAIN_NAME), std::string(256, 'n'));
    const TlvPtr sub = aaadom::FindTlv(msg.get(), DOM_TLV_AUTHOR_ATTR).Sub();
    EXPECT_EQ(TextOf(sub.get(), DOM_TLV_ATTR_K1_TEXT), std::string(32, 'a'));
    const DomainPtr decoded = RoundTrip();
    ASSERT_NE(decoded, nullptr);
    EXPECT_EQ(std::string(decoded->name), std::string(255, 'n'));
    EXPECT_EQ(std::string(decoded->author_attr.kind1_text), std::string(31, 'a'));
}

TEST_F(DomainRecord, EveryFailureGivesNull) {
    record_->service_extras[5] = Entry(3, "extra", 8);
    ExpectEveryFailureGivesNull([&] { return Encoded().release(); });
}

TEST_F(DomainRecord, FailedScalarStopsBeforeAnyMethodList) {
    Message msg;
    fake::FailAppend(1);
    EXPECT_EQ(aaadom::AppendDomainRecord(*record_, msg.get()), DOM_ERR_FAILED);
    fake::DisarmFailures();
    const std::vector<uint32_t> want(kScalarOrder.begin() + 2, kScalarOrder.end());
    EXPECT_EQ(TypesOf(msg.get()), want) << "the other scalars are appended all the same";
}

TEST_F(DomainRecord, FullDomainFitsIntoOneStoredValue) {
    for (uint32_t row = 0; row < DOM_AAA_TYPES; ++row) {
        for (uint32_t column = 0; column < DOM_SERVICES; ++column) {
            MethodList*& list = record_->method_lists[row][column];
            if (list == nullptr) list = DOM_CreateMethodList();
            list->aaa_type = row;
            list->service = column;
            for (MethodEntry& entry : list->methods)
                entry = Entry(2, std::string(32, 's').c_str(), 1);
            record_->service_extras[column] = Entry(2, std::string(32, 'e').c_str());
        }
    }
    const TlvPtr msg = Encoded();
    EXPECT_LE(TLV_GetMsgLen(msg.get(), TLV_FORM_BUFFER), 65535u);
    const DomainPtr decoded = RoundTrip();
    ASSERT_NE(decoded, nullptr);
    for (uint32_t row = 0; row < DOM_AAA_TYPES; ++row) {
        for (uint32_t column = 0; column < DOM_SERVICES; ++column) {
            EXPECT_EQ(memcmp(decoded->method_lists[row][column], record_->method_lists[row][column],
                             sizeof(MethodList)),
                      0);
        }
    }
}

// --- decoding

TEST_F(DomainRecord, MissingCodeGivesNull) {
    Message msg;
    msg.Text(DOM_TLV_DOMAIN_NAME, "isp");
    EXPECT_EQ(Decode(msg), nullptr);
}

TEST_F(DomainRecord, OnlyCodes0And14AreAccepted) {
    for (const uint32_t code : {1u, 3u, 13u, 15u, 0xFFFFFFFFu}) {
        EXPECT_EQ(Decode(Message(code)), nullptr) << code;
    }
    EXPECT_NE(Decode(Message(DOM_MSG_DOMAIN)), nullptr);
    EXPECT_NE(Decode(Message(DOM_MSG_DOMAIN_ROW)), nullptr);
}

TEST_F(DomainRecord, NullMessageGivesNull) {
    EXPECT_EQ(DOM_DecodeDomain(nullptr), nullptr);
}

TEST_F(DomainRecord, PresetsOfADecodedDomainAreNotThoseOfANewOne) {
    const DomainPtr decoded = Decode(Message(DOM_MSG_DOMAIN));
    ASSERT_NE(decoded, nullptr);
    EXPECT_EQ(decoded->limit_value, 0x7FFFFFFFu);
    EXPECT_EQ(decoded->second_value, 0u);
    EXPECT_EQ(decoded->state, 0u);
    EXPECT_EQ(decoded->user_addr_type, 7u);
    EXPECT_EQ(decoded->acct_dual_stack_mode, 1u);
    EXPECT_STREQ(decoded->name, "");
    for (auto& row : decoded->method_lists) {
        for (MethodList* list : row) EXPECT_EQ(list, nullptr);
    }
    const AuthorAttr defaults = DefaultAttributes();
    EXPECT_EQ(memcmp(&decoded->author_attr, &defaults, sizeof defaults), 0);
}

TEST_F(DomainRecord, LimitAndSecondValueAreNotReadBack) {
    Message msg(DOM_MSG_DOMAIN);
    msg.U32(DOM_TLV_LIMIT_VALUE, 5).U32(DOM_TLV_SECOND_VALUE, 6);
    const DomainPtr decoded = Decode(msg);
    EXPECT_EQ(decoded->limit_value, 0x7FFFFFFFu);
    EXPECT_EQ(decoded->second_value, 0u);
}

TEST_F(DomainRecord, HalfWordsAreNarrowed) {
    Message msg(DOM_MSG_DOMAIN);
    for (const uint16_t type : {6, 38, 375, 411, 415}) msg.U32(type, 0xABCD0003);
    const DomainPtr decoded = Decode(msg);
    EXPECT_EQ(decoded->state, 3u);
    EXPECT_EQ(decoded->session_time, 3u);
    EXPECT_EQ(decoded->escape_recover.setting, 3u);
    EXPECT_EQ(decoded->escape_recover.second_setting, 3u);
    EXPECT_EQ(decoded->auth_fail_domain_kind, 3u);
}

TEST_F(DomainRecord, OverlongTextsAreCutTo255Characters) {
    Message msg(DOM_MSG_DOMAIN);
    for (const uint16_t type : {2, 374, 376, 358}) msg.Text(type, std::string(300, 't'));
    const DomainPtr decoded = Decode(msg);
    const std::string want(255, 't');
    EXPECT_EQ(decoded->name, want);
    EXPECT_EQ(decoded->auth_rd_fail_permit_domain, want);
    EXPECT_EQ(decoded->escape_recover.domain_name, want);
    EXPECT_EQ(decoded->auth_fail_domain, want);
    EXPECT_EQ(decoded->escape_recover.setting, 0u) << "written past the name";
}

TEST_F(DomainRecord, UnknownTypesAreSkipped) {
    Message msg(DOM_MSG_DOMAIN);
    msg.U32(5, 1).Text(600, "x").U32(65535, 2).Text(DOM_TLV_DOMAIN_NAME, "isp");
    const DomainPtr decoded = Decode(msg);
    ASSERT_NE(decoded, nullptr);
    EXPECT_STREQ(decoded->name, "isp");
}

TEST_F(DomainRecord, ListOutsideTheGridFailsTheWholeDecode) {
    for (const auto& [row, column] : std::vector<std::pair<uint32_t, uint32_t>>{
             {0, 12}, {6, 0}, {0xFFFFFFFF, 0}, {0, 0xFFFFFFFF}, {6, 12}}) {
        Message msg(DOM_MSG_DOMAIN);
        msg.Sub(DOM_TLV_METHOD_LIST, List(0, 5, 4)).Sub(DOM_TLV_METHOD_LIST, List(row, column, 4));
        EXPECT_EQ(Decode(msg), nullptr) << row << ' ' << column;
    }
    Message corner(DOM_MSG_DOMAIN);
    corner.Sub(DOM_TLV_METHOD_LIST, List(5, 11, 4));
    const DomainPtr decoded = Decode(corner);
    ASSERT_NE(decoded, nullptr);
    EXPECT_NE(decoded->method_lists[5][11], nullptr);
}

TEST_F(DomainRecord, ListWithoutRowAndColumnIsRow0Column0) {
    Message msg(DOM_MSG_DOMAIN);
    msg.Sub(DOM_TLV_METHOD_LIST, Message());
    const DomainPtr decoded = Decode(msg);
    ASSERT_NE(decoded, nullptr);
    ASSERT_NE(decoded->method_lists[0][0], nullptr);
    EXPECT_EQ(decoded->method_lists[0][0]->methods[0].method_kind, 0u);
}

TEST_F(DomainRecord, SecondListForOnePlaceReplacesTheFirst) {
    Message msg(DOM_MSG_DOMAIN);
    msg.Sub(DOM_TLV_METHOD_LIST, List(4, 5, 4)).Sub(DOM_TLV_METHOD_LIST, List(4, 5, 2));
    const DomainPtr decoded = Decode(msg);
    ASSERT_NE(decoded, nullptr);
    EXPECT_EQ(decoded->method_lists[4][5]->methods[0].method_kind, 2u);
}

TEST_F(DomainRecord, EmptyExtraItemDoesNotEraseTheColumnsExtra) {
    Message msg(DOM_MSG_DOMAIN);
    msg.Sub(DOM_TLV_METHOD_LIST, List(0, 3, 2, 1, "kept")).Sub(DOM_TLV_METHOD_LIST, List(4, 3, 2));
    const DomainPtr decoded = Decode(msg);
    ASSERT_NE(decoded, nullptr);
    EXPECT_EQ(decoded->service_extras[3].method_kind, 1u);
    EXPECT_STREQ(decoded->service_extras[3].scheme_name, "kept");
}

TEST_F(DomainRecord, ExtraItemOfEveryRowCounts) {
    Message msg(DOM_MSG_DOMAIN);
    msg.Sub(DOM_TLV_METHOD_LIST, List(0, 3, 2, 1, "row0"))
        .Sub(DOM_TLV_METHOD_LIST, List(4, 3, 2, 2, "row4"));
    EXPECT_STREQ(Decode(msg)->service_extras[3].scheme_name, "row4");
}

// Items in order are read where they belong; these must be moved there.
TEST_F(DomainRecord, ListItemsOutOfOrderAreStoredAtTheirPositions) {
    const std::vector<std::vector<uint32_t>> orders = {
        {2},       {1, 0}, {0, 2, 1},          {0, 9, 1},
        {0, 1, 1}, {0, 0}, {5, 4, 3, 2, 1, 0}, {0, 1, 2, 3, 4, 5, 0}};
    for (const auto& order : orders) {
        Message list;
        list.U32(DOM_TLV_AAA_TYPE, 0).U32(DOM_TLV_SERVICE, 1);
        MethodList want{};
        want.service = 1;
        uint32_t kind = 1;
        for (uint32_t position : order) {
            const std::string name = "scheme" + std::to_string(kind);
            list.Sub(DOM_TLV_METHOD_ITEM, Item(position, kind, name.c_str()));
            if (position < DOM_METHODS) want.methods[position] = Entry(kind, name.c_str());
            ++kind;
        }
        Message msg(DOM_MSG_DOMAIN);
        msg.Sub(DOM_TLV_METHOD_LIST, list);
        const DomainPtr decoded = Decode(msg);
        ASSERT_NE(decoded, nullptr);
        EXPECT_EQ(memcmp(decoded->method_lists[0][1], &want, sizeof want), 0)
            << testing::PrintToString(order);
    }
}

TEST_F(DomainRecord, ItemPositionOutsideAListStoresNothing) {
    Message list;
    list.U32(DOM_TLV_AAA_TYPE, 0)
        .U32(DOM_TLV_SERVICE, 1)
        .Sub(DOM_TLV_METHOD_ITEM, Item(6, 3, "evil"))
        .Sub(DOM_TLV_METHOD_ITEM, Item(0x80000000, 3, "evil"))
        .Sub(DOM_TLV_METHOD_ITEM, Item(5, 2, "good"));
    Message msg(DOM_MSG_DOMAIN);
    msg.Sub(DOM_TLV_METHOD_LIST, list);
    const DomainPtr decoded = Decode(msg);
    ASSERT_NE(decoded, nullptr);
    MethodList want{};
    want.service = 1;
    want.methods[5] = Entry(2, "good");
    EXPECT_EQ(memcmp(decoded->method_lists[0][1], &want, sizeof want), 0);
}

TEST_F(DomainRecord, ValueThatIsNoNestedMessageFails) {
    for (const uint16_t type : {7, 24}) {
        Message msg(DOM_MSG_DOMAIN);
        msg.Raw(type, "no message");
        EXPECT_EQ(Decode(msg), nullptr) << type;
        Message empty(DOM_MSG_DOMAIN);
        empty.Raw(type, "");
        EXPECT_EQ(Decode(empty), nullptr) << type;
    }
    Message list;
    list.Raw(DOM_TLV_METHOD_ITEM, "x");
    Message item(DOM_MSG_DOMAIN);
    item.Sub(DOM_TLV_METHOD_LIST, list);
    EXPECT_EQ(Decode(item), nullptr);
    Message extra_list;
    extra_list.Raw(DOM_TLV_EXTRA_ITEM, "x");
    Message extra(DOM_MSG_DOMAIN);
    extra.Sub(DOM_TLV_METHOD_LIST, extra_list);
    EXPECT_EQ(Decode(extra), nullptr);
}

TEST_F(DomainRecord, AttributesCountOnlyWhenTheyComeLast) {
    Message attributes;
    attributes.U32(DOM_TLV_ATTR_K13_WORD, 99);
    Message last(DOM_MSG_DOMAIN);
    last.Sub(DOM_TLV_AUTHOR_ATTR, attributes);
    EXPECT_EQ(Decode(last)->author_attr.kind13_word, 99u);

    const AuthorAttr defaults = DefaultAttributes();
    // A message with anything behind the attributes, known or not, has the default ones.
    for (const uint16_t follower : {0, 1, 6, 999}) {
        Message msg(DOM_MSG_DOMAIN);
        msg.Sub(DOM_TLV_AUTHOR_ATTR, attributes).U32(follower, 0);
        const DomainPtr decoded = Decode(msg);
        ASSERT_NE(decoded, nullptr) << follower;
        EXPECT_EQ(memcmp(&decoded->author_attr, &defaults, sizeof defaults), 0) << follower;
    }
}

TEST_F(DomainRecord, SecondAttributesStartAfresh) {
    Message first;
    first.U32(DOM_TLV_ATTR_K13_WORD, 99);
    Message second;
    second.U32(DOM_TLV_ATTR_K24_WORD, 24);
    Message msg(DOM_MSG_DOMAIN);
    msg.Sub(DOM_TLV_AUTHOR_ATTR, first).Sub(DOM_TLV_AUTHOR_ATTR, second);
    const DomainPtr decoded = Decode(msg);
    EXPECT_EQ(decoded->author_attr.kind13_word, 0u);
    EXPECT_EQ(decoded->author_attr.kind24_word, 24u);
}

TEST_F(DomainRecord, AllocationFailureOfTheDecoderGivesNullAndLeaksNothing) {
    record_->service_extras[5] = Entry(1, "x");
    const TlvPtr msg = Encoded();
    for (int n = 1; n < 200; ++n) {
        fake::FailAny(n);
        DomainInfo* decoded = DOM_DecodeDomain(msg.get());
        const bool tripped = fake::Tripped();
        fake::DisarmFailures();
        EXPECT_EQ(decoded == nullptr, tripped) << n;
        DOM_DestroyDomain(decoded);
        EXPECT_EQ(fake::LiveMessages(), 1) << n;
        if (!tripped) return;
    }
    FAIL() << "the sweep does not end";
}

TEST_F(DomainRecord, DamagedImagesNeverHurt) {
    record_->service_extras[5] = Entry(1, "x");
    ForEveryDamage(Encoded().get(),
                   [](TLV_MSG* damaged) { DOM_DestroyDomain(DOM_DecodeDomain(damaged)); });
}

// --- attributes

class Attributes : public CodecTest {
  protected:
    static uint32_t Decode(const Message& sub, AuthorAttr& attr) {
        Message msg(DOM_MSG_AUTHOR_ATTR);
        msg.U32(DOM_TLV_ATTR_KIND, 0).Text(DOM_TLV_DOMAIN_NAME, "d").Sub(DOM_TLV_AUTHOR_ATTR, sub);
        return DOM_DecodeAuthorAttr(msg.get(), nullptr, 256, nullptr, &attr);
    }
    static TlvPtr Encoded(const AuthorAttr& attr) {
        const TlvPtr msg(DOM_EncodeAuthorAttr(0, "d", &attr));
        return aaadom::FindTlv(msg.get(), DOM_TLV_AUTHOR_ATTR).Sub();
    }
    AuthorAttr attr = DefaultAttributes();
};

TEST_F(Attributes, ScaledRatesAreTimes1024AndWrap) {
    attr.kind21_rates[0] = 3;
    attr.kind21_rates[3] = 0x00400001;
    const TlvPtr sub = Encoded(attr);
    EXPECT_EQ(NumberOf(sub.get(), DOM_TLV_ATTR_RATE1_X1024), 3072u);
    EXPECT_EQ(NumberOf(sub.get(), DOM_TLV_ATTR_RATE4_X1024), 1024u);
    EXPECT_EQ(NumberOf(sub.get(), DOM_TLV_ATTR_RATE4), 0x00400001u);
}

TEST_F(Attributes, ScaledRateAloneIsDividedBy1024) {
    Message sub;
    sub.U32(DOM_TLV_ATTR_RATE2_X1024, 5 * 1024 + 1023);
    ASSERT_EQ(Decode(sub, attr), DOM_OK);
    EXPECT_EQ(attr.kind21_rates[1], 5u);
}

TEST_F(Attributes, UnscaledRateWinsPerRateInEitherOrderAlsoWhenZero) {
    Message before;
    before.U32(DOM_TLV_ATTR_RATE3, 0).U32(DOM_TLV_ATTR_RATE3_X1024, 7 * 1024);
    before.U32(DOM_TLV_ATTR_RATE4_X1024, 4 * 1024);
    attr.kind21_rates[2] = 9;
    ASSERT_EQ(Decode(before, attr), DOM_OK);
    EXPECT_EQ(attr.kind21_rates[2], 0u);
    EXPECT_EQ(attr.kind21_rates[3], 4u) << "another rate's unscaled value does not count";
    Message after;
    after.U32(DOM_TLV_ATTR_RATE1_X1024, 7 * 1024).U32(DOM_TLV_ATTR_RATE1, 8);
    ASSERT_EQ(Decode(after, attr), DOM_OK);
    EXPECT_EQ(attr.kind21_rates[0], 8u);
}

TEST_F(Attributes, AllFourUnscaledRatesWin) {
    Message sub;
    for (uint16_t i = 0; i < 4; ++i) sub.U32(DOM_TLV_ATTR_RATE1 + i, 10u + i);
    for (uint16_t i = 0; i < 4; ++i) sub.U32(DOM_TLV_ATTR_RATE1_X1024 + i, 1024);
    ASSERT_EQ(Decode(sub, attr), DOM_OK);
    for (uint32_t i = 0; i < 4; ++i) EXPECT_EQ(attr.kind21_rates[i], 10 + i);
}

TEST_F(Attributes, AccountingPolicyNameIsLowerCased) {
    Message sub;
    sub.Text(DOM_TLV_ATTR_ITA_POLICY, "PolicY-1").Text(DOM_TLV_ATTR_K8_TEXT, "KeepS");
    ASSERT_EQ(Decode(sub, attr), DOM_OK);
    EXPECT_STREQ(attr.ita_policy_name, "policy-1");
    EXPECT_STREQ(attr.kind8_text, "KeepS");
}

TEST_F(Attributes, Kind18TextHas32CharactersAndEndsInTheByteBehind) {
    Message sub;
    sub.Text(DOM_TLV_ATTR_K18_TEXT, std::string(40, 'v'));
    attr.kind18_byte = 7;
    attr.kind18_reserved[0] = 7;
    ASSERT_EQ(Decode(sub, attr), DOM_OK);
    EXPECT_EQ(std::string(attr.kind18_text, 32), std::string(32, 'v'));
    EXPECT_EQ(attr.kind18_byte, 0u);
    EXPECT_EQ(attr.kind18_reserved[0], 7u);
    const TlvPtr again = Encoded(attr);
    EXPECT_EQ(TextOf(again.get(), DOM_TLV_ATTR_K18_TEXT), std::string(32, 'v'));
}

TEST_F(Attributes, Kind26TextIsSentByItsSelector) {
    strcpy(attr.kind26_text, "portal");
    for (const auto& [selector, type] :
         std::vector<std::pair<uint16_t, uint32_t>>{{1, DOM_TLV_ATTR_K26_SELECTED},
                                                    {0, DOM_TLV_ATTR_K26_OTHER},
                                                    {2, DOM_TLV_ATTR_K26_OTHER}}) {
        attr.kind26_selector = selector;
        std::vector<uint32_t> want = kAttributeOrder;
        want.push_back(type);
        EXPECT_EQ(TypesOf(Encoded(attr).get()), want) << selector;
    }
}

TEST_F(Attributes, LaterOfTheTwoKind26TextsWinsWithItsSelector) {
    Message selected_last;
    selected_last.Text(DOM_TLV_ATTR_K26_OTHER, "a").Text(DOM_TLV_ATTR_K26_SELECTED, "b");
    ASSERT_EQ(Decode(selected_last, attr), DOM_OK);
    EXPECT_STREQ(attr.kind26_text, "b");
    EXPECT_EQ(attr.kind26_selector, 1u);
    Message other_last;
    other_last.Text(DOM_TLV_ATTR_K26_SELECTED, "b").Text(DOM_TLV_ATTR_K26_OTHER, "a");
    ASSERT_EQ(Decode(other_last, attr), DOM_OK);
    EXPECT_STREQ(attr.kind26_text, "a");
    EXPECT_EQ(attr.kind26_selector, 0u);
}

TEST_F(Attributes, TextCapacities) {
    const std::vector<std::pair<uint16_t, size_t>> capacities = {
        {28, 32}, {29, 64}, {41, 64},  {44, 256}, {45, 32},   {61, 32},
        {68, 33}, {70, 32}, {413, 32}, {430, 32}, {472, 256}, {473, 256}};
    for (const auto& [type, capacity] : capacities) {
        AuthorAttr block;
        memset(&block, 0x55, sizeof block);
        Message sub;
        sub.Text(type, std::string(600, 'x'));
        ASSERT_EQ(Decode(sub, block), DOM_OK);
        const char* bytes = reinterpret_cast<const char*>(&block);
        size_t written = 0;
        for (size_t i = 0; i < sizeof block; ++i) written += bytes[i] == 'x';
        EXPECT_EQ(written, capacity - 1) << type;
    }
}

TEST_F(Attributes, ShortBlocksWriteNoMoreThanTheyHold) {
    attr.kind3_words[3] = 77;
    Message sub;
    sub.Raw(DOM_TLV_ATTR_K3_BLOCK, std::string(4, '\x01'))
        .Raw(DOM_TLV_ATTR_K5_ADDR, std::string(100, '\x02'));
    ASSERT_EQ(Decode(sub, attr), DOM_OK);
    EXPECT_EQ(attr.kind3_words[0], 0x01010101u);
    EXPECT_EQ(attr.kind3_words[3], 77u);
    EXPECT_EQ(attr.kind5_addr.address[15], 2u);
    EXPECT_EQ(attr.kind6_addr.family, 0u) << "an overlong block runs into the next field";
}

TEST_F(Attributes, AbsentAttributesKeepTheirValue) {
    attr.kind24_word = 5;
    ASSERT_EQ(Decode(Message(), attr), DOM_OK);
    EXPECT_EQ(attr.kind24_word, 5u);
}

TEST_F(Attributes, MessageNeedsKindNameAndAttributes) {
    const AuthorAttr before = attr;
    Message no_kind(DOM_MSG_AUTHOR_ATTR);
    no_kind.Text(DOM_TLV_DOMAIN_NAME, "d").Sub(DOM_TLV_AUTHOR_ATTR, Message());
    Message no_name(DOM_MSG_AUTHOR_ATTR);
    no_name.U32(DOM_TLV_ATTR_KIND, 1).Sub(DOM_TLV_AUTHOR_ATTR, Message());
    Message no_attributes(DOM_MSG_AUTHOR_ATTR);
    no_attributes.U32(DOM_TLV_ATTR_KIND, 1).Text(DOM_TLV_DOMAIN_NAME, "d");
    Message garbage(DOM_MSG_AUTHOR_ATTR);
    garbage.U32(DOM_TLV_ATTR_KIND, 1).Text(DOM_TLV_DOMAIN_NAME, "d").Raw(DOM_TLV_AUTHOR_ATTR, "x");
    for (const Message* msg : {&no_kind, &no_name, &no_attributes, &garbage}) {
        uint32_t kind = 9;
        char name[256];
        EXPECT_EQ(DOM_DecodeAuthorAttr(msg->get(), &kind, sizeof name, name, &attr),
                  DOM_ERR_FAILED);
        EXPECT_EQ(memcmp(&attr, &before, sizeof attr), 0);
    }
    EXPECT_EQ(DOM_DecodeAuthorAttr(nullptr, nullptr, 256, nullptr, nullptr), DOM_ERR_FAILED);
}

TEST_F(Attributes, DamagedImagesNeverHurt) {
    strcpy(attr.kind26_text, "portal");
    const TlvPtr msg(DOM_EncodeAuthorAttr(26, "d", &attr));
    ForEveryDamage(msg.get(), [](TLV_MSG* damaged) {
        uint32_t kind;
        char name[8];
        AuthorAttr decoded = DefaultAttributes();
        (void)DOM_DecodeAuthorAttr(damaged, &kind, sizeof name, name, &decoded);
    });
}

TEST_F(Attributes, EveryFailureGivesNull) {
    ExpectEveryFailureGivesNull([&] { return DOM_EncodeAuthorAttr(3, "d", &attr); });
    EXPECT_EQ(DOM_EncodeAuthorAttr(3, nullptr, &attr), nullptr);
    EXPECT_EQ(DOM_EncodeAuthorAttr(3, "d", nullptr), nullptr);
}

}  // namespace
