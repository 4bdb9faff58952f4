// One request on its way from a connection to its reply.
#pragma once

#include <aaadom/results.h>
#include <platform/lipc.h>

#include <cstdint>
#include <optional>
#include <utility>

#include "message.h"

namespace aaad {

struct CodeRow;

/// A connected socket; closed with the object.
class Connection {
  public:
    Connection() = default;
    explicit Connection(int fd) : fd_(fd) {}
    Connection(Connection&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
    Connection& operator=(Connection&& other) noexcept {
        std::swap(fd_, other.fd_);
        return *this;
    }
    ~Connection() {
        if (fd_ >= 0) LIPC_Close(fd_);
    }

    int Descriptor() const { return fd_; }

  private:
    int fd_ = -1;
};

struct Request {
    /// What is left to do. A request is born kAnswered with the result of an unreadable one.
    enum class Kind { kAnswered, kChange, kRecordChange, kRead };

    Connection connection;
    LIPC_PEER peer{};
    Message message;  // as received, with its operation head; null when unreadable
    Message body;     // without the head
    uint32_t operation = 0;
    uint32_t code = 0;
    const CodeRow* row = nullptr;
    Kind kind = Kind::kAnswered;

    uint32_t result = 0;  // the answer, unless there is data
    char name[32] = {};   // goes in front of the result when it has a type
    uint16_t name_type = 0;
    uint64_t serial = 0;              // of a stored record, likewise unless 0
    std::optional<uint32_t> removed;  // number of cleared records, likewise
    Message data;                     // the answer of a read
    bool handed_over = false;         // the working role got the change, too
    uint32_t working_result = 0;      // and what it said
    bool incomplete = false;          // a role took it with something left out for want of memory
};

}  // namespace aaad
