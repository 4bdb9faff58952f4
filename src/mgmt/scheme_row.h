// What a row of the scheme table reads as where its message leaves TLVs out.
#pragma once

#include <aaadom/method_list.h>
#include <aaadom/rows.h>
#include <aaadom/types.h>

namespace aaadom {

inline void PresetRow(MibSchemeRow& row) noexcept {
    row = {};
    row.method_kind = METHOD_DEFAULT_4;
    row.row_status = DOM_ROW_ACTIVE;
    row.service = DOM_DEFAULT_SERVICE;
}

}  // namespace aaadom
