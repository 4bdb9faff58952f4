#include "record_store.h"

#include <aaadom/aaad_results.h>
#include <aaadom/codes.h>
#include <aaadom/db_layout.h>
#include <aaadom/record_run_db.h>
#include <aaadom/record_switches.h>
#include <aaadom/restore.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <new>

#include "failure.h"
#include "memory_watch.h"
#include "record_list_keys.h"

namespace aaad {
namespace {

constexpr uint16_t kNormalOffline = 1;
constexpr uint16_t kAbnormalOffline = 0;

uint32_t BitOf(uint32_t list) {
    return 1u << list;
}

/// What a request of code 54 to 57 clears, and the kind by which the library tells the standby.
struct Reset {
    uint32_t code;
    uint32_t lists;
    uint32_t kind;
};
constexpr Reset kResets[] = {
    {DOM_MSG_RESET_ONLINE_FAIL, 1u << DOM_RECORD_ONLINE_FAIL, 1},
    {DOM_MSG_RESET_OFFLINE_ALL,
     (1u << DOM_RECORD_ABNORMAL_OFFLINE) | (1u << DOM_RECORD_NORMAL_OFFLINE), 6},
    {DOM_MSG_RESET_OFFLINE_NORMAL, 1u << DOM_RECORD_NORMAL_OFFLINE, 4},
    {DOM_MSG_RESET_OFFLINE_ABNORMAL, 1u << DOM_RECORD_ABNORMAL_OFFLINE, 2},
};

uint32_t Remove(uint32_t list, uint64_t serial) {
    switch (list) {
        case DOM_RECORD_ONLINE_FAIL:
            return DOM_DelOnlineFailedRecordInfoToRunDB(serial);
        case DOM_RECORD_ABNORMAL_OFFLINE:
            return DOM_DelAbnormalOfflineRecordInfoToRunDB(serial);
        default:
            return DOM_DelNormalOfflineRecordInfoToRunDB(serial);
    }
}

void SendToStandby(uint32_t list, uint32_t operation, const UserRecord& record) {
    if (list == DOM_RECORD_ONLINE_FAIL) {
        DOM_SyncOnlineFailRecord(operation, &record);
        return;
    }
    DOM_SyncOfflineRecord(
        operation, list == DOM_RECORD_NORMAL_OFFLINE ? kNormalOffline : kAbnormalOffline, &record);
}

/// Reads the serial number at an end of a list, 0 when the list is empty. False when it cannot be
/// read: a list that seems empty would give numbers that are in use.
bool SerialAt(DBM_HANDLE handle, uint32_t list, int32_t (*step)(DBM_CURSOR*, uint32_t, void*),
              uint64_t& serial) {
    const RecordListKey* key = FindRecordListKey(list);
    DBM_CURSOR* cursor = nullptr;
    if (DBM_CursorOpen(handle, key->text, key->length, &cursor) != 0) return false;
    uint8_t head[RecordCursor::kSerialEnd];
    const int32_t length = step(cursor, sizeof head, head);
    DBM_CursorClose(cursor);
    serial = length == sizeof head ? RecordCursor::SerialOf(head) : 0;
    return length == 0 || length == sizeof head;
}

/// The greatest numbers that were given: each list's, in the order of kRecordLists, 8 bytes in
/// network order. A list that was cleared does not tell them at the next start.
constexpr char kSerialsKey[] = "AaadRecordSerials";
constexpr uint32_t kSerialsValueType = 44;
constexpr size_t kSerialBytes = 8;
using SavedSerials = std::array<uint8_t, kSerialBytes * kRecordLists.size()>;

Failure NotUsable(const std::string& run_dir) {
    return Failure("record database below " + run_dir,
                   "it cannot be opened (the DBM line of the system log names the cause)",
                   "Make room and the directory writable for the daemon's user");
}

}  // namespace

RecordStore::RecordStore(std::string run_dir, uint32_t max_records)
    : run_dir_(std::move(run_dir)), max_records_(std::max(max_records, 1u)) {
    const MutexLock lock(mutex_);
    Open();
    // The limit may be lower than when the records were stored.
    const bool begun = DBM_Begin(handle_) == 0;
    const bool trimmed = begun && MakeRoom();
    if (begun && !trimmed) (void)DBM_Abort(handle_);
    if (!trimmed || DBM_Commit(handle_) != 0) {
        LogUnsaved(0);  // the first record that arrives tries again
        gone_.clear();
        (void)FindSerials();
    }
    TellDropped();
    Log(Severity::kNotice,
        "%llu online failures, %llu abnormal and %llu normal offline records kept in %s",
        static_cast<unsigned long long>(Find(DOM_RECORD_ONLINE_FAIL)->count),
        static_cast<unsigned long long>(Find(DOM_RECORD_ABNORMAL_OFFLINE)->count),
        static_cast<unsigned long long>(Find(DOM_RECORD_NORMAL_OFFLINE)->count), run_dir_.c_str());
}

RecordStore::~RecordStore() {
    Log(Severity::kNotice,
        "%llu records stored, %llu not kept because their switch is off, %llu oldest ones dropped",
        static_cast<unsigned long long>(counters_.stored),
        static_cast<unsigned long long>(counters_.switched_off),
        static_cast<unsigned long long>(counters_.dropped));
    (void)DOM_DestroyRecordRunDB();
}

/// Records are not worth a daemon that does not start: after a crash of the machine their database
/// may be damaged.
void RecordStore::Open() {
    // Twice, because what is moved away is lost to whoever asks for records.
    bool readable = TryOpen() || TryOpen();
    if (!readable) {
        const std::string path = run_dir_ + "/" DOM_RUN_DB_DATABASE;
        const std::string away = path + ".unreadable";
        std::error_code error;
        std::filesystem::remove_all(away, error);
        std::filesystem::rename(path, away, error);
        if (!error) {
            Log(Severity::kError,
                "record database %s: it cannot be opened or read (the DBM line before names the "
                "cause) and was moved to %s; records begin anew. Remove that directory",
                path.c_str(), away.c_str());
            readable = TryOpen();
        }
    }
    if (!readable) throw NotUsable(run_dir_);
}

/// False, and nothing is open, when the database cannot be opened or one of its lists not read.
/// Throws for want of memory or room, which is no damage.
bool RecordStore::TryOpen() {
    const MemoryWatch memory;
    handle_ = DOM_CreateRecordRunDB();
    bool has_lists = true;
    if (handle_ != DBM_INVALID_HANDLE) {
        DOM_SetRecordRunDBHandle(handle_);
        has_lists = DOM_CreateAllRecordDBAvlList() == DOM_OK;
        if (has_lists && FindSerials()) return true;
        handle_ = DOM_DestroyRecordRunDB();
    }
    if (memory.RanShort()) {
        throw Failure("record database below " + run_dir_, "out of memory",
                      "Free memory and start the daemon again");
    }
    if (!has_lists) throw NotUsable(run_dir_);
    return false;
}

RecordStore::List* RecordStore::Find(uint32_t list) {
    const auto found = std::find(kRecordLists.begin(), kRecordLists.end(), list);
    return found == kRecordLists.end() ? nullptr : &lists_[found - kRecordLists.begin()];
}

uint64_t RecordStore::Count(uint32_t list) const {
    const RecordListKey* key = FindRecordListKey(list);
    return key == nullptr ? 0 : DBM_GetEntryNum(handle_, key->text, key->length);
}

/// Reads what the database holds, in the open transaction if there is one. A serial number that was
/// given stays given, also when its record has gone. False when a list cannot be read.
bool RecordStore::FindSerials() {
    SavedSerials saved{};
    if (DBM_GetBinary(handle_, kSerialsKey, sizeof kSerialsKey, -1, saved.size(), saved.data()) <
        0) {
        return false;
    }
    const uint8_t* byte = saved.data();
    for (const uint32_t list : kRecordLists) {
        uint64_t last = 0;
        if (!SerialAt(handle_, list, DBM_CursorLast, last)) return false;
        List& state = *Find(list);
        state.count = Count(list);
        uint64_t given = 0;
        for (size_t i = 0; i < kSerialBytes; ++i) given = given << 8 | *byte++;
        state.last_serial = std::max({state.last_serial, last, given});
    }
    return true;
}

/// Into the open transaction.
bool RecordStore::SaveSerials(const Lists& lists) {
    SavedSerials saved;
    uint8_t* byte = saved.data();
    for (const List& list : lists) {
        for (size_t i = kSerialBytes; i-- > 0;) {
            *byte++ = static_cast<uint8_t>(list.last_serial >> (8 * i));
        }
    }
    return DBM_SetBinary(handle_, kSerialsKey, sizeof kSerialsKey, -1, saved.size(), saved.data(),
                         kSerialsValueType) == 0;
}

void RecordStore::TakeSwitches() {
    const bool offline = DOM_GetOfflineAllRecordEnableInfo() == 1;
    uint32_t kept = 0;
    if (DOM_GetOnlineFailRecordEnableInfo() == 1) kept |= BitOf(DOM_RECORD_ONLINE_FAIL);
    if (offline || DOM_GetOfflineAbnormalRecordEnableInfo() == 1) {
        kept |= BitOf(DOM_RECORD_ABNORMAL_OFFLINE);
    }
    if (offline || DOM_GetOfflineNormalRecordEnableInfo() == 1) {
        kept |= BitOf(DOM_RECORD_NORMAL_OFFLINE);
    }
    uint32_t backed_up = 0;
    for (const uint32_t list : kRecordLists) {
        if (DOM_GetAAAUserRecordBackupMethodByType(list) == 1) backed_up |= BitOf(list);
    }
    kept_lists_ = kept;
    backed_up_lists_ = backed_up;
}

bool RecordStore::IsKept(uint32_t list) const {
    return (kept_lists_ & BitOf(list)) != 0;
}

bool RecordStore::IsBackedUp(uint32_t list) const {
    return (backed_up_lists_ & BitOf(list)) != 0;
}

void RecordStore::Store(std::vector<ArrivedRecord>& arrived) {
    const MutexLock lock(mutex_);
    size_t to_keep = 0;
    for (ArrivedRecord& one : arrived) {
        one.result = Find(one.list) == nullptr ? DOM_ERR_FAILED : DOM_OK;
        one.kept = one.result == DOM_OK && IsKept(one.list);
        if (one.kept) ++to_keep;
        if (one.result == DOM_OK && !one.kept) ++counters_.switched_off;
    }
    if (to_keep == 0) return;
    if (TryStore(arrived.data(), arrived.size())) return;
    if (to_keep == 1) {
        LogUnsaved(to_keep);
        return;
    }
    // One record must not cost the others their place.
    size_t unsaved = 0;
    for (ArrivedRecord& one : arrived) {
        if (one.result != AAAD_ERR_NOT_SAVED) continue;
        one.kept = true;
        if (!TryStore(&one, 1)) ++unsaved;
    }
    if (unsaved > 0) LogUnsaved(unsaved);
}

/// All records that are to be kept in one transaction. False: none of them is stored.
bool RecordStore::TryStore(ArrivedRecord* first, size_t number) {
    const Lists before = lists_;
    gone_.clear();
    bool saved = DBM_Begin(handle_) == 0;
    if (saved) {
        for (size_t i = 0; i < number && saved; ++i) {
            if (first[i].kept) saved = Keep(first[i]);
        }
        saved = saved && MakeRoom();
        saved = saved ? DBM_Commit(handle_) == 0 : (static_cast<void>(DBM_Abort(handle_)), false);
    }
    if (!saved) {
        lists_ = before;
        gone_.clear();
        for (size_t i = 0; i < number; ++i) {
            if (!first[i].kept) continue;
            first[i].kept = false;
            first[i].result = AAAD_ERR_NOT_SAVED;
        }
        return false;
    }
    for (size_t i = 0; i < number; ++i) {
        if (!first[i].kept) continue;
        first[i].result = DOM_OK;
        ++counters_.stored;
        if (IsBackedUp(first[i].list)) {
            SendToStandby(first[i].list, DOM_OP_SET, *first[i].record);
        }
    }
    TellDropped();
    return true;
}

/// Gives the record the next number of its list and stores it; false spoils the transaction.
bool RecordStore::Keep(ArrivedRecord& arrived) {
    List& list = *Find(arrived.list);
    if (list.last_serial == UINT64_MAX) {
        arrived.kept = false;
        arrived.result = DOM_ERR_FAILED;
        return true;
    }
    arrived.record->serial = list.last_serial + 1;
    if (DOM_SetSingeRecordInfoToRunDB(arrived.list, arrived.record) != DOM_OK) return false;
    list.last_serial = arrived.record->serial;
    ++list.count;
    return true;
}

/// Drops the oldest records of every list that is too long.
bool RecordStore::MakeRoom() {
    for (const uint32_t number : kRecordLists) {
        List& list = *Find(number);
        for (; list.count > max_records_; --list.count) {
            uint64_t serial = 0;
            if (!SerialAt(handle_, number, DBM_CursorFirst, serial)) return false;
            if (Remove(number, serial) != DOM_OK) return false;
            try {
                gone_.emplace_back(number, serial);
            } catch (const std::bad_alloc&) {
                return false;  // an exception would leave the transaction open
            }
        }
    }
    return true;
}

void RecordStore::TellDropped() {
    for (const auto& [list, serial] : gone_) {
        UserRecord record{};
        record.serial = serial;
        SendToStandby(list, DOM_OP_DELETE, record);
    }
    counters_.dropped += gone_.size();
    gone_.clear();
}

uint32_t RecordStore::Clear(TLV_MSG* message, uint32_t code, uint32_t& removed) {
    removed = 0;
    const Reset* reset = std::find_if(std::begin(kResets), std::end(kResets),
                                      [&](const Reset& row) { return row.code == code; });
    if (reset == std::end(kResets)) return AAAD_ERR_MALFORMED;
    const MutexLock lock(mutex_);
    // Not want of room, which shows later: the lists are damaged, and reading them fails alike.
    if (DBM_Begin(handle_) != 0) {
        LogUnsaved(0);
        return DOM_ERR_FAILED;
    }
    const uint32_t result = DOM_RestoreData(message, 0, 0, 0, nullptr, nullptr);
    if (result != DOM_OK) {
        (void)DBM_Abort(handle_);
        return result;
    }
    Lists cleared = lists_;
    uint32_t gone = 0;
    for (size_t i = 0; i < kRecordLists.size(); ++i) {
        if ((reset->lists & BitOf(kRecordLists[i])) == 0) continue;
        List& state = cleared[i];
        gone += static_cast<uint32_t>(state.count);
        state.count = 0;
        // The numbers go on: nobody takes a new record for one that he has seen before.
        if (state.last_serial == UINT64_MAX) state.last_serial = 0;
    }
    const bool saved = SaveSerials(cleared);
    if (!saved) (void)DBM_Abort(handle_);
    if (!saved || DBM_Commit(handle_) != 0) {
        LogUnsaved(0);
        return AAAD_ERR_NOT_SAVED;
    }
    lists_ = cleared;
    removed = gone;
    Dom_SyncClearUserRecord(reset->kind);
    return DOM_OK;
}

uint32_t RecordStore::Apply(TLV_MSG* message) {
    const MutexLock lock(mutex_);
    if (DBM_Begin(handle_) != 0) return AAAD_ERR_NOT_SAVED;
    const Lists before = lists_;
    gone_.clear();
    const MemoryWatch memory;
    uint32_t result = DOM_RestoreData(message, 0, 0, 0, nullptr, nullptr);
    if (result == DOM_OK && memory.RanShort()) result = AAAD_ERR_NOT_SAVED;
    if (result == DOM_OK) {
        if (!FindSerials() || !SaveSerials(lists_) || !MakeRoom()) result = AAAD_ERR_NOT_SAVED;
    }
    if (result != DOM_OK) {
        (void)DBM_Abort(handle_);
    } else if (DBM_Commit(handle_) != 0) {
        result = AAAD_ERR_NOT_SAVED;
        LogUnsaved(0);
    }
    if (result != DOM_OK) {
        lists_ = before;
        gone_.clear();
        return result;
    }
    TellDropped();
    return DOM_OK;
}

RecordCounters RecordStore::Counters() const {
    const MutexLock lock(mutex_);
    return counters_;
}

/// `records` 0: another change than reported records.
void RecordStore::LogUnsaved(size_t records) {
    uint32_t suppressed = 0;
    if (!unsaved_limit_.Allows(suppressed)) return;
    Log(Severity::kError,
        "record database below %s: %zu reported records could not be stored, or a change was taken "
        "back (the DBM line before names the cause); %u earlier lines not shown. Make room in that "
        "directory, clear records, or start with a smaller --max-records",
        run_dir_.c_str(), records, suppressed);
}

}  // namespace aaad
