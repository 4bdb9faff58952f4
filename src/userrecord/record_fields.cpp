#include "userrecord/record_fields.h"

#include <aaadom/codes.h>

namespace aaadom {

void AppendRecordFields(Appender& append, const UserRecord& record) noexcept {
    append.U32(DOM_TLV_RECORD_FIRST_NUMBER, record.first_number)
        .U32(DOM_TLV_RECORD_SECOND_NUMBER, record.second_number)
        .Raw(DOM_TLV_RECORD_IPV4, record.ipv4, sizeof record.ipv4)
        .Raw(DOM_TLV_RECORD_IPV6, record.ipv6, sizeof record.ipv6)
        .U32(DOM_TLV_RECORD_THIRD_NUMBER, record.third_number)
        .U32(DOM_TLV_RECORD_FOURTH_NUMBER, record.fourth_number)
        .U16(DOM_TLV_RECORD_NUMBER16_1, record.number16[0])
        .U16(DOM_TLV_RECORD_NUMBER16_2, record.number16[1])
        .U16(DOM_TLV_RECORD_NUMBER16_3, record.number16[2])
        .Fold(AAA_AppendMACTlvData(append.Message(), DOM_TLV_RECORD_MAC, record.mac))
        .Field(DOM_TLV_RECORD_FIRST_NAME, record.first_name)
        .Field(DOM_TLV_RECORD_SECOND_NAME, record.second_name)
        .Field(DOM_TLV_RECORD_INTERFACE, record.interface_name)
        .U64(DOM_TLV_RECORD_SERIAL, record.serial);
    if (record.detail == nullptr || record.detail_len == 0) return;
    // The length first: readers fetch the text as soon as they know how long it is.
    append.U32(DOM_TLV_RECORD_DETAIL_LEN, record.detail_len)
        .Raw(DOM_TLV_RECORD_DETAIL, record.detail, record.detail_len);
}

}  // namespace aaadom
