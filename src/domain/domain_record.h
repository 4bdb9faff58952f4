// Makes and frees domain records.
#pragma once

#include <aaadom/types.h>

namespace aaadom {

/// AAA types that have a default list, in the order in which their methods are numbered.
constexpr uint32_t kDefaultListRows[DOM_DEFAULT_LISTS] = {AAA_TYPE_0, AAA_TYPE_4, AAA_TYPE_5};

/// A list of the default service with the single method of kind 4, or null.
MethodList* CreateDefaultList(uint32_t row) noexcept;
/// A record without a name that has every default, or null; nothing leaks when memory runs out.
DomainInfo* CreateDomainRecord() noexcept;
/// Frees the record and all its lists; null is ignored.
void DestroyDomainRecord(DomainInfo* record) noexcept;

}  // namespace aaadom
