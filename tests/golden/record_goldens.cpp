#include "tests/golden/record_goldens.h"

#include <aaadom/nas_id_codec.h>
#include <aaadom/record_codec.h>
#include <aaadom/results.h>
#include <aaadom/user_record.h>
#include <gtest/gtest.h>

#include "base/message.h"
#include "tests/golden/sample_record.h"

namespace golden {
namespace {

using aaadom::FindTlv;
using aaadom::TlvItem;
using aaadom::TlvPtr;
using aaadom::TlvWalk;

/// A message that is its code alone.
GoldenMessage CodeAlone(const char* file, DomMsgCode code, TLV_MSG* (*encode)(uint32_t)) {
    return {file, code, [=] { return encode(code); },
            [=](TLV_MSG* msg) {
                int count = 0;
                for (TlvItem item : TlvWalk(msg)) {
                    EXPECT_EQ(item.Type(), DOM_TLV_MSG_CODE);
                    EXPECT_EQ(item.U32(), static_cast<uint32_t>(code));
                    ++count;
                }
                EXPECT_EQ(count, 1);
            }};
}

/// The record of a list in its message: the list, and the fields by which it is found and shown.
std::function<void(TLV_MSG*)> ExpectRecord(uint32_t kind, bool with_detail) {
    return [=](TLV_MSG* msg) {
        EXPECT_EQ(FindTlv(msg, DOM_TLV_RECORD_KIND).U32(), kind);
        const TlvPtr fields = FindTlv(msg, DOM_TLV_USER_RECORD).Sub();
        ASSERT_NE(fields, nullptr);
        const TlvPtr want(TLV_Create());
        const UserRecord record = SampleRecord(with_detail);
        ASSERT_EQ(DOM_userrecord_tlv_EncodeUserRecordStruct(want.get(), &record), DOM_OK);
        TLV_ITER* it = TLV_GetFirst(fields.get());
        for (TlvItem item : TlvWalk(want.get())) {
            ASSERT_NE(it, nullptr);
            const TlvItem got(fields.get(), it);
            EXPECT_EQ(got.Type(), item.Type());
            ASSERT_EQ(got.Length(), item.Length());
            std::vector<char> a(item.Length());
            std::vector<char> b(item.Length());
            EXPECT_EQ(item.Raw(a.data(), item.Length()), DOM_OK);
            EXPECT_EQ(got.Raw(b.data(), got.Length()), DOM_OK);
            EXPECT_EQ(a, b) << "TLV " << item.Type();
            it = TLV_GetNext(fields.get(), it);
        }
        EXPECT_EQ(it, nullptr);
    };
}

GoldenMessage Deletion(const char* file, uint32_t kind) {
    constexpr uint64_t kSerial = 0x0102030405060708u;
    return {file, DOM_MSG_USER_RECORD, [=] { return DOM_EncodeDelUserRecord(kind, kSerial); },
            [=](TLV_MSG* msg) {
                uint32_t got = 0;
                uint64_t serial = 0;
                EXPECT_EQ(DOM_DecodeDelUserRecord(msg, &got, &serial), DOM_OK);
                EXPECT_EQ(got, kind);
                EXPECT_EQ(serial, kSerial);
            }};
}

}  // namespace

std::vector<GoldenMessage> NasIdGoldens() {
    return {
        {"msg_016_nas_id_profile", DOM_MSG_NASID_PROFILE,
         [] { return DOM_EncodeNasIdProfile("office"); },
         [](TLV_MSG* msg) {
             char name[DOM_NASID_NAME_SIZE];
             EXPECT_EQ(DOM_DecodeNasIdProfile(msg, name), DOM_OK);
             EXPECT_STREQ(name, "office");
         }},
        {"msg_017_nas_id_binding", DOM_MSG_NASID_BIND,
         [] { return DOM_EncodeNasidBindVlanId("office", "nas-1", 4094); },
         [](TLV_MSG* msg) {
             char profile[DOM_NASID_NAME_SIZE];
             char nas_id[DOM_NASID_NAME_SIZE];
             uint16_t vlan = 0;
             EXPECT_EQ(DOM_DecodeNasIdBindVlanId(msg, profile, nas_id, &vlan), DOM_OK);
             EXPECT_STREQ(profile, "office");
             EXPECT_STREQ(nas_id, "nas-1");
             EXPECT_EQ(vlan, 4094);
         }},
    };
}

std::vector<GoldenMessage> RecordGoldens() {
    return {
        CodeAlone("msg_054_reset_online_fail", DOM_MSG_RESET_ONLINE_FAIL,
                  DOM_userrecord_tlv_EncodeResetRecord),
        CodeAlone("msg_055_reset_offline_all", DOM_MSG_RESET_OFFLINE_ALL,
                  DOM_userrecord_tlv_EncodeResetRecord),
        CodeAlone("msg_056_reset_offline_normal", DOM_MSG_RESET_OFFLINE_NORMAL,
                  DOM_userrecord_tlv_EncodeResetRecord),
        CodeAlone("msg_057_reset_offline_abnormal", DOM_MSG_RESET_OFFLINE_ABNORMAL,
                  DOM_userrecord_tlv_EncodeResetRecord),
        CodeAlone("msg_077_record_online_fail", DOM_MSG_REC_EN_ONLINE_FAIL,
                  DOM_userrecord_tlv_EncodeRecordEnable),
        CodeAlone("msg_078_record_offline_all", DOM_MSG_REC_EN_OFFLINE_ALL,
                  DOM_userrecord_tlv_EncodeRecordEnable),
        CodeAlone("msg_079_record_offline_normal", DOM_MSG_REC_EN_OFFLINE_NORMAL,
                  DOM_userrecord_tlv_EncodeRecordEnable),
        CodeAlone("msg_080_record_offline_abnormal", DOM_MSG_REC_EN_OFFLINE_ABNORMAL,
                  DOM_userrecord_tlv_EncodeRecordEnable),
        {"msg_081_record_enable_info", DOM_MSG_REC_ENABLE_INFO,
         [] {
             const RecordSwitches switches{1, 0, 1, 258};
             return DOM_userrecord_tlv_EncodeRecordEnableInfo(&switches);
         },
         [](TLV_MSG* msg) {
             RecordSwitches switches{};
             EXPECT_EQ(DOM_userrecord_tlv_DecodeRecordEnableInfo(msg, &switches), DOM_OK);
             EXPECT_EQ(switches.online_fail, 1);
             EXPECT_EQ(switches.offline_all, 0);
             EXPECT_EQ(switches.offline_normal, 1);
             EXPECT_EQ(switches.offline_abnormal, 258);
         }},
        {"msg_164_backup_method", DOM_MSG_BACKUP_METHOD,
         [] { return DOM_userrecord_tlv_EncodeBackupMethod(6); },
         [](TLV_MSG* msg) {
             uint32_t bits = 0;
             BackupMethods methods{};
             EXPECT_EQ(DOM_userrecord_tlv_DecodeBackupMethod(msg, &bits), DOM_OK);
             EXPECT_EQ(DOM_userrecord_tlv_DecodeBackupMethodByStruct(msg, &methods), DOM_OK);
             EXPECT_EQ(bits, 6u);
             EXPECT_EQ(methods.online_fail, 0);
             EXPECT_EQ(methods.abnormal_offline, 1);
             EXPECT_EQ(methods.normal_offline, 1);
         }},
        {"msg_173_record_online_fail", DOM_MSG_USER_RECORD,
         [] {
             const UserRecord record = SampleRecord(true);
             return DOM_EncodeOnlineFailRecord(&record);
         },
         ExpectRecord(DOM_RECORD_ONLINE_FAIL, true)},
        {"msg_173_record_offline", DOM_MSG_USER_RECORD,
         [] {
             const UserRecord record = SampleRecord(false);
             return DOM_EncodOfflineRecord(1, &record);
         },
         ExpectRecord(DOM_RECORD_NORMAL_OFFLINE, false)},
        {"msg_173_record_offline_abnormal", DOM_MSG_USER_RECORD,
         [] {
             const UserRecord record = SampleRecord(true);
             return DOM_EncodOfflineRecord(0, &record);
         },
         ExpectRecord(DOM_RECORD_ABNORMAL_OFFLINE, true)},
        Deletion("msg_173_record_delete", DOM_RECORD_ABNORMAL_OFFLINE),
        Deletion("msg_173_record_delete_normal", DOM_RECORD_NORMAL_OFFLINE),
        Deletion("msg_173_record_delete_online_fail", DOM_RECORD_ONLINE_FAIL),
    };
}

}  // namespace golden
