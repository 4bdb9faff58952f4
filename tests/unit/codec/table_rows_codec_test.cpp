// Rows of the domain and scheme tables, and the walks over the tables of both roles.
#include <aaadom/domain.h>
#include <aaadom/domain_codec.h>
#include <aaadom/domain_table.h>
#include <aaadom/method_list.h>

#include <chrono>
#include <functional>
#include <future>

#include "fakes/role.h"
#include "unit/codec/codec_test_support.h"

namespace {

using namespace codec_test;

class Rows : public CodecTest {};

TEST_F(Rows, DomainRowOrderWithAndWithoutFlags) {
    const TlvPtr plain(DOM_EncodeDomainInfo("d", 1, 4));
    EXPECT_EQ(TypesOf(plain.get()), (std::vector<uint32_t>{0, 2, 6, 33}));
    const TlvPtr flagged(DOM_EncodeDomainInfoFlag(1, "d", 1, 4));
    EXPECT_EQ(TypesOf(flagged.get()), (std::vector<uint32_t>{0, 32, 2, 6, 33}));
    ExpectEveryFailureGivesNull([] { return DOM_EncodeDomainInfo("d", 1, 4); });
    ExpectEveryFailureGivesNull([] { return DOM_EncodeDomainInfoFlag(1, "d", 1, 4); });
    EXPECT_EQ(DOM_EncodeDomainInfo(nullptr, 1, 4), nullptr);
}

TEST_F(Rows, DomainRowStateKeeps32Bits) {
    const TlvPtr msg(DOM_EncodeDomainInfo("d", 0x12345678, 4));
    DomainMibRow row;
    ASSERT_EQ(DOM_DecodeDomainInfoTable(msg.get(), &row, nullptr), DOM_OK);
    EXPECT_EQ(row.state, 0x12345678u);
}

TEST_F(Rows, DomainRowNeedsCode0Or14AndAName) {
    DomainMibRow row;
    uint64_t flags = 9;
    for (const uint32_t code : {0u, 14u}) {
        Message msg(code);
        msg.Text(DOM_TLV_DOMAIN_NAME, "d");
        EXPECT_EQ(DOM_DecodeDomainInfoTable(msg.get(), &row, &flags), DOM_OK);
        EXPECT_EQ(flags, 0u);
        EXPECT_EQ(row.state, 0u);
    }
    Message other(15);
    other.Text(DOM_TLV_DOMAIN_NAME, "d");
    EXPECT_EQ(DOM_DecodeDomainInfoTable(other.get(), &row, &flags), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DecodeDomainInfoTable(Message(14).get(), &row, &flags), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DecodeDomainInfoTable(nullptr, nullptr, nullptr), DOM_ERR_FAILED);
}

TEST_F(Rows, SchemeRowOrder) {
    const TlvPtr msg(DOM_EncodeDomainSchemeFlag(1, "d", 4, 5, 3, 2, "s"));
    EXPECT_EQ(TypesOf(msg.get()), (std::vector<uint32_t>{0, 32, 2, 33, 8, 30, 12, 13}));
    ExpectEveryFailureGivesNull([] { return DOM_EncodeDomainSchemeFlag(1, "d", 4, 5, 3, 2, "s"); });
    EXPECT_EQ(DOM_EncodeDomainSchemeFlag(1, nullptr, 4, 5, 3, 2, "s"), nullptr);
    EXPECT_EQ(DOM_EncodeDomainSchemeFlag(1, "d", 4, 5, 3, 2, nullptr), nullptr);
}

TEST_F(Rows, LongNamesOfRowsAreCutBeforeTheyAreSent) {
    const std::string name(300, 'd');
    const std::string scheme(300, 's');
    const TlvPtr domain(DOM_EncodeDomainInfo(name.c_str(), 1, 4));
    EXPECT_EQ(TextOf(domain.get(), DOM_TLV_DOMAIN_NAME), std::string(255, 'd'));
    const TlvPtr row(DOM_EncodeDomainSchemeFlag(0, name.c_str(), 4, 5, 3, 2, scheme.c_str()));
    EXPECT_EQ(TextOf(row.get(), DOM_TLV_DOMAIN_NAME), std::string(255, 'd'));
    EXPECT_EQ(TextOf(row.get(), DOM_TLV_SCHEME_NAME), std::string(32, 's'));
}

TEST_F(Rows, SchemeNameIsCutTo32Characters) {
    Message msg(15);
    msg.Text(DOM_TLV_DOMAIN_NAME, "d").Text(DOM_TLV_SCHEME_NAME, std::string(300, 's'));
    MibSchemeRow row{};
    ASSERT_EQ(DOM_DecodeMibSchemeTable(msg.get(), &row), DOM_OK);
    EXPECT_EQ(std::string(row.scheme_name), std::string(32, 's'));
}

TEST_F(Rows, DamagedRowsNeverHurt) {
    const TlvPtr domain(DOM_EncodeDomainInfoFlag(1, "isp", 2, 4));
    const TlvPtr scheme(DOM_EncodeDomainSchemeFlag(1, "isp", 4, 5, 3, 2, "s"));
    for (TLV_MSG* row : {domain.get(), scheme.get()}) {
        ForEveryDamage(row, [](TLV_MSG* damaged) {
            DomainMibRow domain_row;
            uint64_t flags;
            (void)DOM_DecodeDomainInfoTable(damaged, &domain_row, &flags);
            EXPECT_LT(strnlen(domain_row.domain_name, sizeof domain_row.domain_name),
                      sizeof domain_row.domain_name);
            MibSchemeRow scheme_row{};
            (void)DOM_DecodeMibSchemeTable(damaged, &scheme_row);
            EXPECT_LT(strnlen(scheme_row.scheme_name, sizeof scheme_row.scheme_name),
                      sizeof scheme_row.scheme_name);
        });
    }
}

TEST_F(Rows, SchemeRowKeepsThePresetsOfWhatIsMissing) {
    MibSchemeRow row{};
    row.method_kind = 4;
    row.row_status = 1;
    row.service = 5;
    Message msg(15);
    msg.Text(DOM_TLV_DOMAIN_NAME, std::string(300, 'd')).U32(DOM_TLV_ROW_STATUS, 4);
    ASSERT_EQ(DOM_DecodeMibSchemeTable(msg.get(), &row), DOM_OK);
    EXPECT_EQ(std::string(row.domain_name), std::string(255, 'd'));
    EXPECT_EQ(row.method_kind, 4u);
    EXPECT_EQ(row.row_status, 1u) << "the status belongs to the request";
    EXPECT_EQ(row.service, 5u);
}

TEST_F(Rows, SchemeRowWithoutADomainIsRefusedUntouched) {
    MibSchemeRow row{};
    row.scheme_index = 77;
    Message msg(15);
    msg.U32(DOM_TLV_SCHEME_INDEX, 1);
    EXPECT_EQ(DOM_DecodeMibSchemeTable(msg.get(), &row), DOM_ERR_FAILED);
    EXPECT_EQ(row.scheme_index, 77u);
    EXPECT_EQ(DOM_DecodeMibSchemeTable(nullptr, &row), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DecodeMibSchemeTable(msg.get(), nullptr), DOM_ERR_FAILED);
}

class Walks : public CodecTest {
  protected:
    Walks() { fake::InitBothRoles(); }
    ~Walks() override { fake::FiniBothRoles(); }
    static void Add(const char* name, uint32_t role = fake::kWorkingRole) {
        const fake::ScopedRole scoped(role);
        ASSERT_EQ(DOM_AddDomainByName(name), DOM_ADD_OK);
    }
    static std::string NameIn(const TlvPtr& msg) {
        return msg ? TextOf(msg.get(), DOM_TLV_DOMAIN_NAME) : std::string("(none)");
    }
    uint32_t status = 77;
};

TEST_F(Walks, DomainIsFoundInAnyCaseAndEncodedWhole) {
    Add("Isp");
    const TlvPtr msg(DOM_EncodeDomain("iSP"));
    ASSERT_NE(msg, nullptr);
    EXPECT_EQ(NameIn(msg), "Isp");
    EXPECT_EQ(NumberOf(msg.get(), DOM_TLV_MSG_CODE), 0u);
    EXPECT_EQ(TypesOf(msg.get()).back(), static_cast<uint32_t>(DOM_TLV_AUTHOR_ATTR));
}

TEST_F(Walks, UnknownAndNullDomainsGiveNull) {
    EXPECT_EQ(DOM_EncodeDomain("nobody"), nullptr);
    EXPECT_EQ(DOM_EncodeDomain(nullptr), nullptr);
}

TEST_F(Walks, DomainComesFromTheCallingRole) {
    Add("cfg-only", fake::kConfigRole);
    EXPECT_EQ(DOM_EncodeDomain("cfg-only"), nullptr);
    const fake::ScopedRole scoped(fake::kConfigRole);
    const TlvPtr msg(DOM_EncodeDomain("cfg-only"));
    EXPECT_NE(msg, nullptr);
}

TEST_F(Walks, EveryFailureGivesNullAndReleasesTheLock) {
    Add("isp");
    ExpectEveryFailureGivesNull([] { return DOM_EncodeDomain("isp"); });
    EXPECT_EQ(fake::HeldLocks(), 0);
    char next[DOM_NAME_SIZE];
    ExpectEveryFailureGivesNull([&] { return DOM_EncodeNextDomain("", next); });
    ExpectEveryFailureGivesNull([&] { return DOM_EncodeMIBNextDomain("", 0, &status); });
    ExpectEveryFailureGivesNull([&] { return DOM_EncodeNetConfNextDomain("", &status); });
    ExpectEveryFailureGivesNull([&] { return DOM_EncodeMibSchemeTable(&status); });
    EXPECT_EQ(fake::HeldLocks(), 0);
}

// A thread that holds the table mutex keeps every encoder of the table out, and no decoder.
TEST_F(Walks, EncodersOfTheTableWaitForItsLockAndDecodersDoNot) {
    Add("isp");
    const TlvPtr record(DOM_EncodeDomain("isp"));
    const std::vector<std::function<TLV_MSG*()>> encoders = {
        [] { return DOM_EncodeDomain("isp"); },
        [] { return DOM_EncodeNextDomain("", nullptr); },
        [] { return DOM_EncodeMIBNextDomain("", 0, nullptr); },
        [] { return DOM_EncodeNetConfNextDomain("", nullptr); },
        [] { return DOM_EncodeMibSchemeTable(nullptr); },
        [] { return DOM_EncodeMibNextSchemeTable("isp", 3, 1, nullptr); },
    };
    for (size_t i = 0; i < encoders.size(); ++i) {
        ASSERT_EQ(DOM_DomainInfoTableLock(), 0u);
        auto encoded = std::async(std::launch::async, [&] { return TlvPtr(encoders[i]()); });
        EXPECT_EQ(encoded.wait_for(std::chrono::milliseconds(30)), std::future_status::timeout)
            << "encoder " << i;
        ASSERT_EQ(DOM_DomainInfoTableUnlock(), 0u);
        EXPECT_NE(encoded.get(), nullptr) << "encoder " << i;
    }
    ASSERT_EQ(DOM_DomainInfoTableLock(), 0u);
    DomainInfo* decoded = DOM_DecodeDomain(record.get());
    ASSERT_EQ(DOM_DomainInfoTableUnlock(), 0u);
    EXPECT_NE(decoded, nullptr);
    DOM_DestroyDomain(decoded);
}

TEST_F(Walks, TableOrderIsSlotOrderAndOneBufferServesBothNames) {
    for (const char* name : {"c", "aa", "b"}) Add(name);
    char cursor[DOM_NAME_SIZE] = "";
    std::vector<std::string> names;
    for (;;) {
        const TlvPtr msg(DOM_EncodeNextDomain(cursor, cursor));
        if (!msg) break;
        EXPECT_EQ(NameIn(msg), cursor);
        names.emplace_back(cursor);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"c", "aa", "b"}));
    EXPECT_STREQ(cursor, "b") << "the end leaves the name";
}

