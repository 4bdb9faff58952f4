#include "userrecord/record_report.h"

#include <aaadom/codes.h>
#include <aaadom/results.h>
#include <platform/ifname.h>

#include "base/message.h"
#include "userrecord/record_fields.h"

namespace aaadom {
namespace {

constexpr uint32_t kNoInterface = 0;

/// Empty without an interface and for one that the system does not know.
struct InterfaceName {
    char text[sizeof(UserRecord::interface_name)] = "";

    explicit InterfaceName(uint32_t index) noexcept {
        if (index == kNoInterface) return;
        // Empty on failure, which is what a report says of an interface that has gone.
        (void)IF_GetDataByIfIndex(index, IF_ATTRIBUTE_NAME, sizeof text, text);
    }
};

}  // namespace

uint32_t AppendRecordContent(TLV_MSG* msg, const UserRecordSource& source) noexcept {
    const InterfaceName interface_name(source.interface_index);
    const TlvPtr content(TLV_Create());
    Appender append(content.get());
    append.Field(DOM_TLV_RECORD_SECOND_NAME, source.second_name)
        .Field(DOM_TLV_RECORD_FIRST_NAME, source.first_name)
        .U32(DOM_TLV_RECORD_FIRST_NUMBER, source.first_number)
        .Raw(DOM_TLV_RECORD_IPV4, source.ipv4, sizeof source.ipv4)
        .Raw(DOM_TLV_RECORD_IPV6, source.ipv6, sizeof source.ipv6)
        .Mac(DOM_TLV_RECORD_MAC, source.mac)
        .Field(DOM_TLV_RECORD_INTERFACE, interface_name.text)
        .U16(DOM_TLV_RECORD_NUMBER16_1, source.number16[0])
        .U16(DOM_TLV_RECORD_NUMBER16_2, source.number16[1])
        .U16(DOM_TLV_RECORD_NUMBER16_3, source.number16[2])
        .U32(DOM_TLV_RECORD_SECOND_NUMBER, source.second_number)
        .U32(DOM_TLV_RECORD_THIRD_NUMBER, source.third_number)
        .U32(DOM_TLV_RECORD_FOURTH_NUMBER, source.fourth_number);
    AppendDetail(append, source.detail, source.detail_len);
    if (append.Failed()) return DOM_ERR_FAILED;
    return AAA_AppendSubTlv(msg, DOM_TLV_USER_RECORD, content.get());
}

TLV_MSG* EncodeRecordReport(uint32_t record_type, uint16_t flags,
                            const UserRecordSource& source) noexcept {
    TlvPtr msg(TLV_Create());
    Appender append(msg.get());
    append.U32(DOM_TLV_RECORD_KIND, record_type)
        .U16(DOM_TLV_RECORD_FLAGS, flags)
        .Fold(AppendRecordContent(msg.get(), source));
    return append.Failed() ? nullptr : msg.release();
}

uint32_t DecodeRecordReport(TLV_MSG* msg, uint32_t& record_type, uint16_t& flags,
                            UserRecord& record) noexcept {
    record.detail = nullptr;
    record.detail_len = 0;
    uint32_t result = DOM_OK;
    bool ran_short = false;
    for (TlvItem item : TlvWalk(msg)) {
        switch (item.Type()) {
            case DOM_TLV_RECORD_KIND:
                record_type = item.U32();
                break;
            case DOM_TLV_RECORD_FLAGS:
                // Replaces what was gathered: modules may send a placeholder 178 in front of the
                // flags and the record behind.
                result = item.U16(&flags);
                break;
            case DOM_TLV_USER_RECORD: {
                const TlvPtr content = item.Sub();
                // No placeholder: a record that was sent and is lost, whatever stands behind it.
                ran_short |= !content && item.IsMessage();
                result |= content ? ReadRecordFields(content.get(), record) : DOM_ERR_FAILED;
                break;
            }
            default:
                break;
        }
    }
    return ran_short ? DOM_ERR_FAILED : result;
}

}  // namespace aaadom
