#include "records.h"

#include <aaadom/user_record_query.h>

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
};
constexpr Method kMethods[] = {
    {"online_fail", 1},
    {"abnormal_offline", 2},
    {"normal_offline", 4},
};
/// Sets of them.
struct BackupBits {
    uint32_t configured = 0;
    uint32_t by_default = 0;
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

BackupBits ReadBackupBits(Client& client) {
    const std::string what = "record backup methods";
    const Message reply =
        NeedReply(client, what, DOM_userrecord_tlv_EncodeRecordEnable(DOM_MSG_BACKUP_METHOD));
    BackupBits bits;
    if (DOM_userrecord_tlv_DecodeBackupMethodWithDefault(reply.get(), &bits.configured,
                                                         &bits.by_default) != DOM_OK) {
        throw Unreadable(what);
    }
    return bits;
}

Json BackupDocument(uint32_t bits) {
    Json document = Json::object();
    for (const Method& row : kMethods) document[row.name] = (bits & row.bit) != 0;
    return document;
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
    return BackupDocument(ReadBackupBits(client).configured);
}

Json ReadRecordBackupWithDefault(Client& client) {
    const BackupBits bits = ReadBackupBits(client);
    Json document = BackupDocument(bits.configured);
    document["default"] = BackupDocument(bits.by_default);
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
