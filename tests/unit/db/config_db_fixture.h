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
#include <platform/aaa_tlv.h>

#include <cstring>
#include <string>

#include "base/message.h"
#include "base/text.h"
#include "unit/both_roles.h"

namespace aaadom {

class ConfigDbTest : public SavedRolesTest<DOM_SetDomainDBMHandle> {
  protected:
    void TearDown() override {
        DOM_SetDeviceID(0);
        SavedRolesTest::TearDown();
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
};

}  // namespace aaadom
