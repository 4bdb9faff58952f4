#include "stored_spelling.h"

#include <aaadom/domain.h>
#include <aaadom/domain_table.h>

#include <cstring>

#include "table_lock.h"

namespace aaad {

bool FindStoredSpelling(const char* asked, DomainNameBuffer& stored) {
    const TableLock lock;
    const DomainInfo* record = DOM_FindDomainByName(asked);
    if (record == nullptr) return false;
    memcpy(stored, record->name, sizeof record->name);
    stored[DOM_NAME_SIZE] = '\0';
    return true;
}

}  // namespace aaad
