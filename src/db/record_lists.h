// The lists of the record run database and the buffer their entries are built in.
#pragma once

#include <cstdint>

namespace aaadom {

/// One list: its key with the NUL, the value type of the key, what chooses it.
struct RecordList {
    const char* key;
    uint32_t key_length;
    uint32_t value_type;
    uint32_t record_type;
    uint32_t mask_bit;
};

/// In the order in which they are created and cleared.
extern const RecordList kRecordLists[3];
extern const RecordList& kAbnormalOfflines;
extern const RecordList& kNormalOfflines;
extern const RecordList& kOnlineFailures;

/// Null for a type that no list has.
const RecordList* ListOfRecordType(uint32_t record_type) noexcept;

/// The answer of DBM_IsKeyExist is a 16-bit truth value: platforms exist whose upper half is
/// something else.
constexpr bool SaysKeyExists(uint32_t answer) noexcept {
    return static_cast<uint16_t>(answer) == 1;
}

/// A zeroed buffer of the greatest entry's size. One block is kept for the next call, because
/// clearing 64 KiB takes longer than storing a record; closing the database frees it.
class EntryBuffer {
  public:
    static constexpr uint32_t kSize = 65535;

    EntryBuffer() noexcept;
    ~EntryBuffer();
    EntryBuffer(const EntryBuffer&) = delete;
    EntryBuffer& operator=(const EntryBuffer&) = delete;

    /// Null when memory is short.
    uint8_t* Bytes() noexcept { return bytes_; }
    /// Says how many bytes at the front are no longer zero.
    void Written(uint32_t length) noexcept { written_ = length; }

    static void FreeIdle() noexcept;

  private:
    uint8_t* bytes_;
    uint32_t written_ = 0;
};

}  // namespace aaadom
