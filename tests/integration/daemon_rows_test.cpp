// Rows of the domain table and of the scheme table through the daemon.
#include <aaadom/rows.h>
#include <platform/aaa_tlv.h>

#include <algorithm>
#include <atomic>
#include <set>
#include <thread>

#include "daemon_process.h"

using namespace daemon_test;

namespace {

using DaemonDomainRows = DaemonTest;
using DaemonSchemeRows = DaemonTest;
using DaemonWalks = DaemonTest;

uint32_t CreateRow(const std::string& name, uint32_t state,
                   uint32_t status = DOM_ROW_CREATE_AND_GO) {
    uint32_t result = kNoReply;
    EXPECT_EQ(MOR_CreateDomainInfoTable(name.c_str(), state, status, &result), DOM_OK);
    return result;
}

uint32_t ModifyRow(const std::string& name, uint64_t flags, uint32_t state) {
    uint32_t result = kNoReply;
    EXPECT_EQ(MOR_SetDomainInfoTable(flags, name.c_str(), state, DOM_ROW_ACTIVE, &result), DOM_OK);
    return result;
}

uint32_t SetScheme(const std::string& domain, uint32_t status, uint32_t index, uint32_t kind,
                   const char* scheme, uint32_t operation = DOM_OP_SET) {
    uint32_t result = kNoReply;
    EXPECT_EQ(MOR_SetSchemeTable(0, domain.c_str(), status, AAA_TYPE_0, index, kind, scheme,
                                 operation, &result),
              DOM_OK);
    return result;
}

/// The result of an exact read, DOM_OK with the row.
uint32_t GetScheme(const std::string& domain, uint32_t index, MibSchemeRow& row) {
    row = MibSchemeRow{};
    uint32_t result = DOM_OK;
    EXPECT_EQ(MOR_GetMibSchemeTable(domain.c_str(), static_cast<uint32_t>(domain.size()), index,
                                    DOM_OP_GET, &row, &result),
              DOM_OK);
    return result;
}

bool InRowOrder(const SchemeKey& a, const SchemeKey& b) {
    if (a.first.size() != b.first.size()) return a.first.size() < b.first.size();
    return a < b;
}

TEST_F(DaemonDomainRows, CreateAndGoMakesADomainInBothRoles) {
    EXPECT_EQ(CreateRow("corp", 0), DOM_ROW_OK);
    ASSERT_TRUE(GetDomain("corp"));
    EXPECT_EQ(GetDomain("corp")->state, 0);
    DomainMibRow row{};
    uint32_t result = kNoReply;
    ASSERT_EQ(MOR_GetDomainInfoTable("", 0, DOM_OP_GET_NEXT, &row, &result), DOM_OK);
    EXPECT_STREQ(row.domain_name, "corp");
    EXPECT_EQ(row.state, 0u);
}

TEST_F(DaemonDomainRows, ResultsOfRefusedRows) {
    ASSERT_EQ(CreateRow("corp", 1), DOM_ROW_OK);
    EXPECT_EQ(CreateRow("CORP", 1), DOM_ROW_EXISTS);
    EXPECT_EQ(CreateRow("no/name", 1), DOM_ROW_BAD_NAME);
    EXPECT_EQ(CreateRow("other", 1, 5), DOM_ROW_FAILED);
    EXPECT_EQ(ModifyRow("nowhere", 1, 0), DOM_ROW_NO_OBJECT);
    EXPECT_EQ(Change(DOM_EncodeDomainInfo("corp", 1, DOM_ROW_ACTIVE), DOM_OP_DELETE),
              AAAD_ERR_MALFORMED);
    EXPECT_EQ(CountDomains(), 2u);
}

TEST_F(DaemonDomainRows, NameThatWouldBeCutOrIsEmptyMakesNoDomain) {
    // The encoder would cut the name itself, and another one need not.
    TLV_MSG* overlong = CodeAlone(DOM_MSG_DOMAIN_ROW);
    ASSERT_EQ(AAA_AppendStrTlvData(overlong, DOM_TLV_DOMAIN_NAME, std::string(256, 'n').c_str()),
              0u);
    ASSERT_EQ(AAA_AppendUINTTlvData(overlong, DOM_TLV_ROW_STATUS, DOM_ROW_CREATE_AND_GO), 0u);
    EXPECT_EQ(Change(overlong), DOM_ROW_BAD_NAME);
    EXPECT_EQ(CreateRow("", 1), DOM_ROW_BAD_NAME);
    TLV_MSG* nameless = CodeAlone(DOM_MSG_DOMAIN_ROW);
    ASSERT_EQ(AAA_AppendUINTTlvData(nameless, DOM_TLV_ROW_STATUS, DOM_ROW_CREATE_AND_GO), 0u);
    EXPECT_EQ(Change(nameless), AAAD_ERR_MALFORMED);
    EXPECT_EQ(CountDomains(), 1u);
}

TEST_F(DaemonDomainRows, FlagsSayWhetherTheStateCounts) {
    ASSERT_EQ(CreateRow("corp", 1), DOM_ROW_OK);
    EXPECT_EQ(ModifyRow("corp", 0, 0), DOM_ROW_OK);
    EXPECT_EQ(GetDomain("corp")->state, 1);
    EXPECT_EQ(ModifyRow("corp", 1, 0), DOM_ROW_OK);
    EXPECT_EQ(GetDomain("corp")->state, 0);
}

TEST_F(DaemonDomainRows, FullTableHasItsOwnResult) {
    for (int i = 1; i < DOM_MAX_DOMAINS; ++i) {
        ASSERT_EQ(CreateRow("d" + std::to_string(i), 1), DOM_ROW_OK) << i;
    }
    EXPECT_EQ(CreateRow("one-more", 1), DOM_ROW_FULL);
    EXPECT_EQ(CountDomains(), 1024u);
    EXPECT_EQ(ListSchemeRows().size(), 3072u);
}

TEST_F(DaemonDomainRows, RowsSurviveSigkill) {
    ASSERT_EQ(CreateRow("corp", 0), DOM_ROW_OK);
    ASSERT_EQ(CreateRow("guest", 1), DOM_ROW_OK);
    ASSERT_EQ(ModifyRow("guest", 1, 0), DOM_ROW_OK);
    const auto before = WholeConfiguration();
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(WholeConfiguration(), before);
    EXPECT_EQ(GetDomain("guest")->state, 0);
}

TEST_F(DaemonSchemeRows, NewDomainHasThreeRows) {
    ASSERT_EQ(CreateDomain("corp"), DOM_OK);
    EXPECT_EQ(
        ListSchemeRows(),
        (std::vector<SchemeKey>{
            {"corp", 1}, {"corp", 2}, {"corp", 3}, {"system", 1}, {"system", 2}, {"system", 3}}));
}

TEST_F(DaemonSchemeRows, AddModifyAndDelete) {
    ASSERT_EQ(CreateDomain("corp"), DOM_OK);
    ASSERT_EQ(SetScheme("corp", DOM_ROW_CREATE_AND_GO, 7, METHOD_SCHEME_2, "radius"), DOM_ROW_OK);
    MibSchemeRow row{};
    ASSERT_EQ(GetScheme("CORP", 7, row), DOM_OK);
    EXPECT_STREQ(row.domain_name, "corp");
    EXPECT_EQ(row.aaa_type, static_cast<uint32_t>(AAA_TYPE_0));
    EXPECT_EQ(row.method_kind, static_cast<uint32_t>(METHOD_SCHEME_2));
    EXPECT_STREQ(row.scheme_name, "radius");
    ASSERT_EQ(SetScheme("corp", DOM_ROW_ACTIVE, 7, METHOD_SCHEME_3, "tacacs"), DOM_ROW_OK);
    ASSERT_EQ(GetScheme("corp", 7, row), DOM_OK);
    EXPECT_STREQ(row.scheme_name, "tacacs");

    ASSERT_EQ(SetScheme("corp", DOM_ROW_ACTIVE, 7, METHOD_SCHEME_3, "", DOM_OP_DELETE), DOM_ROW_OK);
    EXPECT_EQ(GetScheme("corp", 7, row), AAAD_ERR_NO_OBJECT);
    EXPECT_EQ(ListSchemeRows().size(), 6u);
}

TEST_F(DaemonSchemeRows, ResultsOfRefusedRows) {
    ASSERT_EQ(CreateDomain("corp"), DOM_OK);
    const auto before = WholeConfiguration();
    EXPECT_EQ(SetScheme("nowhere", DOM_ROW_ACTIVE, 1, METHOD_LAST_5, ""), DOM_ROW_NO_OBJECT);
    EXPECT_EQ(SetScheme("nowhere", DOM_ROW_CREATE_AND_GO, 4, METHOD_LAST_5, ""), DOM_ROW_FAILED);
    EXPECT_EQ(SetScheme("corp", DOM_ROW_CREATE_AND_GO, 1, METHOD_LAST_5, ""), DOM_ROW_FAILED);
    EXPECT_EQ(SetScheme("corp", DOM_ROW_CREATE_AND_GO, 9, METHOD_DEFAULT_4, ""), DOM_ROW_FAILED);
    EXPECT_EQ(SetScheme("corp", 6, 9, METHOD_LAST_5, ""), DOM_ROW_FAILED);
    MibSchemeRow row{};
    EXPECT_EQ(GetScheme("corp", 9, row), AAAD_ERR_NO_OBJECT);
    EXPECT_EQ(GetScheme("nowhere", 1, row), AAAD_ERR_NO_OBJECT);
    EXPECT_EQ(WholeConfiguration(), before);
}

TEST_F(DaemonSchemeRows, RowsKeepTheirIndexesOverSigkill) {
    ASSERT_EQ(CreateDomain("corp"), DOM_OK);
    ASSERT_EQ(SetScheme("corp", DOM_ROW_CREATE_AND_GO, 7, METHOD_SCHEME_2, "radius"), DOM_ROW_OK);
    ASSERT_EQ(SetScheme("corp", DOM_ROW_CREATE_AND_GO, 9, METHOD_LAST_5, ""), DOM_ROW_OK);
    ASSERT_EQ(SetScheme("system", DOM_ROW_CREATE_AND_GO, 4, METHOD_LAST_5, ""), DOM_ROW_OK);
    const auto rows = ListSchemeRows();
    const auto before = WholeConfiguration();
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(ListSchemeRows(), rows);
    EXPECT_EQ(WholeConfiguration(), before);
}

// A whole record brings the lists that it has, and this one has none.
TEST_F(DaemonSchemeRows, DomainWithoutListsInFrontHidesNoRow) {
    TLV_MSG* record = CodeAlone(DOM_MSG_DOMAIN);
    ASSERT_EQ(AAA_AppendStrTlvData(record, DOM_TLV_DOMAIN_NAME, "a"), 0u);
    ASSERT_EQ(Change(record), DOM_OK);
    EXPECT_EQ(ListSchemeRows(),
              (std::vector<SchemeKey>{{"system", 1}, {"system", 2}, {"system", 3}}));
}

// Every row that is there during the whole walk is seen once, in order; others may be seen or not.
TEST_F(DaemonWalks, SeeEveryStableRowOnceWhileOthersComeAndGo) {
    constexpr int kStable = 12;
    std::vector<SchemeKey> stable_rows;
    std::set<std::string> stable;
    for (int i = 0; i < kStable; ++i) {
        const std::string name = std::string(1 + i % 4, static_cast<char>('b' + i));
        ASSERT_EQ(CreateDomain(name), DOM_OK);
        stable.insert(name);
    }
    stable.insert("system");
    for (const std::string& name : stable) {
        for (uint32_t index = 1; index <= 3; ++index) stable_rows.push_back({name, index});
    }
    std::sort(stable_rows.begin(), stable_rows.end(), InRowOrder);

    std::atomic<bool> stop{false};
    std::atomic<int> changes{0};
    std::thread other([&] {
        for (int i = 0; !stop; ++i) {
            const std::string name = std::string(1 + i % 5, static_cast<char>('a' + i % 25)) + "-";
            changes += CreateDomain(name) == DOM_OK;
            changes += SetScheme(name, DOM_ROW_CREATE_AND_GO, 4 + static_cast<uint32_t>(i % 3),
                                 METHOD_LAST_5, "") == DOM_ROW_OK;
            changes += SetScheme("system", DOM_ROW_CREATE_AND_GO, 9, METHOD_SCHEME_2, "radius") ==
                       DOM_ROW_OK;
            changes += DeleteDomain(name) == DOM_OK;
        }
    });
    for (int round = 0; round < 25; ++round) {
        const std::vector<SchemeKey> rows = ListSchemeRows();
        for (size_t i = 1; i < rows.size(); ++i) {
            ASSERT_TRUE(InRowOrder(rows[i - 1], rows[i])) << rows[i].first;
        }
        std::vector<SchemeKey> seen;
        std::set_intersection(rows.begin(), rows.end(), stable_rows.begin(), stable_rows.end(),
                              std::back_inserter(seen), InRowOrder);
        EXPECT_EQ(seen, stable_rows);

        std::string name;
        std::vector<std::string> domains;
        DomainMibRow row{};
        uint32_t result = DOM_OK;
        while (MOR_GetDomainInfoTable(name.c_str(), static_cast<uint32_t>(name.size()),
                                      DOM_OP_GET_NEXT, &row, &result) == DOM_OK &&
               result == DOM_OK && domains.size() <= 2 * DOM_MAX_DOMAINS) {
            const SchemeKey before{name, 0};
            name = row.domain_name;
            ASSERT_TRUE(InRowOrder(before, {name, 0})) << name;
            domains.push_back(name);
        }
        for (const std::string& wanted : stable) {
            EXPECT_EQ(std::count(domains.begin(), domains.end(), wanted), 1) << wanted;
        }
    }
    stop = true;
    other.join();
    EXPECT_GT(changes, 25);
}

}  // namespace
