#include "db/stored_message.h"

#include <aaadom/database.h>
#include <aaadom/results.h>

#include "db/binary_value.h"

namespace aaadom {

uint32_t ValueBuffer::Flush(const TlvPtr& msg, uint32_t limit) const noexcept {
    if (!*this || TLV_GetMsgLen(msg.get(), TLV_FORM_BUFFER) > Size()) return 0;
    return TLV_Flush(msg.get(), TLV_FORM_BUFFER, limit, reinterpret_cast<uintptr_t>(Data()));
}

TlvPtr ValueBuffer::Message(int32_t length) const noexcept {
    if (!*this || length <= 0 || static_cast<uint32_t>(length) > Size()) return nullptr;
    return TlvPtr(TLV_CreateReceiveMsg(TLV_FORM_BUFFER, reinterpret_cast<uintptr_t>(Data()),
                                       static_cast<uint32_t>(length)));
}

uint32_t StoreMessage(TlvPtr msg, const char* key, uint32_t key_length,
                      uint32_t value_type) noexcept {
    if (!msg) return DOM_ERR_FAILED;
    const ValueBuffer buffer;
    const uint32_t length = buffer.Flush(msg, kNoFlushLimit);
    if (length == 0) return DOM_ERR_FAILED;
    return StoreBinary(key, key_length, length, buffer.Data(), value_type);
}

TlvPtr LoadMessage(DBM_HANDLE handle, const char* key, uint32_t key_length) noexcept {
    const ValueBuffer buffer;
    if (!buffer) return nullptr;
    return buffer.Message(LoadBinary(handle, key, key_length, buffer.Size(), buffer.Data()));
}

}  // namespace aaadom
