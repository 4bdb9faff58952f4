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

/// Why bytes did not become a message: as a value inside another one they are looked at in place.
Loading WhyUnopened(const void* bytes, uint32_t length) noexcept {
    constexpr uint16_t kAnyType = 1;
    const TlvPtr carrier(TLV_Create());
    if (!carrier || TLV_Append_Data(carrier.get(), kAnyType, length, bytes) != DOM_OK)
        return Loading::kRefused;
    return FindTlv(carrier.get(), kAnyType).IsMessage() ? Loading::kRefused : Loading::kUnreadable;
}

struct ItemReader {
    AAA_DECAP_FN decap;
    void* object;
    bool reached = false;  ///< whether the item was opened

    static uint32_t Read(TLV_MSG* item, void* reader) noexcept {
        auto* self = static_cast<ItemReader*>(reader);
        self->reached = true;
        return self->decap(item, self->object);
    }
};

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

Loading LoadMessage(DBM_HANDLE handle, StoredKey key, uint32_t length, TlvPtr& message) noexcept {
    const Bytes bytes(malloc(length));
    if (!bytes) return Loading::kRefused;
    const int32_t read =
        DBM_GetBinary(handle, key.bytes, key.length, kReadWhole, length, bytes.get());
    if (read < 0 || static_cast<uint32_t>(read) != length) return Loading::kRefused;
    message.reset(
        TLV_CreateReceiveMsg(TLV_FORM_BUFFER, reinterpret_cast<uintptr_t>(bytes.get()), length));
    return message ? Loading::kDone : WhyUnopened(bytes.get(), length);
}

Loading LoadItem(TLV_MSG* msg, TLV_ITER* it, AAA_DECAP_FN decap, void* object) noexcept {
    ItemReader reader{decap, object};
    if (AAA_DecapSubTLVToStruct(msg, it, ItemReader::Read, &reader) == DOM_OK)
        return Loading::kDone;
    const bool unopened = !reader.reached && TlvItem(msg, it).IsMessage();
    return unopened ? Loading::kRefused : Loading::kUnreadable;
}

uint32_t EncodeStoredMethod(uint32_t position, const void* method, TLV_MSG* msg) noexcept {
    return DOM_EncapMethodToTLVItem(position, static_cast<const MethodEntry*>(method), msg);
}

}  // namespace aaadom
