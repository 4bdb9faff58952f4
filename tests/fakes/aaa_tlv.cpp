// Single values and nested messages.
#include <platform/aaa_tlv.h>

#include <algorithm>
#include <cstring>

#include "fakes/message.h"
#include "fakes/state.h"
#include "fakes/text_reads.h"

using fake::Event;
using fake::Hit;
using fake::kFailed;
using fake::Quiet;

fake::TextReads fake::failing_text_reads = {0, 0};

namespace {

uint32_t Append(TLV_MSG* msg, uint16_t type, const std::string& value) {
    if (msg == nullptr) return kFailed;
    fake::AddItem(msg, type, value);
    return 0;
}

}  // namespace

extern "C" uint32_t AAA_AppendUINTTlvData(TLV_MSG* msg, uint16_t type, uint32_t value) noexcept {
    if (Hit(Event::kAppend)) return kFailed;
    Quiet quiet;
    return Append(msg, type, fake::LittleEndian(value, 4));
}

extern "C" uint32_t AAA_AppendUSHORTTlvData(TLV_MSG* msg, uint16_t type, uint16_t value) noexcept {
    if (Hit(Event::kAppend)) return kFailed;
    Quiet quiet;
    return Append(msg, type, fake::LittleEndian(value, 2));
}

extern "C" uint32_t AAA_AppendUINT64TlvData(TLV_MSG* msg, uint16_t type, uint64_t value) noexcept {
    if (Hit(Event::kAppend)) return kFailed;
    Quiet quiet;
    return Append(msg, type, fake::LittleEndian(value, 8));
}

extern "C" uint32_t AAA_AppendStrTlvData(TLV_MSG* msg, uint16_t type, const char* text) noexcept {
    if (Hit(Event::kAppend) || text == nullptr) return kFailed;
    Quiet quiet;
    return Append(msg, type, std::string(text, std::strlen(text) + 1));
}

extern "C" uint32_t AAA_AppendMACTlvData(TLV_MSG* msg, uint16_t type,
                                         const uint8_t mac[6]) noexcept {
    if (Hit(Event::kAppend) || mac == nullptr) return kFailed;
    Quiet quiet;
    return Append(msg, type, std::string(reinterpret_cast<const char*>(mac), 6));
}

extern "C" uint32_t AAA_AppendSubTlv(TLV_MSG* msg, uint16_t type, TLV_MSG* sub) noexcept {
    if (Hit(Event::kAppend) || sub == nullptr) return kFailed;
    Quiet quiet;
    return Append(msg, type, fake::MakeImage(sub));
}

extern "C" uint32_t AAA_GetUINTTlvValue(TLV_MSG* msg, TLV_ITER* it) noexcept {
    const TLV_ITER* item = fake::Readable(msg, it);
    if (item == nullptr || item->value.size() < 4) return 0;
    return static_cast<uint32_t>(fake::FromLittleEndian(item->value, 0, 4));
}

extern "C" uint64_t AAA_GetUINT64TlvValue(TLV_MSG* msg, TLV_ITER* it) noexcept {
    const TLV_ITER* item = fake::Readable(msg, it);
    if (item == nullptr || item->value.size() < 8) return 0;
    return fake::FromLittleEndian(item->value, 0, 8);
}

extern "C" uint32_t AAA_GetUSHORTTlvValue(TLV_MSG* msg, TLV_ITER* it, uint16_t* value) noexcept {
    const TLV_ITER* item = fake::Readable(msg, it);
    if (item == nullptr || value == nullptr || item->value.size() < 2) return kFailed;
    *value = static_cast<uint16_t>(fake::FromLittleEndian(item->value, 0, 2));
    return 0;
}

extern "C" uint32_t AAA_GetMACTlvValue(TLV_MSG* msg, TLV_ITER* it, uint8_t mac[6]) noexcept {
    const TLV_ITER* item = fake::Readable(msg, it);
    if (item == nullptr || mac == nullptr || item->value.size() < 6) return kFailed;
    std::memcpy(mac, item->value.data(), 6);
    return 0;
}

extern "C" uint32_t AAA_GetStrTlvValue(TLV_MSG* msg, TLV_ITER* it, uint32_t capacity,
                                       char* buffer) noexcept {
    const TLV_ITER* item = fake::Readable(msg, it);
    if (item == nullptr || capacity == 0 || buffer == nullptr) return kFailed;
    const fake::TextReads& failing = fake::failing_text_reads;
    if (failing.result != 0 && item->type == failing.type) return failing.result;
    const size_t text = std::min(item->value.find('\0'), item->value.size());
    const size_t copied = std::min<size_t>(text, capacity - 1);
    std::memcpy(buffer, item->value.data(), copied);
    buffer[copied] = '\0';
    return 0;
}

extern "C" TLV_MSG* AAA_GetSubTlv(TLV_MSG* msg, TLV_ITER* it) noexcept {
    if (Hit(Event::kMessage)) return nullptr;
    Quiet quiet;
    const TLV_ITER* item = fake::Readable(msg, it);
    return item == nullptr ? nullptr : fake::ParseImage(item->value);
}

// The mark is the position of the TLV that is still empty; it counts as an append when it is
// closed.
extern "C" uint32_t AAA_BeginSubTlv(TLV_MSG* msg, uint16_t type, uint32_t* mark) noexcept {
    if (Hit(Event::kMessage) || msg == nullptr || mark == nullptr) return kFailed;
    Quiet quiet;
    TLV_MSG* empty = fake::NewMessage();
    fake::AddItem(msg, type, fake::MakeImage(empty));
    fake::DestroyMessage(empty);
    *mark = static_cast<uint32_t>(msg->items.size() - 1);
    return 0;
}

extern "C" uint32_t AAA_EndSubTlv(TLV_MSG* msg, uint32_t mark) noexcept {
    if (Hit(Event::kAppend) || msg == nullptr || mark >= msg->items.size()) return kFailed;
    Quiet quiet;
    TLV_MSG* sub = fake::NewMessage();
    if (msg->items[mark]->value != fake::MakeImage(sub)) {
        fake::DestroyMessage(sub);
        return kFailed;
    }
    for (size_t i = mark + 1; i < msg->items.size(); ++i) {
        fake::AddItem(sub, msg->items[i]->type, msg->items[i]->value);
        msg->deleted.push_back(std::move(msg->items[i]));
    }
    msg->items.resize(mark + 1);
    msg->items[mark]->value = fake::MakeImage(sub);
    ++msg->changes;
    fake::DestroyMessage(sub);
    return 0;
}
