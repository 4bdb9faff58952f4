// What the parts of the fake share: the failure switches and the lock of the recordings.
#pragma once

#include <mutex>
#include <string>

#include "fakes/fake_platform.h"

namespace fake {

inline constexpr uint32_t kFailed = 0x40010001u;

/// Counts one event; true when it is the one that shall fail.
bool Hit(Event event);
bool IsQuiet();
void NoteMisuse(const std::string& what);
void NoteLock(int change);
void NoteLockObject(const void* object);
bool FailedWriteSpoilsScope();
/// Whether throwing `new` is an event, too.
bool IsThrowingNewCounted();
/// Runs the watcher.
void Watch(const char* call);
/// A block was allocated, or is about to be freed.
void NoteBlock(const void* block);
void NoteFree(const void* block);
void NoteMessage(int change);
void NoteHashTable(int change);

/// Guards the recordings, the databases and the sockets.
std::recursive_mutex& StateMutex();

/// The fake at work: quiet, with the state locked.
class Inside {
  public:
    Inside() : lock_(StateMutex()) {}

  private:
    Quiet quiet_;
    std::lock_guard<std::recursive_mutex> lock_;
};

/// The code under test at work again, in a callback out of a Quiet scope.
class Outside {
  public:
    Outside();
    ~Outside();

  private:
    int depth_;
};

// Each part's share of Reset.
void ResetLog();
void ResetSockets();
void ResetDatabases();
void ResetInterfaces();

}  // namespace fake
