// What the tests of accounting-policy messages, records and batches share.
#pragma once

#include <aaadom/accounting_policy_codec.h>
#include <aaadom/codes.h>
#include <aaadom/database.h>
#include <aaadom/db_layout.h>
#include <aaadom/method_codec.h>
#include <aaadom/results.h>
#include <gtest/gtest.h>
#include <platform/aaa_tlv.h>

#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "base/message.h"
#include "base/text.h"
#include "fakes/fake_platform.h"
#include "fakes/role.h"
#include "golden/sample_policy.h"
#include "unit/policy/saved_policy_fixture.h"

namespace aaadom {

using Types = std::vector<uint16_t>;

/// The types of a message's TLVs in order.
inline Types TypesOf(TLV_MSG* msg) {
    Types types;
    for (const TlvItem item : TlvWalk(msg)) types.push_back(item.Type());
    return types;
}

/// A message of TLVs that `fields(Appender&)` appends, without a code.
template <typename Fields>
TlvPtr Message(Fields&& fields) {
    TlvPtr msg(TLV_Create());
    Appender append(msg.get());
    fields(append);
    EXPECT_FALSE(append.Failed());
    return msg;
}

/// Everything of a policy but its links, in words.
inline std::string Dump(const ItaPolicy& policy) {
    std::ostringstream out;
    out << policy.name << " methods";
    for (const MethodEntry& method : policy.acct_scheme)
        out << ' ' << method.method_kind << '/' << method.scheme_name << '/' << method.scheme_index;
    out << " levels " << policy.level_count;
    for (const ItaAcctLevel& level : policy.levels)
        out << ' ' << level.level_id << '/' << level.level_value << '/' << level.first_pair[0]
            << '/' << level.first_pair[1] << '/' << level.second_pair[0] << '/'
            << level.second_pair[1];
    out << " states " << policy.together_state << '/' << policy.separation_state << '/'
        << policy.quota_out_state;
    return out.str();
}

class ItaDataTest : public SavedPolicyTest<DOM_ita_db_SetGlobalHandle> {
  protected:
    /// A copy of the sample policy for the store.
    static ItaPolicy* NewSample(const char* name = "gold") {
        ItaPolicy* policy = DOM_ita_CreatePolicy(name);
        *policy = golden::SamplePolicy(name);
        return policy;
    }
    static void AddSample(const char* name = "gold") { DOM_ita_policy_AddPolicy(NewSample(name)); }
    /// A policy of the calling role in words, "-" when there is none.
    static std::string Stored(const char* name) {
        const ItaPolicy* policy = DOM_ita_policy_GetDomPolicyByName(name);
        return policy == nullptr ? "-" : Dump(*policy);
    }
    /// Every policy of the calling role, bucket by bucket from the head.
    static std::vector<std::string> DumpAll() {
        std::vector<std::string> texts;
        const HASH_TABLE* table = DOM_GetItaPolicyGlobalVarByThr();
        for (uint32_t bucket = 0; bucket < table->bucket_count; ++bucket)
            for (const HASH_NODE* node = table->buckets[bucket]; node != nullptr; node = node->next)
                texts.push_back(Dump(*reinterpret_cast<const ItaPolicy*>(node)));
        return texts;
    }
    static std::vector<std::string> AllNames() {
        std::vector<std::string> names;
        for (const std::string& text : DumpAll()) names.push_back(text.substr(0, text.find(' ')));
        return names;
    }
    static DomDbUpdateReq Filled() {
        DomDbUpdateReq change;
        memset(&change, 0x5A, sizeof change);
        return change;
    }
    /// Whether a change record is as Filled left it but for what names an accounting policy.
    static void ExpectChange(const DomDbUpdateReq& change, const char* name, uint16_t operation) {
        DomDbUpdateReq want = Filled();
        want.object_type = 8;
        want.operation = operation;
        EXPECT_STREQ(change.ita_policy_name, name);
        memcpy(want.ita_policy_name, change.ita_policy_name, sizeof want.ita_policy_name);
        EXPECT_EQ(memcmp(&change, &want, sizeof want), 0) << "operation " << change.operation;
    }
    static void ExpectUntouched(const DomDbUpdateReq& change) {
        const DomDbUpdateReq want = Filled();
        EXPECT_EQ(memcmp(&change, &want, sizeof want), 0);
    }
    bool HasKey(const std::string& key) const {
        return DBM_IsKeyExist(handle_, key.data(), static_cast<uint32_t>(key.size())) == 1;
    }
    bool HasCurrent(const char* name) const { return HasKey(golden::CurrentKey(name)); }
    bool HasOld(const char* name) const { return HasKey(golden::OldKey(name)); }
    void PutCurrent(const char* name, const std::string& value) const {
        const std::string key = golden::CurrentKey(name);
        ASSERT_EQ(DBM_SetBinary(handle_, key.data(), static_cast<uint32_t>(key.size()), -1,
                                static_cast<uint32_t>(value.size()), value.data(), 8),
                  0u);
    }
    std::string GetCurrent(const char* name) const {
        const std::string key = golden::CurrentKey(name);
        std::string value(DOM_DB_VALUE_MAX, '\0');
        const int32_t length = DBM_GetBinary(handle_, key.data(), static_cast<uint32_t>(key.size()),
                                             0, DOM_DB_VALUE_MAX, value.data());
        value.resize(length < 0 ? 0 : static_cast<size_t>(length));
        return value;
    }
    void PutOld(const char* name, const std::string& block) const {
        ASSERT_TRUE(golden::PutOldBlock(handle_, name, block));
    }
    /// A saved policy in words, "-" when there is none.
    static std::string Read(DBM_HANDLE handle, const char* name) {
        ItaPolicy* policy = DOM_ita_db_GetMemPolicyFromDBByName(handle, name);
        if (policy == nullptr) return "-";
        EXPECT_EQ(policy->hash_links.next, nullptr);
        EXPECT_EQ(policy->hash_links.prev_link, nullptr);
        const std::string text = Dump(*policy);
        DOM_ita_policy_DestroyPolicy(policy);
        return text;
    }
    std::string Read(const char* name) const { return Read(handle_, name); }
};

}  // namespace aaadom
