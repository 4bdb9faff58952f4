// Message codes of row management. Their results are those of the row operations themselves, and
// so is what they record as changed.
#include <aaadom/results.h>
#include <aaadom/rows.h>

#include "codec/restore.h"

namespace aaadom {

/// Rows of the domain table are deleted with the domain's name, never with a row.
uint32_t RestoreDomainRow(Restore& restore) {
    return restore.Setting() ? DOM_ProcDomainTable(restore.msg, &restore.change) : DOM_ERR_FAILED;
}

uint32_t RestoreSchemeRow(Restore& restore) {
    return DOM_ProcSchemeTable(restore.msg, restore.present, &restore.change);
}

}  // namespace aaadom
