// The calling role's table lock for the length of a scope.
#pragma once

#include <aaadom/domain_table.h>

namespace aaadom {

class TableLock {
  public:
    TableLock() noexcept { (void)DOM_DomainInfoTableLock(); }  // fails only when misused
    ~TableLock() { (void)DOM_DomainInfoTableUnlock(); }
    TableLock(const TableLock&) = delete;
    TableLock& operator=(const TableLock&) = delete;
};

}  // namespace aaadom
