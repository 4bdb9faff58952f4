// Owning handle, bounds-checked walk and failure-folding builder of TLV messages. Every encoder and
// decoder of the library goes through these.
#pragma once

#include <aaadom/results.h>
#include <platform/aaa_tlv.h>
#include <platform/tlv.h>

#include <cstdint>
#include <memory>
#include <utility>

#include "base/text.h"

namespace aaadom {

struct TlvDestroyer {
    void operator()(TLV_MSG* msg) const noexcept { TLV_Destroy(msg); }
};
/// A message by value is consumed, by reference borrowed, returned yours.
using TlvPtr = std::unique_ptr<TLV_MSG, TlvDestroyer>;

/// One TLV of a message, valid until the message's next append or delete.
class TlvItem {
  public:
    TlvItem(TLV_MSG* msg, TLV_ITER* it) noexcept : msg_(msg), it_(it) {}

    explicit operator bool() const noexcept { return it_ != nullptr; }
    uint16_t Type() const noexcept { return TLV_GetTypeByIterator(msg_, it_); }
    uint32_t Length() const noexcept { return TLV_GetLenByIterator(msg_, it_); }
    uint32_t U32() const noexcept { return AAA_GetUINTTlvValue(msg_, it_); }
    uint64_t U64() const noexcept { return AAA_GetUINT64TlvValue(msg_, it_); }
    /// Fails, and keeps `value`, when the TLV is shorter than 16 bits.
    [[nodiscard]] uint32_t U16(uint16_t* value) const noexcept {
        return AAA_GetUSHORTTlvValue(msg_, it_, value);
    }
    /// Cuts to `capacity` and terminates.
    [[nodiscard]] uint32_t Text(char* buffer, uint32_t capacity) const noexcept {
        return AAA_GetStrTlvValue(msg_, it_, capacity, buffer);
    }
    /// Copies at most `length` bytes.
    [[nodiscard]] uint32_t Raw(void* buffer, uint32_t length) const noexcept {
        return TLV_GetValueByIterator(msg_, it_, length, buffer);
    }
    /// Reads the nested message in place; AAA_GetSubFields says how.
    [[nodiscard]] uint32_t SubFields(const AAA_FIELD* fields, uint32_t count, void* record,
                                     uint32_t* position, AAA_OTHER_FN other = nullptr,
                                     void* context = nullptr) const noexcept {
        return AAA_GetSubFields(msg_, it_, fields, count, record, position, other, context);
    }
    /// Whether the value is a nested message, told in place: Sub() gives null for one, too, when
    /// memory is short.
    bool IsMessage() const noexcept {
        char unused;
        return SubFields(nullptr, 0, &unused, nullptr) == DOM_OK;
    }
    /// Reads the nested message in place, or without a position the whole message; AAA_GetRecords
    /// says how.
    [[nodiscard]] uint32_t Records(const AAA_FIELD* fields, uint32_t count, void* record,
                                   const AAA_RECORDS* arrays, uint32_t array_count) const noexcept {
        return AAA_GetRecords(msg_, it_, fields, count, record, arrays, array_count);
    }
    /// Whether nothing follows in the message.
    bool IsLast() const noexcept { return TLV_GetNext(msg_, it_) == nullptr; }
    /// Fails, and keeps `mac`, when the TLV is shorter than 6 bytes.
    [[nodiscard]] uint32_t Mac(uint8_t (&mac)[6]) const noexcept {
        return AAA_GetMACTlvValue(msg_, it_, mac);
    }
    /// The nested message, or null when the value is none.
    TlvPtr Sub() const noexcept { return TlvPtr(AAA_GetSubTlv(msg_, it_)); }

  private:
    TLV_MSG* msg_;
    TLV_ITER* it_;
};

/// First TLV of a type; false when there is none.
inline TlvItem FindTlv(TLV_MSG* msg, uint16_t type) noexcept {
    return TlvItem(msg, msg == nullptr ? nullptr : TLV_GetIteratorByType(msg, type));
}

/// `for (TlvItem item : TlvWalk(msg))` visits every TLV in order.
class TlvWalk {
  public:
    explicit TlvWalk(TLV_MSG* msg) noexcept : msg_(msg) {}

