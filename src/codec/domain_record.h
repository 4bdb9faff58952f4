// A whole domain as a message.
#pragma once

#include <aaadom/types.h>

#include "base/message.h"

namespace aaadom {

/// Code 0 and the full record; null when an append failed. The caller holds the table lock when the
/// record is in a table.
TlvPtr EncodeDomainRecord(const DomainInfo& record) noexcept;
/// The same into an empty message made before; null in, null out.
TlvPtr FillDomainMessage(const DomainInfo& record, TlvPtr msg) noexcept;
/// Appends the full record without a code. 0 or DOM_ERR_FAILED.
[[nodiscard]] uint32_t AppendDomainRecord(const DomainInfo& record, TLV_MSG* msg) noexcept;
/// A new record from a message of code 0 or 14, or null. Destroy with DOM_DestroyDomain.
DomainInfo* DecodeDomainRecord(TLV_MSG* msg) noexcept;

}  // namespace aaadom
