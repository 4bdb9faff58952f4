#include "fakes/database.h"

#include <algorithm>
#include <cstring>

namespace fake {
namespace {

struct Databases {
    std::map<std::string, Database> by_name;  // "durable/NAME" and "run-time/NAME"
    std::map<DBM_HANDLE, Handle> handles;
    DBM_HANDLE next = 1000;
    uint64_t last_token = 0;
    std::vector<DbmCall> calls;
};
Databases& All() {
    static auto* all = new Databases;
    return *all;
}

bool IsName(const char* name) {
    if (name == nullptr) return false;
    const std::string text = name;
    return !text.empty() && text.size() <= 64 && text[0] != '.' &&
           text.find_first_of("/:") == std::string::npos;
}

/// Where a database lies that is opened this way; empty when nowhere.
std::string Locate(const char* database, uint32_t mode, const DBM_OPEN_ATTR* attr) {
    const std::string durable = std::string("durable/") + database;
    const std::string run_time = std::string("run-time/") + database;
    if (mode == DBM_MODE_CREATE)
        return attr != nullptr && attr->persistent == 1 ? durable : run_time;
    if (mode != DBM_MODE_OPEN) return "";
    if (All().by_name.count(durable) != 0) return durable;
    return All().by_name.count(run_time) != 0 ? run_time : "";
}

}  // namespace

bool Database::IsUser() const {
    if (depth == 0) return false;
    const auto self = std::this_thread::get_id();
    return lending == kNotLent ? owner == self : lending == kBorrowed && borrower == self;
}
bool Database::IsLender() const {
    return depth > 0 && lending != kNotLent && owner == std::this_thread::get_id();
}
void Database::EndScope() {
    committed.reset();
    depth = 0;
    failed = false;
    lending = kNotLent;
    ScopeEnded().notify_all();
}
Database* FindLent(uint64_t token) {
    for (auto& [name, database] : All().by_name) {
        if (token != 0 && database.lending != Database::kNotLent && database.token == token) {
            return &database;
        }
    }
    return nullptr;
}
uint64_t NewToken() {
    return ++All().last_token;
}

std::condition_variable_any& ScopeEnded() {
    static auto* ended = new std::condition_variable_any;
    return *ended;
}

Handle* FindHandle(DBM_HANDLE handle) {
    const auto found = All().handles.find(handle);
    return found == All().handles.end() ? nullptr : &found->second;
}

Database* FindDatabase(DBM_HANDLE handle) {
    const Handle* open = FindHandle(handle);
    return open == nullptr ? nullptr : &All().by_name[open->database];
}

DbmScope::DbmScope(const char* call, DBM_HANDLE handle, Access access, const void* key,
                   uint32_t key_length)
    : told_to_fail_(Hit(Event::kDbm)), lock_(StateMutex()) {
    Watch(call);
    call_ = {call, "", key_length, -1, 0, "", 0, 0, HeldLocks()};
    if (key != nullptr) call_.key.assign(static_cast<const char*>(key), key_length);
    Database* database = FindDatabase(handle);
    // A write that meets a storage error spoils the scope in which it is done.
    if (told_to_fail_ && FailedWriteSpoilsScope() && access == kWrite && database != nullptr &&
        database->depth > 0 && database->IsUser()) {
        database->failed = true;
    }
    if (told_to_fail_ || database == nullptr || database->IsLender()) return;
    const bool others_scope = database->depth > 0 && !database->IsUser();
    if (access == kWrite && others_scope) {  // another thread's writes come first
        ScopeEnded().wait(lock_, [&] {
            database = FindDatabase(handle);
            return database == nullptr || database->depth == 0;
        });
        if (database == nullptr) return;
    }
    const std::string& table = FindHandle(handle)->table;
    table_ =
        access == kRead && others_scope ? &(*database->committed)[table] : &database->live[table];
    usable_ = access == kControl || (key != nullptr && key_length > 0 && key_length <= 400);
}

DbmScope::~DbmScope() {
    All().calls.push_back(call_);
}

DbmScope& DbmScope::Index(int64_t index) {
    call_.index = index;
    return *this;
}
DbmScope& DbmScope::Value(uint32_t length, const void* value) {
    call_.value_length = length;
    if (value != nullptr) call_.value.assign(static_cast<const char*>(value), length);
    return *this;
}
DbmScope& DbmScope::Type(uint32_t value_type) {
    call_.value_type = value_type;
    return *this;
}
Record* DbmScope::Find() const {
    if (table_ == nullptr) return nullptr;
    const auto found = table_->find(call_.key);
    return found == table_->end() ? nullptr : &found->second;
}
Record* DbmScope::Find(uint32_t kind) const {
    Record* record = Find();
    return record != nullptr && record->kind == kind ? record : nullptr;
}
Record& DbmScope::Create() const {
    return (*table_)[call_.key];
}

bool IsList(const Record& record) {
    return record.kind == DBM_KIND_SORTED || record.kind == DBM_KIND_AVL;
}

std::optional<SortKey> KeyFrom(const Record& list, const void* sort_key) {
    const uint32_t length = list.attributes[DBM_ATTR_KEY_LENGTH];
    const auto* bytes = static_cast<const char*>(sort_key);
    if (list.attributes[DBM_ATTR_KEY_KIND] == DBM_KEY_KIND_TEXT) {
        return SortKey{0, std::string(bytes, strnlen(bytes, length))};
    }
    if (length > 8) return SortKey{0, std::string(bytes, length)};
    uint64_t number = 0;  // host order, unsigned
    for (uint32_t i = 0; i < length; ++i) {
        number |= uint64_t{static_cast<uint8_t>(bytes[i])} << (8 * i);
    }
    return SortKey{number, ""};
}

std::optional<SortKey> KeyOf(const Record& list, uint32_t length, const void* entry) {
    const uint64_t offset = list.attributes[DBM_ATTR_KEY_OFFSET];
    if (entry == nullptr || offset + list.attributes[DBM_ATTR_KEY_LENGTH] > length) return {};
    return KeyFrom(list, static_cast<const char*>(entry) + offset);
}

int32_t CopyOut(const std::string& value, uint32_t size, void* buffer) {
    if (size == 0) return 0;
    if (buffer == nullptr) return -1;
    const size_t copied = std::min<size_t>(value.size(), size);
    std::memcpy(buffer, value.data(), copied);
    return static_cast<int32_t>(copied);
}

std::vector<DbmCall> DbmCalls() {
    Inside inside;
    return All().calls;
}
std::vector<DbmCall> DbmCalls(const std::string& call) {
    Inside inside;
    std::vector<DbmCall> found;
    for (const DbmCall& one : All().calls) {
        if (one.call == call) found.push_back(one);
    }
    return found;
}
void ClearDbmCalls() {
    Inside inside;
    All().calls.clear();
}
std::map<std::string, std::string> DatabaseContents() {
    Inside inside;
    std::map<std::string, std::string> contents;
    for (const auto& [name, database] : All().by_name) {
        for (const auto& [table, records] : database.live) {
            std::string& text = contents[name + "/" + table];
            const auto number = [&text](uint64_t value) { text += std::to_string(value) + ' '; };
            const auto bytes = [&](const std::string& value) {
                number(value.size());
                text += value + ' ';
            };
            for (const auto& [key, record] : records) {
                bytes(key);
                for (const uint32_t value :
                     {record.kind, record.value_type, record.attributes[0], record.attributes[1],
                      record.attributes[2], record.attributes[3], record.entry_size})
                    number(value);
                for (const auto& [index, element] : record.elements) {
                    number(index);
                    bytes(element);
                }
                bytes(record.binary);
                for (const auto& [sort_key, entry] : record.entries) {
                    number(sort_key.first);
                    bytes(sort_key.second);
                    bytes(entry);
                }
                text += '\n';
            }
        }
    }
    return contents;
}
void DropDatabases() {
    Inside inside;
    All().by_name.clear();
    All().handles.clear();
    ScopeEnded().notify_all();
}
int OpenDatabaseHandles() {
    Inside inside;
    return static_cast<int>(All().handles.size());
}
void ResetDatabases() {
    DropDatabases();
    All().calls.clear();
}

}  // namespace fake