    class Iterator {
      public:
        Iterator(TLV_MSG* msg, TLV_ITER* it) noexcept : msg_(msg), it_(it) {}
        TlvItem operator*() const noexcept { return TlvItem(msg_, it_); }
        Iterator& operator++() noexcept {
            it_ = TLV_GetNext(msg_, it_);
            return *this;
        }
        bool operator!=(const Iterator& other) const noexcept { return it_ != other.it_; }

      private:
        TLV_MSG* msg_;
        TLV_ITER* it_;
    };
    Iterator begin() const noexcept {
        return Iterator(msg_, msg_ == nullptr ? nullptr : TLV_GetFirst(msg_));
    }
    Iterator end() const noexcept { return Iterator(msg_, nullptr); }

  private:
    TLV_MSG* msg_;
};

/// Appends every TLV it is given and combines the results, so that one test at the end decides.
class Appender {
  public:
    explicit Appender(TLV_MSG* msg) noexcept : msg_(msg) {}

    Appender& U32(uint16_t type, uint32_t value) noexcept {
        return Fold(AAA_AppendUINTTlvData(msg_, type, value));
    }
    Appender& U16(uint16_t type, uint16_t value) noexcept {
        return Fold(AAA_AppendUSHORTTlvData(msg_, type, value));
    }
    Appender& U64(uint16_t type, uint64_t value) noexcept {
        return Fold(AAA_AppendUINT64TlvData(msg_, type, value));
    }
    Appender& Text(uint16_t type, const char* text) noexcept {
        return Fold(AAA_AppendStrTlvData(msg_, type, text));
    }
    /// A text field that may fill its `N` bytes without a terminator.
    template <size_t N>
    Appender& Field(uint16_t type, const char (&field)[N]) noexcept {
        if (BoundedLength(field, N) < N) return Text(type, field);
        char terminated[N + 1];
        CopyBounded(terminated, sizeof terminated, field, N);
        return Text(type, terminated);
    }
    Appender& Mac(uint16_t type, const uint8_t (&mac)[6]) noexcept {
        return Fold(AAA_AppendMACTlvData(msg_, type, mac));
    }
    Appender& Raw(uint16_t type, const void* data, uint32_t length) noexcept {
        return Fold(TLV_Append_Data(msg_, type, length, data));
    }
    /// A null `sub` counts as a failed append.
    Appender& Sub(uint16_t type, const TlvPtr& sub) noexcept {
        return Fold(sub ? AAA_AppendSubTlv(msg_, type, sub.get()) : DOM_ERR_FAILED);
    }
    Appender& Fields(const AAA_FIELD* fields, uint32_t count, const void* record) noexcept {
        return Fold(AAA_AppendFields(msg_, fields, count, record));
    }
    /// Makes what `fields(Appender&)` appends one nested message, in place. After a failed append
    /// the message is good only for being destroyed.
    template <typename Fields>
    Appender& Nested(uint16_t type, Fields&& fields) noexcept {
        uint32_t mark;
        const uint32_t begun = AAA_BeginSubTlv(msg_, type, &mark);
        if (begun != DOM_OK) return Fold(begun);
        Appender inner(msg_);
        fields(inner);
        return Fold(inner.Failed() ? inner.folded_ : AAA_EndSubTlv(msg_, mark));
    }
    Appender& Fold(uint32_t result) noexcept {
        folded_ |= result;
        return *this;
    }
    [[nodiscard]] bool Failed() const noexcept { return folded_ != 0; }
    /// For appends that this class has no call for; their results go to Fold.
    TLV_MSG* Message() const noexcept { return msg_; }

  private:
    TLV_MSG* msg_;
    uint32_t folded_ = 0;
};

/// A new message that begins with its code in TLV 0.
class MessageBuilder {
  public:
    explicit MessageBuilder(uint32_t code) noexcept : msg_(TLV_Create()), append_(msg_.get()) {
        if (msg_) append_.U32(0, code);
    }
    /// Calls `fields(Appender&)` when there is a message; returns it, or null when any append
    /// failed.
    template <typename Fields>
    TLV_MSG* Build(Fields&& fields) && noexcept {
        if (!msg_) return nullptr;
        fields(append_);
        return append_.Failed() ? nullptr : msg_.release();
    }
    /// A message that carries its code alone.
    TLV_MSG* Build() && noexcept {
        return std::move(*this).Build([](Appender&) {});
    }

  private:
    TlvPtr msg_;
    Appender append_;
};

}  // namespace aaadom
