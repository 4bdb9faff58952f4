#include "domain/nas_id_binding.h"

#include <aaadom/domain.h>

#include <cstddef>
#include <cstdlib>

#include "base/text.h"

namespace aaadom {
namespace {

/// What the table's functions get as a key: the hash reads the padded key with which this begins,
/// the comparison the whole name, so that a name too long to be kept equals no kept one.
struct BindingKey {
    NasIdBindKey hashed{};  // zero-padded
    const char* profile_name;

    BindingKey(const char* name, uint16_t vlan_id) noexcept : profile_name(name) {
        hashed.vlan_id = vlan_id;
        CopyText(hashed.profile_name, name);
        DOM_ToLowerCaseStr(hashed.profile_name);
    }
};
static_assert(offsetof(BindingKey, hashed) == 0);

int CompareKey(const void* key, const HASH_NODE* node) {
    const auto* wanted = static_cast<const BindingKey*>(key);
    const NasIdBinding* binding = AsNasIdBinding(node);
    if (wanted->hashed.vlan_id != binding->vlan_id) return 1;
    return strcasecmp(wanted->profile_name, binding->profile_name);
}

}  // namespace

NasIdBinding* FindNasIdBinding(const NasIdBindTable& table, const char* profile_name,
                               uint16_t vlan_id) noexcept {
    if (table.hash == nullptr || profile_name == nullptr) return nullptr;
    const BindingKey key(profile_name, vlan_id);
    return reinterpret_cast<NasIdBinding*>(HASH_Find(table.hash, &key, CompareKey));
}

bool AddNasIdBinding(NasIdBindTable& table, const char* profile_name, const char* nas_id,
                     uint16_t vlan_id) noexcept {
    if (table.hash == nullptr) return false;
    auto* binding = static_cast<NasIdBinding*>(calloc(1, sizeof(NasIdBinding)));
    if (binding == nullptr) return false;
    binding->vlan_id = vlan_id;
    CopyText(binding->profile_name, profile_name);
    CopyText(binding->nas_id, nas_id);
    const BindingKey key(profile_name, vlan_id);
    HASH_LinkAtHead(&table.hash->buckets[table.hash->key_fn(&key)], &binding->links);
    return true;
}

void RemoveNasIdBinding(NasIdBinding* binding) noexcept {
    HASH_Unlink(&binding->links);
    free(binding);
}

void RemoveNasIdBindingsOf(NasIdBindTable& table, const char* profile_name) noexcept {
    if (table.hash == nullptr) return;
    for (uint32_t bucket = 0; bucket < table.hash->bucket_count; ++bucket) {
        for (HASH_NODE* node = table.hash->buckets[bucket]; node != nullptr;) {
            auto* binding = reinterpret_cast<NasIdBinding*>(node);
            node = node->next;
            if (strcmp(binding->profile_name, profile_name) == 0) RemoveNasIdBinding(binding);
        }
    }
}

}  // namespace aaadom
