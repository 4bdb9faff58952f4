// Row requests as row management sends them, applied to the calling role's domain table.
#pragma once

#include <aaadom/rows.h>

#include <cstdint>

namespace aaadom {

/// DOM_ROW_*; a created or modified row of the domain table.
[[nodiscard]] uint32_t ApplyDomainRow(TLV_MSG* msg, DomDbUpdateReq& change) noexcept;
/// DOM_ROW_*; a row of the scheme table, deleted when not `setting`.
[[nodiscard]] uint32_t ApplySchemeRow(TLV_MSG* msg, bool setting, DomDbUpdateReq& change) noexcept;

}  // namespace aaadom
