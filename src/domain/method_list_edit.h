// Changes of one method list, independent of the domain it belongs to.
#pragma once

#include <aaadom/types.h>

#include <cstdint>

namespace aaadom {

/// Number of entries before the first empty one.
uint32_t UsedEntries(const MethodList& list) noexcept;
/// Whether any entry has that kind; of kind 0: whether any entry is empty.
bool HasKind(const MethodList& list, uint32_t method_kind) noexcept;

/// Inserts a method: kind 5 behind the used entries; any other before the first used entry that is
/// of kind 5 or whose index is not smaller. Kinds 4 and 5 get no scheme name, others at most 32
/// characters of `scheme_name`, which may lack its terminator. False, and nothing changed, when the
/// last entry is in use.
bool InsertMethod(MethodList& list, uint32_t method_kind, uint32_t scheme_index,
                  const char (&scheme_name)[DOM_SCHEME_NAME_SIZE]) noexcept;
/// Takes the first non-empty entry of that index out: later entries move up, the last is cleared.
void RemoveMethod(MethodList& list, uint32_t scheme_index) noexcept;
/// Leaves the single method of kind 4 with that index; AAA type and service stay.
void ResetToDefault(MethodList& list, uint32_t scheme_index) noexcept;

/// Writes the kind into the first empty entry, if there is one.
void AppendKind(MethodEntry* entries, uint32_t method_kind) noexcept;
/// Stores the name, cut to 32 characters, in the first entry of that kind, if there is one.
void NameFirstOfKind(MethodEntry* entries, uint32_t method_kind, const char* scheme_name) noexcept;

}  // namespace aaadom
