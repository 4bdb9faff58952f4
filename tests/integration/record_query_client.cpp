#include "record_query_client.h"

#include <platform/aaa_tlv.h>

#include <cstring>

#include "record_reports.h"

namespace daemon_test {
namespace {

void ReadRecord(TLV_MSG* reply, TLV_ITER* it, bool brief, FoundRecord& found) {
    const Message fields(AAA_GetSubTlv(reply, it));
    found.brief = brief;
    char* detail = nullptr;
    if (brief) {
        UserRecordBrief read{};
        EXPECT_EQ(DOM_userrecord_tlv_DecodeRecordBrief(fields.get(), &read), DOM_OK);
        found.record.second_number = read.second_number;
        memcpy(found.record.ipv4, read.ipv4, sizeof read.ipv4);
        memcpy(found.record.ipv6, read.ipv6, sizeof read.ipv6);
        memcpy(found.record.mac, read.mac, sizeof read.mac);
        memcpy(found.record.second_name, read.second_name, sizeof read.second_name);
        detail = read.detail;
    } else {
        EXPECT_EQ(DOM_userrecord_tlv_DecodeUserRecordStruct(fields.get(), &found.record), DOM_OK);
        detail = found.record.detail;
    }
    if (detail != nullptr) found.detail = detail;
    free(detail);
    found.record.detail = nullptr;
}

void ReadCount(TLV_MSG* reply, TLV_ITER* entry, RecordPage& page) {
    const Message fields(AAA_GetSubTlv(reply, entry));
    std::string value;
    uint32_t count = 0;
    for (TLV_ITER* it = TLV_GetFirst(fields.get()); it != nullptr;
         it = TLV_GetNext(fields.get(), it)) {
        const uint16_t type = TLV_GetTypeByIterator(fields.get(), it);
        if (type == DOM_TLV_RECORD_COUNT) count = AAA_GetUINTTlvValue(fields.get(), it);
        if (type == DOM_TLV_RECORD_SECOND_NUMBER) {
            value = std::to_string(AAA_GetUINTTlvValue(fields.get(), it));
        }
        if (type == DOM_TLV_RECORD_FIRST_NAME || type == DOM_TLV_RECORD_INTERFACE) {
            char text[256] = {};
            EXPECT_EQ(AAA_GetStrTlvValue(fields.get(), it, sizeof text, text), 0u);
            value = text;
        }
    }
    page.counts[value] += count;
    page.order.push_back(value);
}

}  // namespace

RecordPtr MakeRecord(const std::string& user, uint32_t time) {
    RecordPtr record(new UserRecord{});
    record->first_number = time;
    strncpy(record->second_name, user.c_str(), sizeof record->second_name - 1);
    return record;
}

void SetDetail(UserRecord& record, const std::string& detail) {
    free(record.detail);
    record.detail = strdup(detail.c_str());
    record.detail_len = static_cast<uint32_t>(detail.size() + 1);
}

uint64_t Report(uint32_t list, const UserRecord& record) {
    TLV_MSG* report = TLV_Create();
    EXPECT_EQ(AAA_AppendUINTTlvData(report, DOM_TLV_RECORD_KIND, list), 0u);
    EXPECT_EQ(DOM_userrecord_tlv_EncodeRecordVerbose(report, &record), DOM_OK);
    return SendReport(report).serial;
}

uint32_t ResetRecords(uint32_t code) {
    return Change(DOM_userrecord_tlv_EncodeResetRecord(code), DOM_OP_CLEAR_RECORDS);
}

void FillRecords(const DaemonProcess& daemon, uint32_t list, uint64_t first, uint64_t last,
                 const std::function<void(UserRecord&)>& fill) {
    ASSERT_EQ(DBM_SetRoot(daemon.StateDir().c_str(), daemon.RunDir().c_str()), 0u);
    const DBM_HANDLE handle = DOM_CreateRecordRunDB();
    ASSERT_NE(handle, DBM_INVALID_HANDLE);
    DOM_SetRecordRunDBHandle(handle);
    ASSERT_EQ(DOM_CreateAllRecordDBAvlList(), DOM_OK);
    ASSERT_EQ(DBM_Begin(handle), 0u);
    for (uint64_t serial = first; serial <= last; ++serial) {
        const RecordPtr record(new UserRecord{});
        record->serial = serial;
        fill(*record);
        ASSERT_EQ(DOM_SetSingeRecordInfoToRunDB(list, record.get()), DOM_OK);
    }
    ASSERT_EQ(DBM_Commit(handle), 0u);
    DOM_DestroyRecordRunDB();
}

Query::Query(uint32_t code) : message_(TLV_Create()) {
    Number32(DOM_TLV_MSG_CODE, code);
}

Query& Query::Number16(uint16_t type, uint16_t value) {
    EXPECT_EQ(AAA_AppendUSHORTTlvData(message_.get(), type, value), 0u);
    return *this;
}

Query& Query::Number32(uint16_t type, uint32_t value) {
    EXPECT_EQ(AAA_AppendUINTTlvData(message_.get(), type, value), 0u);
    return *this;
}

Query& Query::Text(uint16_t type, const std::string& value) {
    EXPECT_EQ(AAA_AppendStrTlvData(message_.get(), type, value.c_str()), 0u);
    return *this;
}

Query& Query::Raw(uint16_t type, const std::vector<uint8_t>& value) {
    EXPECT_EQ(TLV_Append_Data(message_.get(), type, static_cast<uint32_t>(value.size()),
                              value.empty() ? "" : static_cast<const void*>(value.data())),
              0u);
    return *this;
}

Query& Query::Nested(uint16_t type, TLV_MSG* sub) {
    const Message owned(sub);
    EXPECT_EQ(AAA_AppendSubTlv(message_.get(), type, sub), 0u);
    return *this;
}

Query& Query::Position(uint32_t list, uint64_t below) {
    TLV_MSG* position = TLV_Create();
    EXPECT_EQ(AAA_AppendUINTTlvData(position, DOM_TLV_RECORD_KIND, list), 0u);
    EXPECT_EQ(AAA_AppendUINT64TlvData(position, DOM_TLV_RECORD_SERIAL, below), 0u);
    return Nested(DOM_TLV_RECORD_POSITION, position);
}

std::vector<std::string> RecordPage::Users() const {
    std::vector<std::string> users;
    for (const FoundRecord& found : records) users.push_back(found.record.second_name);
    return users;
}

std::vector<uint64_t> RecordPage::Serials() const {
    std::vector<uint64_t> serials;
    for (const FoundRecord& found : records) {
        serials.push_back(found.brief ? found.brief_serial : found.record.serial);
    }
    return serials;
}

RecordPage ReadPage(uint16_t kind, TLV_MSG* reply) {
    RecordPage page;
    page.kind = kind;
    page.length = TLV_GetMsgLen(reply, TLV_FORM_BUFFER);
    FoundRecord next;
    for (TLV_ITER* it = TLV_GetFirst(reply); it != nullptr; it = TLV_GetNext(reply, it)) {
        switch (const uint16_t type = TLV_GetTypeByIterator(reply, it)) {
            case DOM_TLV_RESULT:
                page.result = AAA_GetUINTTlvValue(reply, it);
                break;
            case DOM_TLV_RECORD_LIST: {
                uint16_t list = 0;
                EXPECT_EQ(AAA_GetUSHORTTlvValue(reply, it, &list), 0u);
                page.header = list;
                break;
            }
            case DOM_TLV_RECORD_KIND:
                next.list = AAA_GetUINTTlvValue(reply, it);
                break;
            case DOM_TLV_RECORD_SERIAL:
                next.brief_serial = AAA_GetUINT64TlvValue(reply, it);
                break;
            case DOM_TLV_RECORD_FIRST_NUMBER:
                next.brief_time = AAA_GetUINTTlvValue(reply, it);
                break;
            case DOM_TLV_USER_RECORD:
            case DOM_TLV_USER_RECORD_BRIEF:
                ReadRecord(reply, it, type == DOM_TLV_USER_RECORD_BRIEF, next);
                page.records.push_back(next);
                next = {};
                break;
            case DOM_TLV_RECORD_TOP_ENTRY:
                ReadCount(reply, it, page);
                break;
            case DOM_TLV_RECORD_LOOKED_AT:
                page.looked_at = AAA_GetUINTTlvValue(reply, it);
                break;
            case DOM_TLV_RECORD_POSITION: {
                const Message position(AAA_GetSubTlv(reply, it));
                TLV_ITER* list = TLV_GetIteratorByType(position.get(), DOM_TLV_RECORD_KIND);
                TLV_ITER* serial = TLV_GetIteratorByType(position.get(), DOM_TLV_RECORD_SERIAL);
                page.positions.emplace_back(AAA_GetUINTTlvValue(position.get(), list),
                                            AAA_GetUINT64TlvValue(position.get(), serial));
                break;
            }
            default:
                ADD_FAILURE() << "TLV " << type;
        }
    }
    return page;
}

RecordPage AskPage(Query query) {
    const Answer answer = Ask(query.Take(), DOM_OP_GET);
    return ReadPage(answer.kind, answer.body.get());
}

std::vector<RecordPage> AskAll(const std::function<Query()>& make,
                               const std::function<void()>& between) {
    std::vector<RecordPage> pages;
    for (;;) {
        Query query = make();
        if (!pages.empty()) {
            for (const auto& [list, below] : pages.back().positions) query.Position(list, below);
        }
        pages.push_back(AskPage(std::move(query)));
        if (pages.back().positions.empty() || pages.size() > 1000) return pages;
        if (between) between();
    }
}

}  // namespace daemon_test