TEST_F(Walks, TableWalkFromAnUnknownOrNullNameGivesNull) {
    Add("a");
    char next[DOM_NAME_SIZE] = "old";
    EXPECT_EQ(DOM_EncodeNextDomain("nobody", next), nullptr);
    EXPECT_EQ(DOM_EncodeNextDomain(nullptr, next), nullptr);
    EXPECT_STREQ(next, "old");
    const TlvPtr msg(DOM_EncodeNextDomain("", nullptr));
    EXPECT_NE(msg, nullptr);
}

TEST_F(Walks, RowOrderIsLengthFirst) {
    for (const char* name : {"b", "aa", "ab", "c"}) Add(name);
    std::string key;
    std::vector<std::string> names;
    for (;;) {
        const TlvPtr msg(
            DOM_EncodeMIBNextDomain(key.c_str(), static_cast<uint32_t>(key.size()), &status));
        if (!msg) break;
        EXPECT_EQ(status, static_cast<uint32_t>(DOM_WALK_OK));
        key = NameIn(msg);
        names.push_back(key);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"b", "c", "aa", "ab"}));
}

// Row management tells an empty table (8) from the end of one (9); the text-order walk does not.
TEST_F(Walks, EndOfARowWalkKeeps9AndOnlyAnEmptyListGives8) {
    EXPECT_EQ(DOM_EncodeMIBNextDomain("", 0, &status), nullptr);
    EXPECT_EQ(status, 8u);
    EXPECT_EQ(DOM_EncodeMIBNextDomain("a", 1, &status), nullptr);
    EXPECT_EQ(status, 8u);
    Add("a");
    EXPECT_EQ(DOM_EncodeMIBNextDomain("a", 1, &status), nullptr);
    EXPECT_EQ(status, 9u);
}

