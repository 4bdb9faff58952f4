// Arrays, binaries, keys and the index by value type.
#include <platform/dbm.h>

#include <cstdint>

#include "fakes/database.h"

using fake::DbmScope;
using fake::kFailed;
using fake::Record;

extern "C" int32_t DBM_SetArray(DBM_HANDLE handle, const void* key, uint32_t key_len,
                                uint32_t index, uint32_t value_len, const void* value,
                                uint32_t value_type) noexcept {
    DbmScope call("DBM_SetArray", handle, DbmScope::kWrite, key, key_len);
    call.Index(index).Value(value_len, value).Type(value_type);
    if (!call.Usable() || (value_len != 0 && value == nullptr)) return call.Return(-1);
    Record* record = call.Find();
    if (record != nullptr && record->kind != DBM_KIND_ARRAY) return call.Return(-1);
    if (value_len == 0) {
        if (record != nullptr) record->elements.erase(index);
        return call.Return(0);
    }
    if (record == nullptr) record = &call.Create();
    record->kind = DBM_KIND_ARRAY;
    record->value_type = value_type;
    record->elements[index].assign(static_cast<const char*>(value), value_len);
    return call.Return(0);
}

extern "C" int32_t DBM_GetArray(DBM_HANDLE handle, const void* key, uint32_t key_len,
                                uint32_t index, uint32_t buf_size, void* buf) noexcept {
    DbmScope call("DBM_GetArray", handle, DbmScope::kRead, key, key_len);
    call.Index(index).Value(buf_size, nullptr);
    if (!call.Usable() || (buf == nullptr && buf_size != 0)) return call.Return(-1);
    const Record* record = call.Find();
    if (record == nullptr) return call.Return(0);
    if (record->kind != DBM_KIND_ARRAY) return call.Return(-1);
    const auto element = record->elements.find(index);
    if (element == record->elements.end()) return call.Return(0);
    return call.Return(fake::CopyOut(element->second, buf_size, buf));
}

extern "C" int32_t DBM_GetNextArrayIndex(DBM_HANDLE handle, const void* key, uint32_t key_len,
                                         int32_t after) noexcept {
    DbmScope call("DBM_GetNextArrayIndex", handle, DbmScope::kRead, key, key_len);
    call.Index(after);
    const Record* record = call.Usable() ? call.Find(DBM_KIND_ARRAY) : nullptr;
    if (record == nullptr) return call.Return(-1);
    const auto next = after < 0 ? record->elements.begin()
                                : record->elements.upper_bound(static_cast<uint32_t>(after));
    if (next == record->elements.end() || next->first > INT32_MAX) return call.Return(-1);
    return call.Return(static_cast<int32_t>(next->first));
}

extern "C" uint32_t DBM_SetBinary(DBM_HANDLE handle, const void* key, uint32_t key_len,
                                  int32_t index, uint32_t value_len, const void* value,
                                  uint32_t value_type) noexcept {
    DbmScope call("DBM_SetBinary", handle, DbmScope::kWrite, key, key_len);
    call.Index(index).Value(value_len, value).Type(value_type);
    if (!call.Usable() || (value_len != 0 && value == nullptr)) return call.Return(kFailed);
    if (index != -1 && index != 0) return call.Return(kFailed);
    Record* record = call.Find();
    if (record != nullptr && record->kind != DBM_KIND_BINARY) return call.Return(kFailed);
    if (record == nullptr) record = &call.Create();
    record->kind = DBM_KIND_BINARY;
    record->value_type = value_type;
    record->binary =
        value_len == 0 ? std::string() : std::string(static_cast<const char*>(value), value_len);
    return call.Return(0u);
}

extern "C" int32_t DBM_GetBinary(DBM_HANDLE handle, const void* key, uint32_t key_len,
                                 int32_t index, uint32_t buf_size, void* buf) noexcept {
    DbmScope call("DBM_GetBinary", handle, DbmScope::kRead, key, key_len);
    call.Index(index).Value(buf_size, nullptr);
    if (!call.Usable() || (index != -1 && index != 0)) return call.Return(-1);
    if (buf == nullptr && buf_size != 0) return call.Return(-1);
    const Record* record = call.Find();
    if (record == nullptr) return call.Return(0);
    if (record->kind != DBM_KIND_BINARY) return call.Return(-1);
    return call.Return(fake::CopyOut(record->binary, buf_size, buf));
}

extern "C" int32_t DBM_GetBinaryLen(DBM_HANDLE handle, const void* key, uint32_t key_len) noexcept {
    DbmScope call("DBM_GetBinaryLen", handle, DbmScope::kRead, key, key_len);
    if (!call.Usable()) return call.Return(-1);
    const Record* record = call.Find();
    if (record == nullptr) return call.Return(0);
    if (record->kind != DBM_KIND_BINARY) return call.Return(-1);
    return call.Return(static_cast<int32_t>(record->binary.size()));
}

extern "C" uint32_t DBM_IsKeyExist(DBM_HANDLE handle, const void* key, uint32_t key_len) noexcept {
    DbmScope call("DBM_IsKeyExist", handle, DbmScope::kRead, key, key_len);
    return call.Return(call.Usable() && call.Find() != nullptr ? 1u : 0u);
}

extern "C" uint32_t DBM_DeleteKey(DBM_HANDLE handle, const void* key, uint32_t key_len) noexcept {
    DbmScope call("DBM_DeleteKey", handle, DbmScope::kWrite, key, key_len);
    if (!call.Usable() || call.Find() == nullptr) return call.Return(kFailed);
    call.table().erase(call.key());
    return call.Return(0u);
}

extern "C" uint32_t DBM_GetKeyNumByValueType(DBM_HANDLE handle, uint32_t value_type) noexcept {
    DbmScope call("DBM_GetKeyNumByValueType", handle, DbmScope::kRead, "*", 1);
    call.Type(value_type);
    if (!call.Usable()) return call.Return(0u);
    uint32_t count = 0;
    for (const auto& [key, record] : call.table()) count += record.value_type == value_type;
    return call.Return(count);
}

extern "C" uint32_t DBM_GetKeysByValueType(DBM_HANDLE handle, uint32_t count, uint32_t value_type,
                                           void** iterator, DBM_KEY_SLOT* slots) noexcept {
    DbmScope call("DBM_GetKeysByValueType", handle, DbmScope::kRead, "*", 1);
    call.Type(value_type).Index(count);
    if (iterator != nullptr) *iterator = nullptr;
    if (!call.Usable() || slots == nullptr) return call.Return(0u);
    uint32_t filled = 0;
    for (const auto& [key, record] : call.table()) {
        if (record.value_type != value_type || filled == count) continue;
        const auto interned = fake::FindHandle(handle)->interned.insert(key).first;
        const size_t length = record.kind == DBM_KIND_BINARY  ? record.binary.size()
                              : record.kind == DBM_KIND_ARRAY ? record.elements.size()
                                                              : record.entries.size();
        slots[filled++] = {interned->c_str(), static_cast<uint32_t>(key.size()), value_type,
                           record.kind,       static_cast<uint32_t>(length),     0};
    }
    if (filled != 0 && iterator != nullptr) *iterator = new char;
    return call.Return(filled);
}

extern "C" void DBM_FreeIterator(void* iterator) noexcept {
    fake::Quiet quiet;
    delete static_cast<char*>(iterator);
}
