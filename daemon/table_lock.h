// The calling role's table mutex, held while the object lives.
#pragma once

#include <aaadom/domain_table.h>

namespace aaad {

class TableLock {
  public:
    TableLock() { (void)DOM_DomainInfoTableLock(); }  // a default mutex fails only when misused
    ~TableLock() { (void)DOM_DomainInfoTableUnlock(); }
    TableLock(const TableLock&) = delete;
    TableLock& operator=(const TableLock&) = delete;
};

}  // namespace aaad
