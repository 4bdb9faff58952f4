// An empty saved configuration, installed for writing, and the tables of the calling role.
#pragma once

#include <aaadom/codes.h>
#include <aaadom/database.h>
#include <aaadom/db_layout.h>
#include <aaadom/domain.h>
#include <aaadom/domain_codec.h>
#include <aaadom/domain_table.h>
#include <aaadom/results.h>
#include <aaadom/session.h>
#include <aaadom/settings.h>
#include <gtest/gtest.h>
#include <platform/aaa_tlv.h>

#include <cstring>
#include <string>

#include "base/message.h"
#include "base/text.h"
#include "fakes/fake_platform.h"
#include "fakes/role.h"

namespace aaadom {

class ConfigDbTest : public ::testing::Test {
  protected:
    void SetUp() override {
        fake::Reset();
        live_before_ = fake::LiveMessages();
        ASSERT_EQ(fake::InitBothRoles(), DOM_OK);
        fake::role_of_this_thread = fake::kConfigRole;
        handle_ = DOM_CreateDomainDBM();
        ASSERT_NE(handle_, DBM_INVALID_HANDLE);
        DOM_SetDomainDBMHandle(handle_);
        fake::ClearDbmCalls();
    }
    void TearDown() override {
        fake::DisarmFailures();
        EXPECT_EQ(fake::HeldLocks(), 0);
        for (const fake::DbmCall& call : fake::DbmCalls())
            EXPECT_EQ(call.held_locks, 0) << call.call << " with the table locked";
        DOM_SetDeviceID(0);
        DOM_SetDomainDBMHandle(DBM_INVALID_HANDLE);
        DBM_Close(handle_);
        EXPECT_EQ(fake::OpenDatabaseHandles(), 0);
        fake::role_of_this_thread = fake::kWorkingRole;
        (void)fake::FiniBothRoles();
        EXPECT_EQ(fake::LiveMessages(), live_before_);
        EXPECT_TRUE(fake::Misuses().empty());
    }

    static DomDbUpdateReq Request(uint32_t type, const char* name = "", uint16_t operation = 1) {
        DomDbUpdateReq request{};
        request.object_type = type;
        CopyText(request.object_name, name);
        request.operation = operation;
        return request;
    }
    static uint32_t Save(uint32_t type, const char* name = "", uint16_t operation = 1) {
        const DomDbUpdateReq request = Request(type, name, operation);
        return DOM_SetDataToDB(&request);
    }
    static void AddDomain(const char* name) { ASSERT_EQ(DOM_AddDomainByName(name), DOM_ADD_OK); }
    /// Stores a minimal record of this name at an index, past the library.
    void PutRecord(uint32_t index, const char* name) {
        const TlvPtr msg(MessageBuilder(DOM_MSG_DOMAIN).Build([=](Appender& append) {
            append.Text(DOM_TLV_DOMAIN_NAME, name);
        }));
        const std::string image = fake::ImageOf(msg.get());
        ASSERT_GE(DBM_SetArray(handle_, DOM_DB_KEY_DOMAINS, DOM_DB_KEY_DOMAINS_LEN, index,
                               static_cast<uint32_t>(image.size()), image.data(), DOM_DB_DOMAIN),
                  0);
    }
    void PutBinary(const char* key, uint32_t key_length, const std::string& value, uint32_t type) {
        ASSERT_EQ(DBM_SetBinary(handle_, key, key_length, -1, static_cast<uint32_t>(value.size()),
                                value.data(), type),
                  0u);
    }
    static std::string NameOf(DomainInfo* record) {
        if (record == nullptr) return "(none)";
        const std::string name = record->name;
        DOM_DestroyDomain(record);
        return name;
    }

    DBM_HANDLE handle_ = DBM_INVALID_HANDLE;

  private:
    int64_t live_before_ = 0;
};

}  // namespace aaadom
