#include <aaadom/domain_table.h>

#include "domain/table_lifecycle.h"
#include "domain/tables.h"

using namespace aaadom;

extern "C" {

uint32_t DOM_DomainInfoTableInit(void) noexcept {
    return InitTables(CurrentRole());
}

uint32_t DOM_DomainInfoTableFini(void) noexcept {
    return FiniTables(CurrentRole());
}

// The pair holds the mutex across two calls, which the analysis cannot follow.
AAADOM_NO_TSA uint32_t DOM_DomainInfoTableLock(void) noexcept {
    return static_cast<uint32_t>(Domains(CurrentRole()).mutex.Lock());
}

AAADOM_NO_TSA uint32_t DOM_DomainInfoTableUnlock(void) noexcept {
    return static_cast<uint32_t>(Domains(CurrentRole()).mutex.Unlock());
}

uint32_t DOM_DomainInfoTbl_ForceInitLock(void) noexcept {
    return ForceInitWorkingLocks();
}

}  // extern "C"
