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
    uint32_t entry_size = 0;  ///< of a sorted list: fixed by its first insert
    std::map<uint32_t, std::string> elements;
    std::string binary;
    std::map<SortKey, std::string> entries;
};
using Table = std::map<std::string, Record>;

using Tables = std::map<std::string, Table>;

/// A database with the transaction scope that may be open on it.
struct Database {
    enum Lending { kNotLent, kLent, kBorrowed };

    Tables live;
    std::optional<Tables> committed;  ///< the state before the open scope
    int depth = 0;                    ///< levels of the open scope, 0 = none
    bool failed = false;              ///< a level was aborted
    std::thread::id owner;
    Lending lending = kNotLent;
    std::thread::id borrower;
    uint64_t token = 0;
    int depth_when_lent = 0;

    /// Whether the calling thread may work in the open scope now.
    bool IsUser() const;
    /// Whether it has lent the scope, so that it may do nothing.
    bool IsLender() const;
    void RollBack() { live = *committed; }
    void EndScope();
};

struct Handle {
    std::string database;
    std::string table;
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
/// The database whose scope was lent with this token.
Database* FindLent(uint64_t token);
uint64_t NewToken();
std::condition_variable_any& ScopeEnded();
bool IsList(const Record& record);
/// The sort key inside an entry, none when the entry is too short.
std::optional<SortKey> KeyOf(const Record& list, uint32_t length, const void* entry);
std::optional<SortKey> KeyFrom(const Record& list, const void* sort_key);
int32_t CopyOut(const std::string& value, uint32_t size, void* buffer);

}  // namespace fake
