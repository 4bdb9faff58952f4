#include "record_reports.h"

#include <platform/aaa_tlv.h>

#include <cstdlib>
#include <cstring>

#include "daemon/record_list_keys.h"
#include "raw_client.h"

namespace daemon_test {

UserRecordSource SampleRecord(const std::string& user, uint32_t reason, uint32_t time) {
    UserRecordSource record{};
    record.first_number = time;
    record.second_number = reason;
    const uint8_t ipv4[4] = {192, 0, 2, 17};
    memcpy(record.ipv4, ipv4, sizeof ipv4);
    const uint8_t ipv6[16] = {0x20, 0x01, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x17};
    memcpy(record.ipv6, ipv6, sizeof ipv6);
    record.third_number = 3600;
    record.fourth_number = 5;
    record.interface_index = 1;
    record.number16[0] = 100;
    record.number16[1] = 200;
    record.number16[2] = 3;
    const uint8_t mac[6] = {2, 0, 0x5e, 0x10, 0, 0x17};
    memcpy(record.mac, mac, sizeof mac);
    snprintf(record.first_name, sizeof record.first_name, "%s", "isp");
    snprintf(record.second_name, sizeof record.second_name, "%s", user.c_str());
    static char detail[] = "what happened";
    record.detail = detail;
    record.detail_len = sizeof detail;
    return record;
}

ReportAnswer SendReport(TLV_MSG* report) {
    const Message owned(report);
    RawClient client(DOM_LIPC_RECORD_SUB_ENDPOINT);
    ReportAnswer answer;
    if (!client.Connected()) return answer;
    client.Send(Image(report));
    const Message body = client.Answer();
    if (!body) return answer;
    (void)DOM_lipc_ReplyMsgProc(body.get(), &answer.result);
    TLV_ITER* serial = TLV_GetIteratorByType(body.get(), DOM_TLV_RECORD_SERIAL);
    if (serial != nullptr) answer.serial = AAA_GetUINT64TlvValue(body.get(), serial);
    return answer;
}

ReportAnswer SendRecord(uint32_t list, const UserRecordSource& record) {
    return SendReport(PAM_EncUserRecordMsg(list, 0, &record));
}

TLV_MSG* CommandFailure(const std::string& command, const std::string& user,
                        const std::string& line, uint64_t time, uint32_t reason) {
    TLV_MSG* message = TLV_Create();
    EXPECT_EQ(DOM_Rec_tlv_EncodeCmdAuthorFailMsg(message), DOM_OK);
    EXPECT_EQ(AAA_AppendStrTlvData(message, DOM_TLV_CMD_FAIL_FIRST_TEXT, command.c_str()), 0u);
    EXPECT_EQ(AAA_AppendStrTlvData(message, DOM_TLV_CMD_FAIL_SECOND_TEXT, user.c_str()), 0u);
    EXPECT_EQ(AAA_AppendStrTlvData(message, DOM_TLV_CMD_FAIL_THIRD_TEXT, line.c_str()), 0u);
    EXPECT_EQ(AAA_AppendUINT64TlvData(message, DOM_TLV_CMD_FAIL_NUMBER64, time), 0u);
    EXPECT_EQ(AAA_AppendUINTTlvData(message, DOM_TLV_CMD_FAIL_NUMBER32, reason), 0u);
    return message;
}

void KeepAllRecords() {
    for (const uint32_t code : {DOM_MSG_REC_EN_ONLINE_FAIL, DOM_MSG_REC_EN_OFFLINE_ALL}) {
        ASSERT_EQ(Change(DOM_userrecord_tlv_EncodeRecordEnable(code)), DOM_OK);
    }
}

std::vector<StoredRecord> StoredRecords(const DaemonProcess& daemon, uint32_t list) {
    std::vector<StoredRecord> records;
    EXPECT_EQ(DBM_SetRoot(daemon.StateDir().c_str(), daemon.RunDir().c_str()), 0u);
    DBM_HANDLE handle = DBM_INVALID_HANDLE;
    EXPECT_EQ(DBM_Open(DOM_RUN_DB_DATABASE, DOM_RUN_DB_TABLE, DBM_MODE_OPEN, nullptr, &handle), 0u);
    const aaad::RecordListKey* key = aaad::FindRecordListKey(list);
    DBM_CURSOR* cursor = nullptr;
    EXPECT_EQ(DBM_CursorOpen(handle, key->text, key->length, &cursor), 0u);
    std::vector<uint8_t> bytes(DOM_DB_VALUE_MAX);
    for (int32_t length; (length = DBM_CursorNext(cursor, static_cast<uint32_t>(bytes.size()),
                                                  bytes.data())) > 0;) {
        StoredRecord stored{};
        DOM_userrecord_tlv_DecodeUserRecordStlv(bytes.data(), static_cast<uint32_t>(length),
                                                &stored.record);
        if (stored.record.detail != nullptr) stored.detail = stored.record.detail;
        free(stored.record.detail);
        stored.record.detail = nullptr;
        records.push_back(stored);
    }
    DBM_CursorClose(cursor);
    EXPECT_EQ(DBM_Close(handle), 0u);
    return records;
}

std::vector<uint64_t> StoredSerials(const DaemonProcess& daemon, uint32_t list) {
    std::vector<uint64_t> serials;
    for (const StoredRecord& stored : StoredRecords(daemon, list)) {
        serials.push_back(stored.record.serial);
    }
    return serials;
}

}  // namespace daemon_test
