// The operation head, which every request to the configuration thread has, and the daemon head,
// which goes around it on the way between the daemon's threads.
#include <platform/aaa_tlv.h>

#include "tlv/message.h"

using namespace platform;

namespace {

/// Types of the heads' TLVs. They are sent to other processes and never change.
constexpr uint16_t kOperation = 0xFF01;
constexpr uint16_t kOperationBody = 0xFF02;
constexpr uint16_t kDaemonType = 0xFF03;
constexpr uint16_t kDaemonSubType = 0xFF04;
constexpr uint16_t kDaemonBody = 0xFF05;

struct Word {
    uint16_t type;
    uint32_t value;
};

/// A new message: the words in their order, then `body` nested.
template <size_t count>
TLV_MSG* AddHead(const Word (&words)[count], uint16_t body_type, const TLV_MSG* body) noexcept {
    if (body == nullptr) return nullptr;
    TLV_MSG* msg = CreateMessage();
    if (msg == nullptr) return nullptr;
    uint32_t result = kOk;
    for (const Word& word : words) result |= AppendNumber(msg, word.type, word.value);
    result |= AppendTlv(msg, body_type, body->length, body->image);
    if (result == kOk) return msg;
    DestroyMessage(msg);
    return nullptr;
}

/// Reads the words of a head, whose types are given, and takes the body behind them; null, and the
/// words undefined, when `msg` does not begin so.
template <size_t count>
TLV_MSG* DelHead(TLV_MSG* msg, Word (&words)[count], uint16_t body_type) noexcept {
    if (msg == nullptr) return nullptr;
    const TLV_ITER* it = First(msg);
    for (Word& word : words) {
        const TlvAt tlv = Locate(msg, it);
        if (!tlv || tlv.Type() != word.type || tlv.length != sizeof word.value) return nullptr;
        word.value = LoadLittleEndian<uint32_t>(tlv.Value());
        it = Next(msg, it);
    }
    const TlvAt body = Locate(msg, it);
    return body && body.Type() == body_type ? TakeNested(msg, body) : nullptr;
}

}  // namespace

extern "C" {

TLV_MSG* AAA_AddOpHead(uint32_t opcode, TLV_MSG* msg) noexcept {
    return AddHead({{kOperation, opcode}}, kOperationBody, msg);
}

TLV_MSG* AAA_DelOpHead(TLV_MSG* msg, uint32_t* opcode) noexcept {
    Word words[] = {{kOperation, 0}};
    TLV_MSG* body = DelHead(msg, words, kOperationBody);
    if (body != nullptr && opcode != nullptr) *opcode = words[0].value;
    return body;
}

TLV_MSG* AAA_AddAaadHead(uint32_t type, uint32_t sub_type, TLV_MSG* msg) noexcept {
    return AddHead({{kDaemonType, type}, {kDaemonSubType, sub_type}}, kDaemonBody, msg);
}

TLV_MSG* AAA_DelAaadHead(TLV_MSG* msg) noexcept {
    Word words[] = {{kDaemonType, 0}, {kDaemonSubType, 0}};
    return DelHead(msg, words, kDaemonBody);
}

}  // extern "C"
