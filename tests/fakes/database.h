// The in-memory databases behind the fake's DBM calls.
#pragma once

#include <condition_variable>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <utility>

#include "fakes/state.h"

namespace fake {

/// Sort key of a list entry in its order: numbers by value, texts by bytes.
using SortKey = std::pair<uint64_t, std::string>;

/// What is stored under one key.
struct Record {
    uint32_t kind = 0;
    uint32_t value_type = 0;
    uint32_t attributes[4] = {};
    std::map<uint32_t, std::string> elements;
    std::string binary;
    std::map<SortKey, std::string> entries;
};
using Table = std::map<std::string, Record>;

struct Database {
    Table live;
    std::optional<Table> committed;  ///< the state before the open transaction scope
    std::thread::id owner;           ///< of the scope
    int depth = 0;
    bool aborted = false;
};

struct Handle {
    std::string name;
    std::set<std::string> interned;  ///< key texts handed out, alive until DBM_Close
};

/// One DBM call: quiet, locked, recorded when it ends.
class DbmScope {
  public:
    enum Access { kRead, kWrite, kControl };
    DbmScope(const char* call, DBM_HANDLE handle, Access access, const void* key = nullptr,
             uint32_t key_length = 0);
    ~DbmScope();
    DbmScope(const DbmScope&) = delete;

    DbmScope& Index(int64_t index);
    DbmScope& Value(uint32_t length, const void* value);
    DbmScope& Type(uint32_t value_type);
    /// False when the call was told to fail, or handle or key cannot be right.
    bool Usable() const { return usable_; }
    /// The record of the call's key, null when there is none.
    Record* Find() const;
    /// The same when it is of this kind.
    Record* Find(uint32_t kind) const;
    Record& Create() const;
    Table& table() const { return *table_; }
    const std::string& key() const { return call_.key; }
    template <typename T>
    T Return(T result) {
        call_.result = static_cast<int64_t>(result);
        return result;
    }

  private:
    const bool told_to_fail_;
    Quiet quiet_;
    std::unique_lock<std::recursive_mutex> lock_;
    DbmCall call_;
    Table* table_ = nullptr;
    bool usable_ = false;
};

Handle* FindHandle(DBM_HANDLE handle);
Database* FindDatabase(DBM_HANDLE handle);
std::condition_variable_any& ScopeEnded();
/// The sort key inside an entry, none when the entry is too short.
std::optional<SortKey> KeyOf(const Record& list, uint32_t length, const void* entry);
std::optional<SortKey> KeyFrom(const Record& list, const void* sort_key);
int32_t CopyOut(const std::string& value, uint32_t size, void* buffer);

}  // namespace fake
