#include "stored_values.h"

#include <aaadom/domain_table.h>

#include <iterator>
#include <vector>

#include "message.h"
#include "nas_id_load.h"
#include "policy_load.h"
#include "profile_load.h"
#include "promise.h"
#include "read_back.h"
#include "role_tables.h"
#include "stored_keys.h"

namespace fuzz {
namespace {

/// How a value is put, bits of a byte.
enum Way : uint8_t {
    kOtherKind = 1,       // under the key of a list as a binary, and the other way round
    kOtherValueType = 2,  // that of another key
    kOtherSlot = 4        // of the array, else the first
};

std::vector<uint8_t> TakeValue(const StoredKey& key, Input& input) {
    const uint16_t length = input.Number16();
    const Bytes bytes = input.Take(length & ~kMark);
    const bool is_sketch = key.value == StoredKey::Value::kMessage && (length & kMark) == 0;
    if (!is_sketch) return {bytes.begin(), bytes.end()};
    const Message msg = MakeMessage(bytes, false);
    std::vector<uint8_t> image(TLV_GetMsgLen(msg.get(), TLV_FORM_BUFFER));
    const auto size = static_cast<uint32_t>(image.size());
    (void)TLV_Flush(msg.get(), TLV_FORM_BUFFER, size, reinterpret_cast<uintptr_t>(image.data()));
    return image;
}

void PutEntry(DBM_HANDLE handle, const StoredKey& key, uint32_t value_type,
              const std::vector<uint8_t>& value) {
    (void)DBM_CreateSortList(handle, key.key, key.length, key.attributes, 1, value_type);
    (void)DBM_InsertSortList(handle, key.key, key.length, static_cast<uint32_t>(value.size()),
                             value.data(), value_type);
}

}  // namespace

void PutStoredValue(const Stage& stage, Input& input) {
    const StoredKey& key = kStoredKeys[input.Byte() % std::size(kStoredKeys)];
    const uint8_t way = input.Byte();
    const std::vector<uint8_t> value = TakeValue(key, input);
    const auto length = static_cast<uint32_t>(value.size());
    const StoredKey& other = kStoredKeys[(way >> 3) % std::size(kStoredKeys)];
    const uint32_t value_type = way & kOtherValueType ? other.value_type : key.value_type;
    const bool is_list = (key.kind == DBM_KIND_SORTED) != ((way & kOtherKind) != 0);
    const DBM_HANDLE handle = stage.Configuration();
    if (key.kind == DBM_KIND_ARRAY && (way & kOtherKind) == 0) {
        const uint32_t slot = way & kOtherSlot ? way >> 3 : 0;
        (void)DBM_SetArray(handle, key.key, key.length, slot, length, value.data(), value_type);
    } else if (is_list) {
        PutEntry(handle, key, value_type, value);
    } else {
        (void)DBM_SetBinary(handle, key.key, key.length, -1, length, value.data(), value_type);
    }
}

void StartFromDatabase(const Stage& stage) {
    const DBM_HANDLE handle = stage.Configuration();
    for (const aaad::Role role : {aaad::Role::kConfiguration, aaad::Role::kWorking}) {
        const bool tells = role == aaad::Role::kConfiguration;
        Stage::TakeRole(static_cast<uint32_t>(role));
        aaad::LoadReport report;
        FUZZ_PROMISE(aaad::LoadRoleTables(handle, report));
        FUZZ_PROMISE(aaad::LoadProfiles(handle, tells) && aaad::LoadRecordingPolicy(handle, role));
        if (tells) continue;
        FUZZ_PROMISE(aaad::LoadNasIdProfiles(handle) && aaad::LoadAccountingPolicies(handle));
    }
    ReadTables();
    for (const uint32_t role : {1u, 0u}) {
        Stage::TakeRole(role);
        FUZZ_PROMISE(DOM_DomainInfoTableFini() == 0);
    }
}

}  // namespace fuzz
