// A complete platform for tests: every call of include/platform in the simplest form that can be
// right, with switches that make single calls fail, counters and recorders. It replaces
// libaaaplatform at link time, so the code under test is the code that is shipped.
//
// Every switch takes the number of a future event: 1 fails the next one, 0 or less switches it off.
// A switch fires once; Tripped() tells whether any has fired since the last arming, so a sweep is
//     for (int n = 1;; ++n) { FailAny(n); call(); if (!Tripped()) break; check(); }
// The event counts cover the code under test only: what the fake does for itself, and everything
// inside a Quiet scope or a server function, neither counts nor fails.
#pragma once

#include <platform/dbm.h>
#include <platform/lipc.h>
#include <platform/tlv.h>

#include <array>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <string>
#include <vector>

#pragma GCC visibility push(default)
namespace fake {

/// Switches off, counters at 0, recordings, databases, sockets, server and interface names gone.
/// Messages and hash tables that live on stay counted.
void Reset();

/// What can fail. The C library's calls are seen only where the fake is linked into the program
/// itself; throwing `new` is left alone unless told otherwise, because only test code and the
/// daemon may use it.
enum class Event {
    kAllocation,  ///< malloc, calloc, realloc, strdup, strndup, new (nothrow)
    kMessage,     ///< a call that returns a new TLV_MSG
    kAppend,      ///< TLV_Append_* and AAA_Append*
    kFlush,       ///< TLV_Flush, both forms
    kDbm,         ///< a DBM call that can fail, DBM_Begin and DBM_Commit included
    kHashCreate,
    kSocket,  ///< LIPC_Socket, LIPC_ServerOpen, and an LIPC_ServerAccept that has something to take
    kLockInit,  ///< pthread_mutex_init, pthread_rwlock_init
    kLock,      ///< pthread_mutex_lock, pthread_rwlock_rdlock, pthread_rwlock_wrlock
};
inline constexpr int kEventKinds = 9;

void Fail(Event event, int n);
/// The n-th event of whatever kind but kLock, which correct code need not test.
void FailAny(int n);
inline void FailAllocation(int n) {
    Fail(Event::kAllocation, n);
}
inline void FailMessage(int n) {
    Fail(Event::kMessage, n);
}
inline void FailAppend(int n) {
    Fail(Event::kAppend, n);
}
inline void FailFlush(int n = 1) {
    Fail(Event::kFlush, n);
}
inline void FailDbmCall(int n) {
    Fail(Event::kDbm, n);
}
inline void FailHashCreate(int n) {
    Fail(Event::kHashCreate, n);
}
inline void FailSocket(int n = 1) {
    Fail(Event::kSocket, n);
}
inline void FailLockInit(int n) {
    Fail(Event::kLockInit, n);
}
inline void FailLock(int n) {
    Fail(Event::kLock, n);
}
/// Throwing `new` counts and fails as an allocation, in all threads.
void FailThrowingNew(bool on);
/// Whether a DBM write that is told to fail is a storage error, which spoils the scope it stands
/// in; that is so after Reset. Else the call is merely refused and the scope can be committed.
void FailedWritesSpoilScopes(bool on);
/// Every DBM call that can fail does, until switched off.
void FailAllDbmCalls(bool on);
/// Whether a switch has fired since the last Fail* call.
bool Tripped();
/// Switches everything off that Fail and FailAny armed; recordings stay.
void DisarmFailures();

/// Events of a kind since Reset.
uint64_t Count(Event event);
/// Messages created and not destroyed, the test's own included.
int64_t LiveMessages();
int64_t LiveHashTables();
int OpenSockets();
int OpenDatabaseHandles();
int OpenCursors();
/// Blocks of the C library's heap that were allocated since blocks are counted and are not freed;
/// seen only where the fake is linked into the program itself. What throwing `new` gave is left
/// out.
int64_t LiveBlocks();
void CountBlocks(bool on);
/// Mutexes and reader-writer locks that the code under test holds now, in all threads.
int HeldLocks();
/// Those that the calling thread has taken and not released.
int HeldLocksHere();
/// The mutexes and reader-writer locks that the code under test has taken since Reset; at most 64.
std::vector<const void*> LockObjects();
/// Runs at the beginning of every DBM call that has a handle or opens one and of every flush to a
/// descriptor, with the call's name, in the calling thread; null takes it away.
void SetWatcher(void (*watcher)(const char* call));
/// What no caller may do, in words: a stale iterator, a message destroyed twice, an unknown socket
/// closed, a stale database handle closed ...
std::vector<std::string> Misuses();

/// Nothing counts and nothing fails in this thread while it lives.
class Quiet {
  public:
    Quiet() noexcept;
    ~Quiet();
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;
};

// --- system log
// -----------------------------------------------------------------------------------

struct LogLine {
    uint32_t priority;
    std::string module;
    std::string label;
    std::string text;
};
std::vector<LogLine> LogLines();

struct LogControl {
    bool open;  ///< openlog, else closelog
    std::string identity;
    int option;
    int facility;
};
std::vector<LogControl> LogControls();

// --- local IPC and flushed messages
// ---------------------------------------------------------------

/// Answers every message that is flushed to a connected socket: gets the request as sent (borrowed;
/// operation head included) and returns the reply (passed over to the fake), null = no reply ever.
/// Without a server and without LIPC_ServerOpen a connect is refused.
void SetServer(std::function<TLV_MSG*(TLV_MSG* request)> server);
/// The reply that a configuration thread sends: its first TLV has type `kind` and carries `body`
/// nested; `body` may be null and is destroyed.
TLV_MSG* MakeReply(uint16_t kind, TLV_MSG* body);
/// Result of the next connects, one each, 0 = goes on as usual. EISCONN leaves the socket
/// connected.
void ConnectErrors(std::initializer_list<int> errors);
/// Length of the next packet that a receive from the descriptor would take: 0 when the other end
/// has closed, -1 when there is nothing yet.
int64_t NextPacket(int32_t fd);
/// Every receive from a descriptor ends without a message, at once.
void ReceiveTimesOut(bool on);
/// The result of every TLV_Flush to a descriptor from now on; the message is delivered all the
/// same.
void SetFlushResult(uint32_t result);

struct SocketCall {
    int32_t family, type, protocol;
};
std::vector<SocketCall> SocketCalls();
struct ConnectCall {
    int32_t fd;
    std::array<uint8_t, 16> address;  ///< zero behind `length`
    uint32_t length;
    int error;  ///< 0 = connected
};
std::vector<ConnectCall> ConnectCalls();
struct FlushCall {
    int32_t fd;
    uint32_t wait;
    std::string image;
    int held_locks = 0;  ///< HeldLocks() when the call came
};
/// Every message flushed to a descriptor, also to numbers that are no socket of the fake.
std::vector<FlushCall> FlushCalls();
/// Size arguments of the flushes to buffers.
std::vector<uint32_t> BufferFlushLimits();
/// Wait arguments of the receives from descriptors.
std::vector<uint32_t> ReceiveWaits();
/// A recorded image as a message; the caller destroys it.
TLV_MSG* Parse(const std::string& image);
/// The image of a message; the message stays the caller's.
std::string ImageOf(TLV_MSG* msg);

// --- database
// -------------------------------------------------------------------------------------

/// One call, in order. `value` is the value or entry that was written or probed for; of DBM_Open
/// the 32 attribute bytes, with "database/table" as key and the mode as index. Of DBM_GetArray and
/// DBM_GetBinary `value_length` is the size of the buffer.
struct DbmCall {
    std::string call;  ///< "DBM_SetArray" ...
    std::string key;
    uint32_t key_length;
    int64_t index;  ///< -1 where the call has none
    uint32_t value_length;
    std::string value;
    uint32_t value_type;
    int64_t result;
    int held_locks = 0;  ///< HeldLocks() when the call came
};
std::vector<DbmCall> DbmCalls();
/// The calls of one name.
std::vector<DbmCall> DbmCalls(const std::string& call);
void ClearDbmCalls();
/// What the databases hold, by "database/table": every record with its attributes and values. What
/// an open scope has written is in it.
std::map<std::string, std::string> DatabaseContents();
/// Forgets every database; handles go stale.
void DropDatabases();

// --- interfaces
// -----------------------------------------------------------------------------------

void SetInterfaceName(uint32_t index, const std::string& name);

}  // namespace fake
#pragma GCC visibility pop
