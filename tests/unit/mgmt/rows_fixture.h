// Tables of both roles for row requests; the calling thread has the configuration role.
#pragma once

#include <aaadom/codes.h>
#include <aaadom/db_layout.h>
#include <aaadom/domain.h>
#include <aaadom/domain_codec.h>
#include <aaadom/domain_table.h>
#include <aaadom/method_list.h>
#include <aaadom/results.h>
#include <aaadom/rows.h>
#include <aaadom/session.h>
#include <aaadom/settings.h>

#include <cstring>
#include <string>

#include "base/message.h"
#include "unit/both_roles.h"

namespace aaadom {

class RowsTest : public BothRolesTest {
  protected:
    void SetUp() override {
        BothRolesTest::SetUp();
        Preset();
    }

    /// A change record in which every byte shows whether it was written.
    void Preset() { memset(&change_, 0x5A, sizeof change_); }
    bool IsUntouched() const {
        DomDbUpdateReq preset;
        memset(&preset, 0x5A, sizeof preset);
        return memcmp(&change_, &preset, sizeof preset) == 0;
    }
    /// Filled with this domain and nothing else.
    void ExpectChange(const char* name) const {
        EXPECT_EQ(change_.object_type, uint32_t{DOM_DB_DOMAIN});
        EXPECT_STREQ(change_.object_name, name);
        EXPECT_EQ(change_.operation, 1);
        DomDbUpdateReq preset;
        memset(&preset, 0x5A, sizeof preset);
        constexpr size_t behind = offsetof(DomDbUpdateReq, ita_policy_name);
        EXPECT_EQ(memcmp(reinterpret_cast<const char*>(&change_) + behind,
                         reinterpret_cast<const char*>(&preset) + behind, sizeof preset - behind),
                  0)
            << "further fields stay";
    }
    static void Add(const std::string& name) {
        ASSERT_EQ(DOM_AddDomainByName(name.c_str()), DOM_ADD_OK);
    }

    DomDbUpdateReq change_;
};

}  // namespace aaadom
