// Values that are whole messages: an encoder's message becomes the bytes of a stored value, and a
// stored value becomes a message again.
#pragma once

#include <aaadom/db_layout.h>
#include <platform/dbm.h>

#include <cstdint>
#include <cstdlib>
#include <memory>

#include "base/message.h"

namespace aaadom {

/// Flush limit of binary values: none. Platforms see this number, the buffer's size is tested
/// before.
constexpr uint32_t kNoFlushLimit = 0xFFFFFFFFu;

struct FreeBytes {
    void operator()(uint8_t* bytes) const noexcept { free(bytes); }
};

/// Room for the longest value. On the heap, because 65535 bytes are much for a daemon's thread
/// stack.
class ValueBuffer {
  public:
    ValueBuffer() noexcept : bytes_(static_cast<uint8_t*>(malloc(DOM_DB_VALUE_MAX))) {}

    explicit operator bool() const noexcept { return bytes_ != nullptr; }
    uint8_t* Data() const noexcept { return bytes_.get(); }
    static constexpr uint32_t Size() noexcept { return DOM_DB_VALUE_MAX; }

    /// Length of the flushed message, 0 when it does not fit: never stored, because a value of
    /// length 0 means deletion. `limit` is what the platform is told; whatever it is, nothing is
    /// written behind the buffer.
    [[nodiscard]] uint32_t Flush(const TlvPtr& msg, uint32_t limit) const noexcept;
    /// The message in the first `length` bytes; null for none. A value of length 0 or less is
    /// missing.
    TlvPtr Message(int32_t length) const noexcept;

  private:
    std::unique_ptr<uint8_t, FreeBytes> bytes_;
};

/// Stores `msg` as a binary value of g_hDomDbmHandle; DOM_ERR_FAILED for a null message.
[[nodiscard]] uint32_t StoreMessage(TlvPtr msg, const char* key, uint32_t key_length,
                                    uint32_t value_type) noexcept;
/// The message that a binary value holds, or null.
TlvPtr LoadMessage(DBM_HANDLE handle, const char* key, uint32_t key_length) noexcept;

}  // namespace aaadom
