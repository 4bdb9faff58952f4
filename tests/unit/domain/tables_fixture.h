// Both roles' tables on the fake platform, for the tests of what stands in them.
#pragma once

#include <aaadom/domain.h>
#include <aaadom/domain_table.h>
#include <aaadom/results.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "domain/tables.h"
#include "fakes/fake_platform.h"
#include "fakes/role.h"

namespace aaadom {

class TablesTest : public testing::Test {
  protected:
    TablesTest() {
        fake::Reset();
        roles_.emplace();
        EXPECT_EQ(roles_->init_result, 0u);
    }
    ~TablesTest() override {
        EXPECT_EQ(fake::HeldLocks(), 0);
        roles_.reset();
        EXPECT_EQ(fake::LiveHashTables(), 0);
        EXPECT_TRUE(fake::Misuses().empty());
    }

    template <typename Body>
    static auto InConfig(Body&& body) {
        return fake::InRole(fake::kConfigRole, body);
    }
    static uint32_t Add(const std::string& name) { return DOM_AddDomainByName(name.c_str()); }
    static void AddToBoth(const std::string& name) {
        EXPECT_EQ(Add(name), DOM_ADD_OK);
        EXPECT_EQ(InConfig([&] { return Add(name); }), DOM_ADD_OK);
    }
    /// The caller's role's record, used after the lock: these tests have one thread.
    static DomainInfo* Find(const std::string& name) {
        DOM_DomainInfoTableLock();
        DomainInfo* record = DOM_FindDomainByName(name.c_str());
        DOM_DomainInfoTableUnlock();
        return record;
    }
    static AAADOM_NO_TSA uint64_t CountOf(Role role) { return Domains(role).count; }
    static AAADOM_NO_TSA std::vector<std::string> MibOrder(Role role) {
        std::vector<std::string> names;
        const ZorvDomain* before = nullptr;
        for (const ZorvDomain* node = Domains(role).mib_head; node; node = node->next) {
            EXPECT_EQ(node->prev, before);
            before = node;
            names.push_back(node->domain_name);
        }
        return names;
    }
    static AAADOM_NO_TSA std::vector<std::string> NetConfOrder(Role role) {
        std::vector<std::string> names;
        const NetConfDomain* sentinel = &Domains(role).netconf;
        for (const NetConfDomain* node = sentinel->next; node != sentinel; node = node->next) {
            EXPECT_EQ(node->next->prev, node);
            names.push_back(node->domain_name);
        }
        return names;
    }

  private:
    std::optional<fake::BothRoles> roles_;
};

using Names = std::vector<std::string>;

}  // namespace aaadom
