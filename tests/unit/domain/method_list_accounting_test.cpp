#include <aaadom/accounting_policy.h>

#include <cstring>
#include <string>
#include <thread>

#include "unit/domain/scheme_fixture.h"

namespace aaadom {
namespace {

class DomainAccounting : public SchemeTest {
  protected:
    static void NamePolicy(const std::string& domain, const std::string& policy) {
        AuthorAttr block{};
        strcpy(block.ita_policy_name, policy.c_str());
        ASSERT_EQ(DOM_AddAuthorAttr(domain.c_str(), &block, 12), DOM_OK);
    }
    static uint32_t Value(const char* domain, uint32_t code, uint32_t& value) {
        value = 5;
        return DOM_GetAcctPolicy(domain, code, &value);
    }
};

TEST_F(DomainAccounting, PolicyNameIsCopiedAndCut) {
    Add("a");
    NamePolicy("a", "gold");
    char text[32] = "old";
    EXPECT_EQ(DOM_GetItaPolicyName("A", sizeof text, text), DOM_OK);
    EXPECT_STREQ(text, "gold");
    EXPECT_EQ(DOM_GetItaPolicyName("a", 3, text), DOM_OK);
    EXPECT_STREQ(text, "go");
}

TEST_F(DomainAccounting, OutputIsEmptiedForAnUnknownDomain) {
    char text[8] = "old";
    EXPECT_EQ(DOM_GetItaPolicyName("a", sizeof text, text), DOM_ERR_FAILED);
    EXPECT_STREQ(text, "");
    strcpy(text, "old");
    EXPECT_EQ(DOM_GetItaPolicyName(nullptr, sizeof text, text), DOM_ERR_FAILED);
    EXPECT_STREQ(text, "");
}

TEST_F(DomainAccounting, NothingIsWrittenIntoNoRoom) {
    Add("a");
    NamePolicy("a", "gold");
    char text[8] = "old";
    EXPECT_EQ(DOM_GetItaPolicyName("a", 0, text), DOM_OK);
    EXPECT_EQ(DOM_GetItaPolicyName("b", 0, text), DOM_ERR_FAILED);
    EXPECT_STREQ(text, "old");
    EXPECT_EQ(DOM_GetItaPolicyName("a", 8, nullptr), DOM_OK);
}

TEST_F(DomainAccounting, NameWithoutTerminatorIsReadWithinItsField) {
    Add("a");
    memset(Find("a")->author_attr.ita_policy_name, 'x', 32);
    char text[64];
    EXPECT_EQ(DOM_GetItaPolicyName("a", sizeof text, text), DOM_OK);
    EXPECT_EQ(std::string(text), std::string(32, 'x'));
    MethodList list{};
    EXPECT_EQ(DOM_GetItaMethodList("a", &list), DOM_ERR_FAILED);
    memset(Find("a")->author_attr.ita_policy_name, 0, 32);
}

TEST_F(DomainAccounting, EnabledMeansThatAPolicyIsNamed) {
    EXPECT_EQ(DOM_IsItaEnabled("a"), 0u);
    EXPECT_EQ(DOM_IsItaEnabled(nullptr), 0u);
    Add("a");
    EXPECT_EQ(DOM_IsItaEnabled("a"), 0u);
    NamePolicy("a", "gold");
    EXPECT_EQ(DOM_IsItaEnabled("A"), 1u);
    EXPECT_EQ(InConfig([] { return DOM_IsItaEnabled("a"); }), 0u);
}

TEST_F(DomainAccounting, MethodListComesFromTheNamedPolicy) {
    Add("a");
    NamePolicy("a", "gold");
    ASSERT_EQ(DOM_ita_policy_Create("gold"), DOM_OK);
    const MethodList scheme = ListOf(1, 2, {2, 4});
    ASSERT_EQ(DOM_ita_policy_SetAcctScheme("gold", scheme.methods), DOM_OK);
    MethodList list = ListOf(4, 7, {5});
    EXPECT_EQ(DOM_GetItaMethodList("A", &list), DOM_OK);
    EXPECT_EQ(Show(list), "2@0 4@0");
    EXPECT_EQ(list.aaa_type, 4u);
    EXPECT_EQ(list.service, 7u);
    EXPECT_EQ(DOM_GetItaMethodList("a", nullptr), DOM_ERR_FAILED);
}

TEST_F(DomainAccounting, MethodListFollowsThePolicy) {
    Add("a");
    NamePolicy("a", "gold");
    ASSERT_EQ(DOM_ita_policy_Create("gold"), DOM_OK);
    MethodList list{};
    EXPECT_EQ(DOM_GetItaMethodList("a", &list), DOM_OK);
    EXPECT_EQ(Show(list), "5@0");
    const MethodList scheme = ListOf(0, 0, {1, 4});
    ASSERT_EQ(DOM_ita_policy_SetAcctScheme("gold", scheme.methods), DOM_OK);
    EXPECT_EQ(DOM_GetItaMethodList("a", &list), DOM_OK);
    EXPECT_EQ(Show(list), "1@0 4@0");
    ASSERT_EQ(DOM_ita_policy_Delete("gold"), DOM_OK);
    EXPECT_EQ(DOM_GetItaMethodList("a", &list), DOM_ERR_FAILED);
}

TEST_F(DomainAccounting, PolicyOfAnotherLetterCaseIsNotTheDomains) {
    Add("a");
    NamePolicy("a", "gold");
    ASSERT_EQ(DOM_ita_policy_Create("Gold"), DOM_OK);
    MethodList list{};
    EXPECT_EQ(DOM_GetItaMethodList("a", &list), DOM_ERR_FAILED);
}

TEST_F(DomainAccounting, MethodListFailsWithoutDomainNameOrPolicy) {
    MethodList list = ListOf(4, 7, {5});
    EXPECT_EQ(DOM_GetItaMethodList("a", &list), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_GetItaMethodList(nullptr, &list), DOM_ERR_FAILED);
    Add("a");
    EXPECT_EQ(DOM_GetItaMethodList("a", &list), DOM_ERR_FAILED);
    NamePolicy("a", "gold");
    EXPECT_EQ(DOM_GetItaMethodList("a", &list), DOM_ERR_FAILED);
    EXPECT_EQ(Show(list), "5@0");
}

// While the policy store is busy, operations on domains go on.
TEST_F(DomainAccounting, TableMutexIsReleasedBeforeThePolicyMutexIsTaken) {
    Add("a");
    NamePolicy("a", "gold");
    const uint64_t before = fake::Count(fake::Event::kLock);
    {
        fake::Quiet not_counted;
        pthread_mutex_lock(&g_stDomainItaPolicyTableMutexLock);
    }
    MethodList list{};
    std::thread reader([&] { (void)DOM_GetItaMethodList("a", &list); });
    while (fake::Count(fake::Event::kLock) < before + 2) std::this_thread::yield();
    EXPECT_EQ(fake::HeldLocks(), 0);
    {
        fake::Quiet not_counted;
        pthread_mutex_unlock(&g_stDomainItaPolicyTableMutexLock);
    }
    reader.join();
    EXPECT_EQ(fake::Count(fake::Event::kLock), before + 2);
}

TEST_F(DomainAccounting, EachReaderTakesTheTableMutexOnce) {
    Add("a");
    char text[32];
    uint32_t value = 0;
    uint64_t locks = fake::Count(fake::Event::kLock);
    for (const char* domain : {"a", "b"}) {
        (void)DOM_GetItaPolicyName(domain, sizeof text, text);
        EXPECT_EQ(fake::Count(fake::Event::kLock), ++locks);
        (void)DOM_IsItaEnabled(domain);
        EXPECT_EQ(fake::Count(fake::Event::kLock), ++locks);
        (void)DOM_GetAcctPolicy(domain, 187, &value);
        EXPECT_EQ(fake::Count(fake::Event::kLock), ++locks);
    }
}

TEST_F(DomainAccounting, EachCodeReadsItsWord) {
    Add("a");
    AuthorAttr block{};
    block.kind13_word = 13;
    block.kind14_word1 = 141;
    block.kind14_word2 = 142;
    block.kind15_word = 15;
    for (uint32_t kind : {13u, 14u, 15u}) DOM_AddAuthorAttr("a", &block, kind);
    uint32_t value = 0;
    const std::pair<uint32_t, uint32_t> expected[] = {{187, 13}, {188, 141}, {189, 142}, {190, 15}};
    for (auto [code, word] : expected) {
        EXPECT_EQ(Value("A", code, value), DOM_OK);
        EXPECT_EQ(value, word) << code;
    }
    EXPECT_EQ(DOM_GetAcctPolicy("a", 187, nullptr), DOM_OK);
}

TEST_F(DomainAccounting, NewDomainHasTheInitialWords) {
    Add("a");
    uint32_t value = 0;
    const std::pair<uint32_t, uint32_t> expected[] = {{187, 0}, {188, 0}, {189, 1}, {190, 1}};
    for (auto [code, word] : expected) {
        EXPECT_EQ(Value("a", code, value), DOM_OK);
        EXPECT_EQ(value, word) << code;
    }
}

// A code that has no word is answered, not refused: callers tell it by the value.
TEST_F(DomainAccounting, OtherCodesSucceedWithNoValue) {
    Add("a");
    uint32_t value = 0;
    for (uint32_t code : {0u, 186u, 191u, 0xFFFFFFFFu}) {
        EXPECT_EQ(Value("a", code, value), DOM_OK);
        EXPECT_EQ(value, 0xFFFFFFFFu) << code;
    }
}

TEST_F(DomainAccounting, UnknownDomainFailsWithNoValue) {
    uint32_t value = 0;
    for (uint32_t code : {187u, 191u}) {
        EXPECT_EQ(Value("a", code, value), DOM_ERR_FAILED);
        EXPECT_EQ(value, 0xFFFFFFFFu);
    }
    EXPECT_EQ(DOM_GetAcctPolicy(nullptr, 187, nullptr), DOM_ERR_FAILED);
}

}  // namespace
}  // namespace aaadom