TEST_F(Walks, RowWalkOfARoleThatLacksTheDomainKeeps9) {
    Add("working-only");
    const fake::ScopedRole scoped(fake::kConfigRole);
    EXPECT_EQ(DOM_EncodeMIBNextDomain("", 0, &status), nullptr);
    EXPECT_EQ(status, 9u);
}

// Replacing a record under another name leaves the former name in the order, so the order is not
// empty when the last counted domain is gone.
TEST_F(Walks, NameLeftInTheOrderKeeps9WithoutAnyDomain) {
    Add("former");
    DomainInfo* successor = DOM_CreateDomain();
    strcpy(successor->name, "successor");
    successor->slot = 0;
    ASSERT_EQ(DOM_DomainInfoTableLock(), 0u);
    ASSERT_EQ(DOM_UpdateDomain(successor), DOM_OK);
    ASSERT_EQ(DOM_DomainInfoTableUnlock(), 0u);
    ASSERT_EQ(DOM_DeleteDomainAndDBByName("successor", 0), DOM_OK);
    uint32_t count = 77;
    ASSERT_EQ(DOM_GetDomainCount(&count), DOM_OK);
    ASSERT_EQ(count, 0u);
    EXPECT_EQ(DOM_EncodeMIBNextDomain("", 0, &status), nullptr);
    EXPECT_EQ(status, 9u);
}

