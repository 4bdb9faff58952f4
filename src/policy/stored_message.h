// What the stored forms of both kinds of policies share: one binary value that is a message.
#pragma once

#include <platform/aaa_tlv.h>
#include <platform/dbm.h>

#include <cstdint>

#include "base/message.h"

namespace aaadom {

/// Borrowed; the length counts the terminator where the key is stored with it.
struct StoredKey {
    const void* bytes;
    uint32_t length;
};

/// Whether the key exists, whatever its value is.
bool IsKeyStored(DBM_HANDLE handle, StoredKey key) noexcept;

/// Writes the message that the steps make as the whole value; DOM_OK or DOM_ERR_FAILED.
[[nodiscard]] uint32_t StoreMessage(DBM_HANDLE handle, StoredKey key, const AAA_ENCAP_STEP* steps,
                                    uint32_t step_count, uint32_t value_type) noexcept;

/// What came of reading something that is stored.
enum class Loading {
    kDone,
    kUnreadable,  ///< it cannot be what the library writes
    kRefused,     ///< the database or the memory did not serve; what is stored may be good
};

/// The value of `length` bytes, which the key said just before, as a message. A value that was
/// written in between counts as refused.
[[nodiscard]] Loading LoadMessage(DBM_HANDLE handle, StoredKey key, uint32_t length,
                                  TlvPtr& message) noexcept;

/// Reads a nested item with `decap`. The two kinds of failure must be told apart: a policy may do
/// without a damaged item, but one that merely could not be opened would be lost with the next
/// saving.
[[nodiscard]] Loading LoadItem(TLV_MSG* msg, TLV_ITER* it, AAA_DECAP_FN decap,
                               void* object) noexcept;

/// One method of a scheme as the step of StoreMessage that makes it.
uint32_t EncodeStoredMethod(uint32_t position, const void* method, TLV_MSG* msg) noexcept;

}  // namespace aaadom
