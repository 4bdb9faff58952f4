// The user records of this process: takes them in, numbers them, drops the oldest, reads them.
#pragma once

#include <aaadom/user_record.h>
#include <platform/dbm.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "lock.h"
#include "log.h"
#include "message.h"

namespace aaad {

/// The record lists by the numbers of TLV 180, in the order in which they are walked.
constexpr std::array<uint32_t, 3> kRecordLists = {
    DOM_RECORD_ONLINE_FAIL, DOM_RECORD_ABNORMAL_OFFLINE, DOM_RECORD_NORMAL_OFFLINE};

/// What becomes of one record that an access module sent.
struct ArrivedRecord {
    uint32_t list = 0;             // 1, 3 or 4
    UserRecord* record = nullptr;  // borrowed; receives its serial number when it is stored
    bool kept = false;             // false: its switch is off
    uint32_t result = 0;           // the answer
};

struct RecordCounters {
    uint64_t stored = 0;
    uint64_t switched_off = 0;  // answered 0 and not kept
    uint64_t dropped = 0;       // oldest ones, to make room
};

/// Owns the run database (RUN/gRECORD) and the library's handle to it; there is one.
///
/// Lock rule: whoever writes goes through Store, Clear and Apply. They take the store's lock, which
/// stands for the library's "callers serialise", and hold it for one transaction of the run
/// database. A thread that holds it takes no other lock of the daemon and no scope of the
/// configuration database, so a change of the configuration may wait for it and never the other way
/// round. Readers take no lock: Count and RecordCursor see the last committed transaction at each
/// step, from any thread.
class RecordStore {
  public:
    /// Opens the run database below the runtime root of DBM_SetRoot (which is `run_dir`) and
    /// creates the lists. A database that cannot be opened or read is moved away once. Throws
    /// Failure.
    RecordStore(std::string run_dir, uint32_t max_records);
    ~RecordStore();
    RecordStore(const RecordStore&) = delete;
    RecordStore& operator=(const RecordStore&) = delete;

    DBM_HANDLE Handle() const { return handle_; }
    /// Records in a list as of the last transaction; 0 for a number that is no list and for a list
    /// that cannot be read.
    uint64_t Count(uint32_t list) const;

    /// Takes the switches and backup methods over from the calling thread's role: they count for
    /// every record that arrives from now on. By the configuration thread alone, which may tear the
    /// library's own copy down at any time.
    void TakeSwitches();

    /// Decides each record in one transaction and tells the standby side. Without it each is
    /// answered AAAD_ERR_NOT_SAVED and no serial number is used up.
    void Store(std::vector<ArrivedRecord>& arrived);

    /// A request of code 54 to 57 with operation 6. Clears its lists in one transaction and tells
    /// the standby side. Returns the answer; `removed` receives the number of records that went.
    uint32_t Clear(TLV_MSG* message, uint32_t code, uint32_t& removed);

    /// A request of code 173 with operation 0 or 1: records of the active board, with the serial
    /// numbers that it gave them; one that is there already stays as it is. All of the message or,
    /// when it cannot be read or saved, nothing. Returns the answer.
    uint32_t Apply(TLV_MSG* message);

    RecordCounters Counters() const;

  private:
    struct List {
        uint64_t last_serial = 0;  // greatest that was given or stored; 0 = none
        uint64_t count = 0;        // as committed or in the open transaction
    };

    using Lists = std::array<List, kRecordLists.size()>;

    List* Find(uint32_t list) AAAD_REQUIRES(mutex_);
    void Open() AAAD_REQUIRES(mutex_);
    bool TryOpen() AAAD_REQUIRES(mutex_);
    bool FindSerials() AAAD_REQUIRES(mutex_);
    bool SaveSerials(const Lists& lists) AAAD_REQUIRES(mutex_);
    bool Keep(ArrivedRecord& arrived) AAAD_REQUIRES(mutex_);
    bool MakeRoom() AAAD_REQUIRES(mutex_);
    bool IsKept(uint32_t list) const;
    bool IsBackedUp(uint32_t list) const;
    bool TryStore(ArrivedRecord* first, size_t number) AAAD_REQUIRES(mutex_);
    void TellDropped() AAAD_REQUIRES(mutex_);
    void LogUnsaved(size_t records) AAAD_REQUIRES(mutex_);

    const std::string run_dir_;
    const uint32_t max_records_;
    DBM_HANDLE handle_ = DBM_INVALID_HANDLE;
    std::atomic<uint32_t> kept_lists_{0};       // bit 1 << list
    std::atomic<uint32_t> backed_up_lists_{0};  // likewise

    mutable Mutex mutex_;
    Lists lists_ AAAD_GUARDED_BY(mutex_);
    RecordCounters counters_ AAAD_GUARDED_BY(mutex_);
    /// Dropped by the open transaction.
    std::vector<std::pair<uint32_t, uint64_t>> gone_ AAAD_GUARDED_BY(mutex_);
    LogLimit unsaved_limit_ AAAD_GUARDED_BY(mutex_);
};

/// Reads one list from the newest record to the oldest. Records may come and go during the walk:
/// one that is there from its beginning to its end is read exactly once, and a new one never.
class RecordCursor {
  public:
    /// Begins with the newest record whose serial number is below `below`; 0 asks for the newest of
    /// all. `list` is one of kRecordLists, else the walk is empty.
    RecordCursor(const RecordStore& store, uint32_t list, uint64_t below);
    ~RecordCursor();
    RecordCursor(const RecordCursor&) = delete;
    RecordCursor& operator=(const RecordCursor&) = delete;

    /// Copies the next record's stored form to `buffer` (DOM_DB_VALUE_MAX bytes hold every record,
    /// a shorter buffer gets its first bytes, which begin with the serial number). Returns the
    /// bytes copied, 0 at the end and when the database cannot be read, which Failed tells apart.
    uint32_t Next(void* buffer, uint32_t size);
    /// True from the first time on that the database could not be read: the walk is incomplete.
    bool Failed() const { return failed_; }

    /// Serial number of a stored form of at least kSerialEnd bytes.
    static uint64_t SerialOf(const void* stored);
    static constexpr uint32_t kSerialEnd = 12;

  private:
    uint32_t Taken(int32_t length);

    DBM_CURSOR* cursor_ = nullptr;
    uint64_t below_;
    bool started_ = false;
    bool failed_ = false;
};

}  // namespace aaad
