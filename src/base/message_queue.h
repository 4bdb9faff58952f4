// Messages that are built under a lock and sent without it.
#pragma once

#include <new>
#include <utility>

#include "base/message.h"

namespace aaadom {

/// Messages in the order in which they came, owned until they are sent.
class MessageQueue {
  public:
    MessageQueue() = default;
    MessageQueue(const MessageQueue&) = delete;
    MessageQueue& operator=(const MessageQueue&) = delete;
    ~MessageQueue() {
        while (Pop()) {
        }
    }

    /// False for null, a message that could not be built, and when there is no memory to keep it.
    [[nodiscard]] bool Push(TlvPtr msg) noexcept {
        if (!msg) return false;
        auto* entry = new (std::nothrow) Entry{std::move(msg), nullptr};
        if (entry == nullptr) return false;
        *end_ = entry;
        end_ = &entry->next;
        return true;
    }
    /// The oldest message, or null.
    TlvPtr Pop() noexcept {
        Entry* entry = head_;
        if (entry == nullptr) return nullptr;
        head_ = entry->next;
        if (head_ == nullptr) end_ = &head_;
        TlvPtr msg = std::move(entry->msg);
        delete entry;
        return msg;
    }

  private:
    struct Entry {
        TlvPtr msg;
        Entry* next;
    };
    Entry* head_ = nullptr;
    Entry** end_ = &head_;
};

}  // namespace aaadom
