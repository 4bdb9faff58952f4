// The operation head and the daemon head.
#include <platform/aaa_tlv.h>

#include "fakes/message.h"
#include "fakes/state.h"

using fake::Event;
using fake::Hit;
using fake::Quiet;

namespace {

constexpr uint16_t kOpcode = 0xFF01, kOpBody = 0xFF02;
constexpr uint16_t kAaadType = 0xFF03, kAaadSubType = 0xFF04, kAaadBody = 0xFF05;

/// The nested message in the item at `index` when that item has the type.
TLV_MSG* NestedAt(TLV_MSG* msg, size_t index, uint16_t type) {
    if (msg == nullptr || index >= msg->items.size() || msg->items[index]->type != type) {
        return nullptr;
    }
    return fake::ParseImage(msg->items[index]->value);
}

bool HasWordAt(TLV_MSG* msg, size_t index, uint16_t type) {
    return msg != nullptr && index < msg->items.size() && msg->items[index]->type == type &&
           msg->items[index]->value.size() >= 4;
}

}  // namespace

extern "C" TLV_MSG* AAA_AddOpHead(uint32_t opcode, TLV_MSG* msg) noexcept {
    if (Hit(Event::kMessage) || msg == nullptr) return nullptr;
    Quiet quiet;
    TLV_MSG* out = fake::NewMessage();
    fake::AddItem(out, kOpcode, fake::LittleEndian(opcode, 4));
    fake::AddItem(out, kOpBody, fake::MakeImage(msg));
    return out;
}

extern "C" TLV_MSG* AAA_DelOpHead(TLV_MSG* msg, uint32_t* opcode) noexcept {
    if (Hit(Event::kMessage) || !HasWordAt(msg, 0, kOpcode)) return nullptr;
    Quiet quiet;
    TLV_MSG* body = NestedAt(msg, 1, kOpBody);
    if (body != nullptr && opcode != nullptr) {
        *opcode = static_cast<uint32_t>(fake::FromLittleEndian(msg->items[0]->value, 0, 4));
    }
    return body;
}

extern "C" TLV_MSG* AAA_AddAaadHead(uint32_t type, uint32_t sub_type, TLV_MSG* msg) noexcept {
    if (Hit(Event::kMessage) || msg == nullptr) return nullptr;
    Quiet quiet;
    TLV_MSG* out = fake::NewMessage();
    fake::AddItem(out, kAaadType, fake::LittleEndian(type, 4));
    fake::AddItem(out, kAaadSubType, fake::LittleEndian(sub_type, 4));
    fake::AddItem(out, kAaadBody, fake::MakeImage(msg));
    return out;
}

extern "C" TLV_MSG* AAA_DelAaadHead(TLV_MSG* msg) noexcept {
    if (Hit(Event::kMessage)) return nullptr;
    if (!HasWordAt(msg, 0, kAaadType) || !HasWordAt(msg, 1, kAaadSubType)) return nullptr;
    Quiet quiet;
    return NestedAt(msg, 2, kAaadBody);
}
