// Method lists and scheme rows in a notation that tests can compare: a list is "kind@index" for
// each entry, "-" for an empty one before the last used one.
#pragma once

#include <aaadom/method_list.h>

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <string>

#include "unit/domain/tables_fixture.h"

namespace aaadom {

inline MethodList ListOf(uint32_t aaa_type, uint32_t service,
                         std::initializer_list<uint32_t> kinds) {
    MethodList list{};
    list.aaa_type = aaa_type;
    list.service = service;
    std::transform(kinds.begin(), kinds.end(), list.methods, [](uint32_t kind) {
        MethodEntry entry{};
        entry.method_kind = kind;
        return entry;
    });
    return list;
}

inline std::string Show(const MethodList& list) {
    std::string shown, pending;
    for (const MethodEntry& entry : list.methods) {
        if (entry.method_kind == METHOD_EMPTY) {
            pending += "- ";
            continue;
        }
        shown += pending + std::to_string(entry.method_kind) + "@" +
                 std::to_string(entry.scheme_index) + " ";
        pending.clear();
    }
    if (!shown.empty()) shown.pop_back();
    return shown;
}

inline MibSchemeRow Row(const std::string& domain, uint32_t aaa_type, uint32_t index, uint32_t kind,
                        const std::string& scheme = "") {
    MibSchemeRow row{};
    row.scheme_index = index;
    row.method_kind = kind;
    row.aaa_type = aaa_type;
    memcpy(row.domain_name, domain.c_str(), std::min(domain.size() + 1, sizeof row.domain_name));
    memcpy(row.scheme_name, scheme.c_str(), std::min(scheme.size() + 1, sizeof row.scheme_name));
    return row;
}

class SchemeTest : public TablesTest {
  protected:
    static constexpr uint32_t kColumn = DOM_DEFAULT_SERVICE;

    /// The stored list, or "none".
    static std::string Stored(const std::string& domain, uint32_t aaa_type,
                              uint32_t service = kColumn) {
        MethodList list{};
        uint32_t result = DOM_GetMethodList(domain.c_str(), aaa_type, service, &list, nullptr);
        return result == DOM_OK ? Show(list) : "none";
    }
    static MethodEntry StoredEntry(const std::string& domain, uint32_t aaa_type,
                                   uint32_t position) {
        MethodList list{};
        EXPECT_EQ(DOM_GetMethodList(domain.c_str(), aaa_type, kColumn, &list, nullptr), DOM_OK);
        return list.methods[position];
    }
    static uint32_t Store(const std::string& domain, MethodList list) {
        return DOM_AddMethodList(domain.c_str(), &list, nullptr);
    }
    /// Every scheme index of a domain as "index:type/position"; checks order and links.
    static AAADOM_NO_TSA std::string Indexes(const std::string& domain,
                                             Role role = Role::kWorking) {
        const ZorvDomain* mib_node = Domains(role).mib_head;
        while (mib_node != nullptr && mib_node->domain_name != domain) mib_node = mib_node->next;
        if (mib_node == nullptr) return "none";
        std::string shown;
        const SchemeIndexNode* before = nullptr;
        for (const SchemeIndexNode* node = mib_node->scheme_index_head; node; node = node->next) {
            EXPECT_EQ(node->prev, before);
            if (before != nullptr) {
                EXPECT_LT(before->scheme_index, node->scheme_index);
            }
            before = node;
            shown += std::to_string(node->scheme_index) + ":" + std::to_string(node->aaa_type) +
                     "/" + std::to_string(node->position) + " ";
        }
        if (!shown.empty()) shown.pop_back();
        return shown;
    }
    /// Takes the domain's node out of the row order for as long as it lives.
    class WithoutRowNode {
      public:
        AAADOM_NO_TSA explicit WithoutRowNode(Role role = Role::kWorking)
            : table_(Domains(role)), head_(table_.mib_head) {
            table_.mib_head = nullptr;
        }
        AAADOM_NO_TSA ~WithoutRowNode() { table_.mib_head = head_; }

      private:
        DomainTable& table_;
        ZorvDomain* head_;
    };
};

}  // namespace aaadom
