#include "records.h"

#include <aaadom/user_record.h>

namespace aaactl {
namespace {

struct Switch {
    const char* name;
    uint32_t code;
    uint16_t RecordSwitches::*flag;
};
constexpr Switch kSwitches[] = {
    {"online_fail", DOM_MSG_REC_EN_ONLINE_FAIL, &RecordSwitches::online_fail},
    {"offline_all", DOM_MSG_REC_EN_OFFLINE_ALL, &RecordSwitches::offline_all},
    {"offline_normal", DOM_MSG_REC_EN_OFFLINE_NORMAL, &RecordSwitches::offline_normal},
    {"offline_abnormal", DOM_MSG_REC_EN_OFFLINE_ABNORMAL, &RecordSwitches::offline_abnormal},
};

struct Method {
    const char* name;
    uint32_t bit;
    uint16_t BackupMethods::*flag;
};
constexpr Method kMethods[] = {
    {"online_fail", 1, &BackupMethods::online_fail},
    {"abnormal_offline", 2, &BackupMethods::abnormal_offline},
    {"normal_offline", 4, &BackupMethods::normal_offline},
};

Message NeedReply(Client& client, const std::string& what, TLV_MSG* request) {
    Reply reply = client.Read(request);
    if (!reply.data) throw Refused(what, reply.refusal);
    return std::move(reply.data);
}

Failure Unreadable(const std::string& what) {
    return Failure(kExitRefused, what, "the daemon's answer cannot be read",
                   "Use the aaactl of the daemon's release");
}

template <typename Row, size_t N>
const Row* FindRow(const Row (&rows)[N], const std::string& name) {
    for (const Row& row : rows) {
        if (name == row.name) return &row;
    }
    return nullptr;
}

template <typename Row, size_t N>
const Row& NeedRow(const Row (&rows)[N], const std::string& what, const std::string& name) {
    if (const Row* row = FindRow(rows, name)) return *row;
    std::string known;
    for (const Row& row : rows) known += (known.empty() ? "" : ", ") + std::string(row.name);
    RefuseUsage(what + " \"" + name + "\"", "there is no such one", "Give one of " + known);
}

template <typename Row, size_t N>
void CheckFlags(const Row (&rows)[N], const std::string& what, const Json& document) {
    if (!document.is_object()) RefuseUsage(what, "it is no object", "Mend the file");
    for (const auto& [name, value] : document.items()) {
        (void)NeedRow(rows, what, name);
        if (!value.is_boolean()) {
            RefuseUsage(what + " \"" + name + "\"", "it is no truth value", "Give true or false");
        }
    }
}

}  // namespace

Json ReadRecordSwitches(Client& client) {
    const std::string what = "record switches";
    const Message reply =
        NeedReply(client, what, DOM_userrecord_tlv_EncodeRecordEnable(DOM_MSG_REC_ENABLE_INFO));
    RecordSwitches switches{};
    if (DOM_userrecord_tlv_DecodeRecordEnableInfo(reply.get(), &switches) != DOM_OK) {
        throw Unreadable(what);
    }
    Json document = Json::object();
    for (const Switch& row : kSwitches) document[row.name] = switches.*row.flag == 1;
    return document;
}

Json ReadRecordBackup(Client& client) {
    const std::string what = "record backup methods";
    const Message reply =
        NeedReply(client, what, DOM_userrecord_tlv_EncodeRecordEnable(DOM_MSG_BACKUP_METHOD));
    BackupMethods methods{};
    if (DOM_userrecord_tlv_DecodeBackupMethodByStruct(reply.get(), &methods) != DOM_OK) {
        throw Unreadable(what);
    }
    Json document = Json::object();
    for (const Method& row : kMethods) document[row.name] = methods.*row.flag == 1;
    return document;
}

void CheckRecordSwitches(const Json& document) {
    CheckFlags(kSwitches, "record switch", document);
}

void CheckRecordBackup(const Json& document) {
    CheckFlags(kMethods, "record backup method", document);
}

void SetRecordSwitch(Client& client, const std::string& name, bool on) {
    const Switch& row = NeedRow(kSwitches, "record switch", name);
    const uint32_t result = client.Change(DOM_userrecord_tlv_EncodeRecordEnable(row.code),
                                          on ? DOM_OP_SET : DOM_OP_DELETE);
    if (result != DOM_OK) throw Refused("record switch \"" + name + "\"", result);
}

void SetRecordBackup(Client& client, const std::string& name, bool on) {
    const Method& row = NeedRow(kMethods, "record backup method", name);
    const uint32_t result = client.Change(DOM_userrecord_tlv_EncodeBackupMethod(row.bit),
                                          on ? DOM_OP_SET : DOM_OP_DELETE);
    if (result != DOM_OK) throw Refused("record backup method \"" + name + "\"", result);
}

}  // namespace aaactl
