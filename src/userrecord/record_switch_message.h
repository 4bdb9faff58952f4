// Record switches and backup methods in messages.
#pragma once

#include <aaadom/types.h>

namespace aaadom {

TLV_MSG* EncodeRecordSwitches(const RecordSwitches& switches) noexcept;
/// Keeps the switches whose TLV is missing or too short.
[[nodiscard]] uint32_t DecodeRecordSwitches(TLV_MSG* msg, RecordSwitches& switches) noexcept;

TLV_MSG* EncodeBackupBits(uint32_t bits) noexcept;
TLV_MSG* EncodeBackupBitsAndDefault(uint32_t bits, uint32_t default_bits) noexcept;
/// The last value counts; 0 without any.
uint32_t DecodeBackupBits(TLV_MSG* msg) noexcept;
uint32_t DecodeBackupDefault(TLV_MSG* msg) noexcept;
/// Raises the flags whose bit is set and keeps the others.
void RaiseBackupFlags(uint32_t bits, BackupMethods& methods) noexcept;

}  // namespace aaadom
