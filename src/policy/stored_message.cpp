#include "policy/stored_message.h"

#include <aaadom/method_codec.h>
#include <aaadom/results.h>

#include <cstdlib>
#include <memory>

namespace aaadom {
namespace {

constexpr int32_t kWriteWhole = -1;
constexpr int32_t kReadWhole = 0;

struct FreeBytes {
    void operator()(void* bytes) const noexcept { free(bytes); }
};
using Bytes = std::unique_ptr<void, FreeBytes>;

}  // namespace

bool IsKeyStored(DBM_HANDLE handle, StoredKey key) noexcept {
    // Only the low 16 bits of the database's answer count.
    return static_cast<uint16_t>(DBM_IsKeyExist(handle, key.bytes, key.length)) == 1;
}

uint32_t StoreMessage(DBM_HANDLE handle, StoredKey key, const AAA_ENCAP_STEP* steps,
                      uint32_t step_count, uint32_t value_type) noexcept {
    uint32_t length = 0;
    const Bytes value(AAA_EncapStructToTLVBuf(steps, step_count, &length));
    if (!value) return DOM_ERR_FAILED;
    return DBM_SetBinary(handle, key.bytes, key.length, kWriteWhole, length, value.get(),
                         value_type) == 0
               ? DOM_OK
               : DOM_ERR_FAILED;
}

TlvPtr LoadMessage(DBM_HANDLE handle, StoredKey key, uint32_t length) noexcept {
    const Bytes bytes(malloc(length));
    if (!bytes) return nullptr;
    const int32_t read =
        DBM_GetBinary(handle, key.bytes, key.length, kReadWhole, length, bytes.get());
    if (read < 0 || static_cast<uint32_t>(read) != length) return nullptr;
    return TlvPtr(
        TLV_CreateReceiveMsg(TLV_FORM_BUFFER, reinterpret_cast<uintptr_t>(bytes.get()), length));
}

uint32_t EncodeStoredMethod(uint32_t position, const void* method, TLV_MSG* msg) noexcept {
    return DOM_EncapMethodToTLVItem(position, static_cast<const MethodEntry*>(method), msg);
}

}  // namespace aaadom
