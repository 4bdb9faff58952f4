#include "domain/method_list_edit.h"

#include <algorithm>
#include <iterator>

#include "base/text.h"

namespace aaadom {
namespace {

MethodEntry* FirstOfKind(MethodEntry* entries, uint32_t method_kind) noexcept {
    MethodEntry* end = entries + DOM_METHODS;
    MethodEntry* entry = entries;
    while (entry != end && entry->method_kind != method_kind) ++entry;
    return entry == end ? nullptr : entry;
}

/// Kind 5 stays at the end of every list; other methods stand in the order of their indexes.
uint32_t InsertionPosition(const MethodList& list, uint32_t method_kind,
                           uint32_t scheme_index) noexcept {
    uint32_t used = UsedEntries(list);
    if (method_kind == METHOD_LAST_5) return used;
    uint32_t position = 0;
    while (position < used && list.methods[position].method_kind != METHOD_LAST_5 &&
           list.methods[position].scheme_index < scheme_index) {
        ++position;
    }
    return position;
}

}  // namespace

uint32_t UsedEntries(const MethodList& list) noexcept {
    uint32_t used = 0;
    while (used < DOM_METHODS && list.methods[used].method_kind != METHOD_EMPTY) ++used;
    return used;
}

bool HasKind(const MethodList& list, uint32_t method_kind) noexcept {
    return std::any_of(std::begin(list.methods), std::end(list.methods),
                       [&](const MethodEntry& entry) { return entry.method_kind == method_kind; });
}

bool InsertMethod(MethodList& list, uint32_t method_kind, uint32_t scheme_index,
                  const char (&scheme_name)[DOM_SCHEME_NAME_SIZE]) noexcept {
    if (list.methods[DOM_METHODS - 1].method_kind != METHOD_EMPTY) return false;
    MethodEntry* entry = list.methods + InsertionPosition(list, method_kind, scheme_index);
    std::move_backward(entry, std::end(list.methods) - 1, std::end(list.methods));
    *entry = {};
    entry->method_kind = method_kind;
    entry->scheme_index = scheme_index;
    bool has_name = method_kind != METHOD_DEFAULT_4 && method_kind != METHOD_LAST_5;
    if (has_name) CopyField(entry->scheme_name, scheme_name);
    return true;
}

void RemoveMethod(MethodList& list, uint32_t scheme_index) noexcept {
    MethodEntry* end = std::end(list.methods);
    MethodEntry* entry = std::find_if(list.methods, end, [&](const MethodEntry& candidate) {
        return candidate.method_kind != METHOD_EMPTY && candidate.scheme_index == scheme_index;
    });
    if (entry == end) return;
    std::move(entry + 1, end, entry);
    end[-1] = {};
}

void ResetToDefault(MethodList& list, uint32_t scheme_index) noexcept {
    for (MethodEntry& entry : list.methods) entry = {};
    list.methods[0].method_kind = METHOD_DEFAULT_4;
    list.methods[0].scheme_index = scheme_index;
}

void AppendKind(MethodEntry* entries, uint32_t method_kind) noexcept {
    MethodEntry* entry = FirstOfKind(entries, METHOD_EMPTY);
    if (entry != nullptr) entry->method_kind = method_kind;
}

void NameFirstOfKind(MethodEntry* entries, uint32_t method_kind, const char* scheme_name) noexcept {
    MethodEntry* entry = FirstOfKind(entries, method_kind);
    if (entry != nullptr) CopyText(entry->scheme_name, scheme_name);
}

}  // namespace aaadom
