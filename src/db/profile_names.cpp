#include "db/profile_names.h"

#include <aaadom/results.h>

#include <cstdlib>
#include <cstring>
#include <memory>

#include "base/text.h"

namespace aaadom {
namespace {

struct FreeSlots {
    void operator()(DBM_KEY_SLOT* slots) const noexcept { free(slots); }
};
using KeySlots = std::unique_ptr<DBM_KEY_SLOT, FreeSlots>;

bool Append(DomProfileNameList& list, const char* name, size_t length) noexcept {
    auto* node = static_cast<DomProfileNameNode*>(calloc(1, sizeof(DomProfileNameNode)));
    if (node == nullptr) return false;
    CopyBounded(node->name, sizeof node->name, name, length);
    (list.head == nullptr ? list.head : list.tail->next) = node;
    list.tail = node;
    return true;
}

}  // namespace

uint32_t BuildProfileKey(const char* prefix, const char* name, uint32_t size, char* key) noexcept {
    CopyText(key, size, prefix);
    const size_t prefix_length = strlen(key);
    CopyText(key + prefix_length, size - prefix_length, name);
    return static_cast<uint32_t>(strlen(key)) + 1;
}

uint32_t AppendProfileNames(DBM_HANDLE handle, uint32_t value_type, const char* prefix,
                            uint32_t if_cut_short, DomProfileNameList& list) noexcept {
    const uint32_t count = DBM_GetKeyNumByValueType(handle, value_type);
    if (count == 0) return DOM_ERR_NOT_FOUND;
    const KeySlots slots(static_cast<DBM_KEY_SLOT*>(calloc(count, sizeof(DBM_KEY_SLOT))));
    if (!slots) return DOM_ERR_FAILED;
    void* iterator = nullptr;
    const uint32_t filled =
        DBM_GetKeysByValueType(handle, count, value_type, &iterator, slots.get());
    DBM_FreeIterator(iterator);  // the key texts are the handle's

    const size_t prefix_length = strlen(prefix);
    for (uint32_t i = 0; i < filled && i < count; ++i) {
        const DBM_KEY_SLOT& slot = slots.get()[i];
        // A key of another form is no profile's, whoever stored it.
        if (slot.key_length < prefix_length || memcmp(slot.key, prefix, prefix_length) != 0)
            continue;
        if (!Append(list, slot.key + prefix_length, slot.key_length - prefix_length))
            return if_cut_short;
    }
    return DOM_OK;
}

}  // namespace aaadom
