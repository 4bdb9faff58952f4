#include "codec/domain_walk.h"

#include <aaadom/domain.h>
#include <aaadom/method_list.h>
#include <aaadom/results.h>

#include "base/text.h"
#include "codec/domain_record.h"
#include "codec/table_lock.h"

namespace aaadom {
namespace {

/// Whether the list in which rows are walked holds no domain. It is the working role's list, and a
/// walk finds nothing in it also when the calling role does not know its domains. A list that has
/// scheme rows holds a domain even when none is counted: replacing a record under another name
/// leaves the former name in the list. Takes the table lock itself.
bool IsRowOrderEmpty() noexcept {
    {
        const TableLock lock;
        if (DOM_IsSchemeTableNull() == 0) return false;
    }
    uint32_t count = 0;
    return DOM_GetDomainCount(&count) == DOM_OK && count == 0;
}

/// A walk's step: makes the message first, so that a missing message is told from a missing domain.
template <typename Choose>
TlvPtr EncodeChosen(Choose&& choose, bool& found) noexcept {
    TlvPtr msg(TLV_Create());
    found = true;
    if (!msg) return msg;
    const TableLock lock;
    const DomainInfo* record = choose();
    found = record != nullptr;
    if (!found) return nullptr;
    return FillDomainMessage(*record, std::move(msg));
}

}  // namespace

TlvPtr EncodeNamedDomain(const char* name) noexcept {
    bool found;
    return EncodeChosen([&] { return DOM_FindDomainByName(name); }, found);
}

TlvPtr EncodeNextDomain(const char* name, char* next_name) noexcept {
    bool found;
    char chosen[DOM_NAME_SIZE];
    TlvPtr msg = EncodeChosen(
        [&] {
            DomainInfo* record = IsEmpty(name) ? DOM_GetFirstDomain() : DOM_GetNextDomain(name);
            if (record != nullptr) CopyField(chosen, record->name);
            return record;
        },
        found);
    if (msg) CopyText(next_name, DOM_NAME_SIZE, chosen);
    return msg;
}

TlvPtr EncodeNextRowDomain(const char* name, uint32_t name_length, uint32_t& status) noexcept {
    bool found;
    TlvPtr msg = EncodeChosen(
        [&] {
            return name_length == 0 ? DOM_MibGetFirstDomain()
                                    : DOM_MibGetNextDomain(name, name_length);
        },
        found);
    status = DOM_WALK_NO_MESSAGE;
    if (msg) {
        status = DOM_WALK_OK;
    } else if (!found && IsRowOrderEmpty()) {
        // The end of a list that holds domains keeps 9: row management tells "no table" from "no
        // further row" by it.
        status = DOM_WALK_NONE;
    }
    return msg;
}

TlvPtr EncodeNextNetConfDomain(const char* name, uint32_t& status) noexcept {
    bool found;
    TlvPtr msg = EncodeChosen(
        [&] {
            return IsEmpty(name) ? DOM_NetConfGetFirstDomain() : DOM_NetConfGetNextDomain(name);
        },
        found);
    status = msg ? DOM_WALK_OK : found ? DOM_WALK_NO_MESSAGE : DOM_WALK_NONE;
    return msg;
}

}  // namespace aaadom