TEST_F(Walks, RowWalkFollowsTheWorkingRolesOrder) {
    Add("cfg-only", fake::kConfigRole);
    const fake::ScopedRole scoped(fake::kConfigRole);
    EXPECT_EQ(DOM_EncodeMIBNextDomain("", 0, &status), nullptr);
    EXPECT_EQ(status, 8u) << "the working role's list is the one that is walked";
}

TEST_F(Walks, StatusIs9WhenNoMessageCanBeMadeEvenInAnEmptyTable) {
    fake::FailMessage(1);
    EXPECT_EQ(DOM_EncodeMIBNextDomain("", 0, &status), nullptr);
    EXPECT_EQ(status, 9u);
    status = 77;
    fake::FailMessage(1);
    EXPECT_EQ(DOM_EncodeNetConfNextDomain("", &status), nullptr);
    EXPECT_EQ(status, 9u);
    status = 77;
    fake::FailMessage(1);
    EXPECT_EQ(DOM_EncodeMibSchemeTable(&status), nullptr);
    EXPECT_EQ(status, 9u);
    fake::DisarmFailures();
}

TEST_F(Walks, NullArgumentsOfTheWalks) {
    EXPECT_EQ(DOM_EncodeMIBNextDomain(nullptr, 1, &status), nullptr);
    EXPECT_EQ(status, 9u);
    EXPECT_EQ(DOM_EncodeNetConfNextDomain(nullptr, &status), nullptr);
    EXPECT_EQ(status, 9u);
    EXPECT_EQ(DOM_EncodeMibNextSchemeTable(nullptr, 1, 1, &status), nullptr);
    EXPECT_EQ(status, 9u);
    Add("a");
    const TlvPtr first(DOM_EncodeMIBNextDomain(nullptr, 0, nullptr));
    EXPECT_EQ(NameIn(first), "a");
    const TlvPtr netconf(DOM_EncodeNetConfNextDomain("", nullptr));
    EXPECT_EQ(NameIn(netconf), "a");
}

