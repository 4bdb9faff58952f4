// What the tests of the recording policy share: both roles, an empty saved configuration.
#pragma once

#include <aaadom/codes.h>
#include <aaadom/database.h>
#include <aaadom/db_layout.h>
#include <aaadom/method_codec.h>
#include <aaadom/recording_policy.h>
#include <aaadom/results.h>
#include <gtest/gtest.h>
#include <platform/aaa_tlv.h>

#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>

#include "base/message.h"
#include "base/text.h"
#include "fakes/fake_platform.h"
#include "fakes/role.h"
#include "unit/policy/saved_policy_fixture.h"

namespace aaadom {

/// The six methods in words.
inline std::string ShowMethods(const MethodEntry* methods) {
    std::ostringstream out;
    for (uint32_t i = 0; i < DOM_METHODS; ++i)
        out << (i == 0 ? "" : " ") << methods[i].method_kind << '/' << methods[i].scheme_name << '/'
            << methods[i].scheme_index;
    return out.str();
}

constexpr char kNoMethods[] = "0//0 0//0 0//0 0//0 0//0 0//0";
constexpr char kSampleMethods[] = "2/radius-a/16909060 5//7 0//0 0//0 0//0 0//0";

struct RecSample {
    RecSample() {
        methods[0].method_kind = 2;
        CopyText(methods[0].scheme_name, "radius-a");
        methods[0].scheme_index = 0x01020304;
        methods[1].method_kind = 5;
        methods[1].scheme_index = 7;
    }
    MethodEntry methods[DOM_METHODS] = {};
};

class RecTest : public SavedPolicyTest<DOM_Rec_db_SetGlobalHandle> {
  protected:
    static void CreateSample() {
        const RecSample sample;
        ASSERT_EQ(DOM_Rec_CreatePolicy(0), DOM_OK);
        ASSERT_EQ(DOM_Rec_policy_SetAcctScheme(0, sample.methods), DOM_OK);
    }
    static RecPolicy* NewRecord(uint32_t type = 0, uint32_t first_kind = 0) {
        auto* policy = static_cast<RecPolicy*>(calloc(1, sizeof(RecPolicy)));
        policy->policy_type = type;
        policy->acct_scheme[0].method_kind = first_kind;
        return policy;
    }
    /// Type and methods of the calling role's policy, "-" when there is none.
    static std::string Stored() {
        RecPolicy policy;
        if (DOM_Rec_GetPolicy(0, &policy) != DOM_OK) return "-";
        return std::to_string(policy.policy_type) + ": " + ShowMethods(policy.acct_scheme);
    }
    static DomDbUpdateReq Filled() {
        DomDbUpdateReq change;
        memset(&change, 0x5A, sizeof change);
        return change;
    }
    /// Whether a change record is as Filled left it but for type 9, the operation and the index.
    static void ExpectChange(const DomDbUpdateReq& change, uint16_t operation) {
        DomDbUpdateReq want = Filled();
        want.object_type = 9;
        want.operation = operation;
        want.rec_policy_index = 0;
        EXPECT_EQ(memcmp(&change, &want, sizeof want), 0) << "operation " << change.operation;
    }
    static void ExpectUntouched(const DomDbUpdateReq& change) {
        const DomDbUpdateReq want = Filled();
        EXPECT_EQ(memcmp(&change, &want, sizeof want), 0);
    }
    /// Calls `body` in each role.
    template <typename Body>
    static void InBothRoles(Body&& body) {
        for (const uint32_t role : {fake::kWorkingRole, fake::kConfigRole})
            fake::InRole(role, [&] { return body(), 0; });
    }
};

}  // namespace aaadom