using fake::All;
using fake::kFailed;

extern "C" uint32_t DBM_SetRoot(const char*, const char*) noexcept {
    return 0;
}

extern "C" uint32_t DBM_Open(const char* database, const char* table, uint32_t mode,
                             const DBM_OPEN_ATTR* attr, DBM_HANDLE* handle) noexcept {
    const bool told_to_fail = fake::Hit(fake::Event::kDbm);
    fake::Inside inside;
    fake::Watch("DBM_Open");
    fake::DbmCall call{"DBM_Open", "", 0, mode, 0, "", 0, kFailed, fake::HeldLocks()};
    if (attr != nullptr) {
        call.value.assign(reinterpret_cast<const char*>(attr), sizeof *attr);
        call.value_length = sizeof *attr;
    }
    if (!told_to_fail && fake::IsName(database) && fake::IsName(table) && handle != nullptr) {
        call.key = std::string(database) + "/" + table;
        call.key_length = static_cast<uint32_t>(call.key.size());
        const std::string where = fake::Locate(database, mode, attr);
        if (!where.empty() &&
            (mode == DBM_MODE_CREATE || All().by_name[where].live.count(table) != 0)) {
            All().by_name[where].live[table];
            *handle = All().next++;
            All().handles[*handle] = {where, table, {}};
            call.result = 0;
        }
    }
    All().calls.push_back(call);
    return static_cast<uint32_t>(call.result);
}

extern "C" uint32_t DBM_Close(DBM_HANDLE handle) noexcept {
    fake::Inside inside;
    uint32_t result = kFailed;
    fake::Database* database = fake::FindDatabase(handle);
    if (database == nullptr) {
        fake::NoteMisuse("DBM_Close of a handle that is not open");
    } else {
        const std::string name = fake::FindHandle(handle)->database;
        int open = 0;
        for (const auto& [number, one] : All().handles) open += one.database == name;
        const bool in_scope = open == 1 && database->depth > 0;
        if (in_scope && database->IsUser() && database->lending == fake::Database::kNotLent) {
            database->RollBack();
            database->EndScope();
        }
        if (!in_scope || database->depth == 0) {
            All().handles.erase(handle);
            result = 0;
        }
    }
    All().calls.push_back({"DBM_Close", "", 0, handle, 0, "", 0, result});
    return result;
}