TEST_F(Walks, NetConfOrderIsTextOrderAndItsEndIs8) {
    for (const char* name : {"b", "aa", "ab", "c"}) Add(name);
    std::string key;
    std::vector<std::string> names;
    for (;;) {
        const TlvPtr msg(DOM_EncodeNetConfNextDomain(key.c_str(), &status));
        if (!msg) break;
        EXPECT_EQ(status, static_cast<uint32_t>(DOM_WALK_OK));
        key = NameIn(msg);
        names.push_back(key);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"aa", "ab", "b", "c"}));
    EXPECT_EQ(status, 8u);
}

TEST_F(Walks, EmptyNetConfWalkIs8) {
    EXPECT_EQ(DOM_EncodeNetConfNextDomain("", &status), nullptr);
    EXPECT_EQ(status, 8u);
}

TEST_F(Walks, SchemeWalkVisitsEveryRowWithStatusActive) {
    for (const char* name : {"bb", "a"}) Add(name);
    std::vector<std::pair<std::string, uint32_t>> rows;
    TlvPtr msg(DOM_EncodeMibSchemeTable(&status));
    while (msg) {
        EXPECT_EQ(status, static_cast<uint32_t>(DOM_WALK_OK));
        EXPECT_EQ(TypesOf(msg.get()), (std::vector<uint32_t>{0, 2, 33, 8, 30, 12, 13}));
        EXPECT_EQ(NumberOf(msg.get(), DOM_TLV_ROW_STATUS), 1u);
        EXPECT_EQ(NumberOf(msg.get(), DOM_TLV_METHOD_TYPE), 4u);
        const std::string name = NameIn(msg);
        const uint32_t index = NumberOf(msg.get(), DOM_TLV_SCHEME_INDEX);
        rows.emplace_back(name, index);
        ASSERT_LE(rows.size(), 6u);
        msg.reset(DOM_EncodeMibNextSchemeTable(name.c_str(), static_cast<uint32_t>(name.size()),
                                               index, &status));
    }
    const std::vector<std::pair<std::string, uint32_t>> want = {{"a", 1},  {"a", 2},  {"a", 3},
                                                                {"bb", 1}, {"bb", 2}, {"bb", 3}};
    EXPECT_EQ(rows, want);
    EXPECT_EQ(status, 9u) << "the table has rows";
}

TEST_F(Walks, SchemeWalkOfAnEmptyTableIs8) {
    EXPECT_EQ(DOM_EncodeMibSchemeTable(&status), nullptr);
    EXPECT_EQ(status, 8u);
    EXPECT_EQ(DOM_EncodeMibNextSchemeTable("a", 1, 1, &status), nullptr);
    EXPECT_EQ(status, 8u);
    EXPECT_EQ(fake::HeldLocks(), 0);
}

}  // namespace
