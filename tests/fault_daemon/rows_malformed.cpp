// Requests that are none, or are broken inside. Each is answered, with nothing changed.
#include <aaadom/aaad_results.h>
#include <aaadom/codes.h>
#include <aaadom/results.h>
#include <aaadom/user_record.h>
#include <platform/aaa_tlv.h>

#include "fakes/fake_platform.h"
#include "fault_daemon/rows.h"
#include "golden/hex_file.h"

namespace fault_daemon {
namespace {

constexpr uint32_t kNoCode = 9999;
constexpr uint32_t kNoOperation = 99;
constexpr size_t kFrameHead = 8;

/// As it is sent, operation head included.
Row Sent(const std::string& name, std::function<TLV_MSG*()> message,
         uint64_t good = AAAD_ERR_MALFORMED) {
    Row row;
    row.name = "Malformed_" + name;
    row.body = std::move(message);
    row.has_head = false;
    row.good = good;
    row.reads = true;
    return row;
}

Row Cut(Row row, size_t bytes) {
    row.bytes_sent = bytes;
    return row;
}

Row ToRecords(Row row) {
    row.socket = Socket::kRecords;
    return row;
}

TLV_MSG* Headed(uint32_t operation, TLV_MSG* body) {
    TLV_MSG* message = AAA_AddOpHead(operation, body);
    TLV_Destroy(body);
    return message;
}

std::function<TLV_MSG*()> Golden(const char* file, uint32_t operation = DOM_OP_SET) {
    return [=] { return Headed(operation, fake::Parse(golden::ReadHexFile(file))); };
}

/// A change of the code, followed by an item of the type that is no nested message.
std::function<TLV_MSG*()> WithBrokenItem(uint32_t code, uint16_t type) {
    return [=] {
        constexpr char kBroken[] = "cut";
        TLV_MSG* body = TLV_Create();
        (void)AAA_AppendUINTTlvData(body, DOM_TLV_MSG_CODE, code);
        (void)AAA_AppendUINTTlvData(body, DOM_TLV_RECORD_KIND, DOM_RECORD_NORMAL_OFFLINE);
        (void)AAA_AppendStrTlvData(body, DOM_TLV_DOMAIN_NAME, "isp-a.example");
        (void)TLV_Append_Data(body, type, sizeof kBroken, kBroken);
        return Headed(DOM_OP_SET, body);
    };
}

TLV_MSG* ShortCode() {
    constexpr uint16_t kHalf = DOM_MSG_STATE;
    TLV_MSG* body = TLV_Create();
    (void)AAA_AppendUSHORTTlvData(body, DOM_TLV_MSG_CODE, kHalf);
    return Headed(DOM_OP_SET, body);
}

TLV_MSG* UnknownCode() {
    TLV_MSG* body = TLV_Create();
    (void)AAA_AppendUINTTlvData(body, DOM_TLV_MSG_CODE, kNoCode);
    return Headed(DOM_OP_SET, body);
}

/// A report whose record is cut off.
TLV_MSG* BrokenReport() {
    constexpr char kBroken[] = "cut";
    TLV_MSG* message = TLV_Create();
    (void)AAA_AppendUINTTlvData(message, DOM_TLV_RECORD_KIND, DOM_RECORD_NORMAL_OFFLINE);
    (void)TLV_Append_Data(message, DOM_TLV_USER_RECORD, sizeof kBroken, kBroken);
    return message;
}

}  // namespace

std::vector<Row> MalformedRows() {
    const auto state = Golden("msg_007_state");
    return {
        Sent("NoTlv", TLV_Create),
        Sent("NoCode", [] { return Headed(DOM_OP_SET, TLV_Create()); }),
        Sent("ShortCode", ShortCode),
        Sent("UnknownCode", UnknownCode),
        Sent("UnknownOperation", Golden("msg_007_state", kNoOperation)),
        Cut(Sent("HalfAHead", state), kFrameHead / 2),
        Cut(Sent("HeadAlone", state), kFrameHead),
        Cut(Sent("LengthBeyondTheFrame", state), 3 * kFrameHead),
        Sent("BrokenMethodItem", WithBrokenItem(DOM_MSG_METHOD_LIST, DOM_TLV_METHOD_ITEM),
             DOM_ERR_FAILED),
        Sent("BrokenUserRecord", WithBrokenItem(DOM_MSG_USER_RECORD, DOM_TLV_USER_RECORD),
             DOM_ERR_FAILED),
        ToRecords(Cut(Sent("Report_HeadAlone", BrokenReport), kFrameHead)),
        ToRecords(Sent("Report_BrokenRecord", BrokenReport)),
        ToRecords(Sent("Report_NoTlv", TLV_Create)),
    };
}

}  // namespace fault_daemon
