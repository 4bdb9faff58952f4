// Decoded domains with many lists, and lists that leave their domain; rates of both forms in one
// message.
#include <aaadom/domain.h>
#include <aaadom/domain_codec.h>
#include <aaadom/method_list.h>

#include <memory>
#include <utility>

#include "unit/codec/codec_test_support.h"

namespace {

using namespace codec_test;

struct FreeDomain {
    void operator()(DomainInfo* record) const { DOM_DestroyDomain(record); }
};
using DomainPtr = std::unique_ptr<DomainInfo, FreeDomain>;

Message List(uint32_t row, uint32_t column, uint32_t kind) {
    Message list;
    list.U32(DOM_TLV_AAA_TYPE, row)
        .U32(DOM_TLV_SERVICE, column)
        .Sub(DOM_TLV_METHOD_ITEM, Item(0, kind));
    return list;
}

class DecodedDomain : public CodecTest {
  protected:
    static DomainPtr Decode(const Message& msg) { return DomainPtr(DOM_DecodeDomain(msg.get())); }

    /// A message with that many lists, which fill the grid row by row and then again.
    static Message Lists(uint32_t count) {
        Message msg(DOM_MSG_DOMAIN);
        for (uint32_t i = 0; i < count; ++i) {
            msg.Sub(DOM_TLV_METHOD_LIST,
                    List(i / DOM_SERVICES % DOM_AAA_TYPES, i % DOM_SERVICES, kFirstKind + i));
        }
        return msg;
    }
    static constexpr uint32_t kFirstKind = 100;
    static constexpr uint32_t kPlaces = DOM_AAA_TYPES * DOM_SERVICES;
};

TEST_F(DecodedDomain, HasTheLastListOfEachPlaceHoweverManyCome) {
    for (const uint32_t count : {0u, 1u, 2u, 3u, 4u, 36u, 71u, 72u, 73u, 74u, 150u, 217u}) {
        const DomainPtr decoded = Decode(Lists(count));
        ASSERT_NE(decoded, nullptr);
        for (uint32_t place = 0; place < kPlaces; ++place) {
            const MethodList* list =
                decoded->method_lists[place / DOM_SERVICES][place % DOM_SERVICES];
            ASSERT_EQ(list != nullptr, place < count) << count << ' ' << place;
            if (list == nullptr) continue;
            const uint32_t last = place + (count - 1 - place) / kPlaces * kPlaces;
            EXPECT_EQ(list->methods[0].method_kind, kFirstKind + last) << count << ' ' << place;
        }
    }
}

TEST_F(DecodedDomain, KeepsNothingOfAListThatAnotherReplaces) {
    Message msg(DOM_MSG_DOMAIN);
    Message longer = List(0, 1, 1);
    longer.Sub(DOM_TLV_METHOD_ITEM, Item(1, 2, "second"));
    msg.Sub(DOM_TLV_METHOD_LIST, longer)
        .Sub(DOM_TLV_METHOD_LIST, List(0, 1, 3))
        .Sub(DOM_TLV_METHOD_LIST, List(0, 2, 4));
    const DomainPtr decoded = Decode(msg);
    ASSERT_NE(decoded, nullptr);
    EXPECT_EQ(decoded->method_lists[0][1]->methods[0].method_kind, 3u);
    EXPECT_EQ(decoded->method_lists[0][1]->methods[1].method_kind, 0u);
    EXPECT_EQ(decoded->method_lists[0][2]->methods[1].method_kind, 0u);
}

TEST_F(DecodedDomain, ListThatIsTakenOutOutlivesIt) {
    for (const uint32_t column : {0u, 11u}) {
        DomainPtr decoded = Decode(Lists(36));
        MethodList* list = std::exchange(decoded->method_lists[0][column], nullptr);
        decoded.reset();
        EXPECT_EQ(list->methods[0].method_kind, kFirstKind + column);
        DOM_DestroyMethodList(list);
    }
}

TEST_F(DecodedDomain, ListIsReplacedByOneThatTheCallerMade) {
    const DomainPtr decoded = Decode(Lists(3));
    DOM_DestroyMethodList(decoded->method_lists[0][1]);
    decoded->method_lists[0][1] = DOM_CreateMethodList();
    EXPECT_EQ(decoded->method_lists[0][2]->methods[0].method_kind, kFirstKind + 2);
}

TEST_F(DecodedDomain, WithoutMemoryForItsListsThereIsNone) {
    const Message msg = Lists(36);
    fake::FailAllocation(2);
    EXPECT_EQ(Decode(msg), nullptr);
    EXPECT_TRUE(fake::Tripped());
}

struct Rate {
    uint16_t type;
    uint32_t value;
};

DomainPtr WithRates(const std::vector<Rate>& rates) {
    Message sub;
    for (const Rate& rate : rates) sub.U32(rate.type, rate.value);
    Message msg(DOM_MSG_DOMAIN);
    msg.Sub(DOM_TLV_AUTHOR_ATTR, sub);
    return DomainPtr(DOM_DecodeDomain(msg.get()));
}

TEST_F(DecodedDomain, UnscaledRatesWinInEitherOrder) {
    const std::vector<Rate> unscaled = {{DOM_TLV_ATTR_RATE1, 1},
                                        {DOM_TLV_ATTR_RATE2, 0},
                                        {DOM_TLV_ATTR_RATE3, 0xFFFFFFFF},
                                        {DOM_TLV_ATTR_RATE4, 4}};
    const std::vector<Rate> scaled = {{DOM_TLV_ATTR_RATE1_X1024, 9 * 1024},
                                      {DOM_TLV_ATTR_RATE2_X1024, 9 * 1024},
                                      {DOM_TLV_ATTR_RATE3_X1024, 9 * 1024},
                                      {DOM_TLV_ATTR_RATE4_X1024, 9 * 1024}};
    for (const bool scaled_first : {false, true}) {
        std::vector<Rate> rates = scaled_first ? scaled : unscaled;
        const std::vector<Rate>& rest = scaled_first ? unscaled : scaled;
        rates.insert(rates.end(), rest.begin(), rest.end());
        const DomainPtr decoded = WithRates(rates);
        ASSERT_NE(decoded, nullptr);
        for (uint32_t i = 0; i < 4; ++i) {
            EXPECT_EQ(decoded->author_attr.kind21_rates[i], unscaled[i].value) << i;
        }
    }
}

// Old senders write some rates in the scaled form only.
TEST_F(DecodedDomain, RatesOfBothFormsCountEachByItself) {
    const DomainPtr decoded = WithRates({{DOM_TLV_ATTR_RATE1, 1},
                                         {DOM_TLV_ATTR_RATE1_X1024, 9 * 1024},
                                         {DOM_TLV_ATTR_RATE3_X1024, 3 * 1024 + 1023},
                                         {DOM_TLV_ATTR_RATE4, 4}});
    ASSERT_NE(decoded, nullptr);
    EXPECT_EQ(decoded->author_attr.kind21_rates[0], 1u);
    EXPECT_EQ(decoded->author_attr.kind21_rates[1], 0u);
    EXPECT_EQ(decoded->author_attr.kind21_rates[2], 3u);
    EXPECT_EQ(decoded->author_attr.kind21_rates[3], 4u);
}

// The decoder marks rates that it has not seen with a number, which may also come.
TEST_F(DecodedDomain, AnyNumberIsARate) {
    for (const uint32_t value : {0u, 0x9E3779B1u, 0xFFFFFFFFu}) {
        const DomainPtr decoded = WithRates({{DOM_TLV_ATTR_RATE1_X1024, 5 * 1024},
                                             {DOM_TLV_ATTR_RATE1, value},
                                             {DOM_TLV_ATTR_RATE2, 2},
                                             {DOM_TLV_ATTR_RATE3, 3},
                                             {DOM_TLV_ATTR_RATE4, 4}});
        ASSERT_NE(decoded, nullptr);
        EXPECT_EQ(decoded->author_attr.kind21_rates[0], value);
        EXPECT_EQ(decoded->author_attr.kind21_rates[1], 2u);
    }
}

TEST_F(DecodedDomain, PolicyNameIsLowerCasedWhateverRatesCome) {
    for (const bool all_rates : {false, true}) {
        Message sub;
        sub.Text(DOM_TLV_ATTR_ITA_POLICY, "Gold-Policy");
        for (uint16_t i = 0; i < 4 && all_rates; ++i) sub.U32(DOM_TLV_ATTR_RATE1 + i, i);
        Message msg(DOM_MSG_DOMAIN);
        msg.Sub(DOM_TLV_AUTHOR_ATTR, sub);
        const DomainPtr decoded = Decode(msg);
        ASSERT_NE(decoded, nullptr);
        EXPECT_STREQ(decoded->author_attr.ita_policy_name, "gold-policy");
    }
}

}  // namespace
