// The accounting policy of the golden files, and policies in the form of former releases, which the
// library reads and never writes.
#pragma once

#include <aaadom/accounting_policy.h>
#include <aaadom/db_layout.h>
#include <platform/dbm.h>

#include <cstdint>
#include <cstring>
#include <string>

namespace golden {

inline MethodEntry Method(uint32_t kind, const char* scheme_name, uint32_t scheme_index) {
    MethodEntry method{};
    method.method_kind = kind;
    strncpy(method.scheme_name, scheme_name, sizeof method.scheme_name - 1);
    method.scheme_index = scheme_index;
    return method;
}

/// Every number differs from every other, so that no two can be mistaken for each other.
inline ItaPolicy SamplePolicy(const char* name = "gold") {
    ItaPolicy policy{};
    strncpy(policy.name, name, sizeof policy.name - 1);
    policy.acct_scheme[0] = Method(2, "radius-a", 0x01020304);
    policy.acct_scheme[1] = Method(5, "", 7);
    policy.level_count = 2;
    policy.levels[0] = {10, 100, {0x11, 0x12}, {0x13, 0x14}};
    policy.levels[1] = {20, 200, {0x21, 0x22}, {DOM_ITA_PAIR_UNSET, DOM_ITA_PAIR_UNSET}};
    policy.together_state = 1;
    policy.separation_state = 2;
    policy.quota_out_state = 0x0304;
    return policy;
}

/// A policy as a former release stored it: 500 bytes, offsets written out here.
inline std::string OldBlock(const ItaPolicy& policy) {
    std::string block(500, '\0');
    const auto put = [&block](size_t offset, uint32_t value, size_t width) {
        for (size_t i = 0; i < width; ++i)
            block[offset + i] = static_cast<char>(value >> (8 * (width - 1 - i)) & 0xFF);
    };
    memcpy(block.data(), policy.name, 32);
    for (size_t i = 0; i < 6; ++i) {
        const size_t at = 32 + i * 44;
        const MethodEntry& method = policy.acct_scheme[i];
        put(at, method.method_kind, 4);
        memcpy(block.data() + at + 4, method.scheme_name, 32);
        put(at + 36, method.scheme_index, 4);
    }
    put(296, policy.level_count, 4);
    for (size_t i = 0; i < 8; ++i) {
        const size_t at = 300 + i * 24;
        const ItaAcctLevel& level = policy.levels[i];
        put(at, level.level_id, 4);
        put(at + 4, level.level_value, 4);
        put(at + 8, level.first_pair[0], 4);
        put(at + 12, level.first_pair[1], 4);
        put(at + 16, level.second_pair[0], 4);
        put(at + 20, level.second_pair[1], 4);
    }
    put(492, policy.together_state, 2);
    put(494, policy.separation_state, 2);
    put(496, policy.quota_out_state, 2);
    return block;
}

/// The key under which former releases stored a policy, with its terminator.
inline std::string OldKey(const std::string& name) {
    const std::string key = "dom-ita-policy-" + name.substr(0, 31);
    return std::string(key.c_str(), key.size() + 1);
}

/// The key under which policies are stored now, with its terminator.
inline std::string CurrentKey(const std::string& name) {
    const std::string key = "dom-tlv-ita-policy-" + name.substr(0, 31);
    return std::string(key.c_str(), key.size() + 1);
}

inline bool PutOldBlock(DBM_HANDLE handle, const std::string& name, const std::string& block) {
    const std::string key = OldKey(name);
    return DBM_SetBinary(handle, key.data(), static_cast<uint32_t>(key.size()), -1,
                         static_cast<uint32_t>(block.size()), block.data(), DOM_DB_ITA_POLICY) == 0;
}

}  // namespace golden
