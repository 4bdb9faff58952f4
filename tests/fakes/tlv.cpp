#include <platform/tlv.h>

#include <algorithm>
#include <cstring>

#include "fakes/message.h"
#include "fakes/state.h"

using fake::Event;
using fake::Hit;
using fake::kFailed;
using fake::Quiet;

extern "C" TLV_MSG* TLV_Create(void) noexcept {
    if (Hit(Event::kMessage)) return nullptr;
    return fake::NewMessage();
}

extern "C" void TLV_Destroy(TLV_MSG* msg) noexcept {
    fake::DestroyMessage(msg);
}

extern "C" TLV_ITER* TLV_GetFirst(TLV_MSG* msg) noexcept {
    return msg == nullptr ? nullptr : fake::HandOut(msg, 0);
}

extern "C" TLV_ITER* TLV_GetNext(TLV_MSG* msg, TLV_ITER* it) noexcept {
    if (fake::Readable(msg, it) == nullptr) return nullptr;
    for (size_t i = 0; i < msg->items.size(); ++i) {
        if (msg->items[i].get() == it) return fake::HandOut(msg, i + 1);
    }
    return nullptr;
}

extern "C" TLV_ITER* TLV_GetIteratorByType(TLV_MSG* msg, uint16_t type) noexcept {
    if (msg == nullptr) return nullptr;
    for (size_t i = 0; i < msg->items.size(); ++i) {
        if (msg->items[i]->type == type) return fake::HandOut(msg, i);
    }
    return nullptr;
}

extern "C" uint16_t TLV_GetTypeByIterator(TLV_MSG* msg, TLV_ITER* it) noexcept {
    const TLV_ITER* item = fake::Readable(msg, it);
    return item == nullptr ? uint16_t{0} : item->type;
}

extern "C" uint32_t TLV_GetLenByIterator(TLV_MSG* msg, TLV_ITER* it) noexcept {
    const TLV_ITER* item = fake::Readable(msg, it);
    return item == nullptr ? 0 : static_cast<uint32_t>(item->value.size());
}

extern "C" uint32_t TLV_GetValueByIterator(TLV_MSG* msg, TLV_ITER* it, uint32_t length,
                                           void* buffer) noexcept {
    const TLV_ITER* item = fake::Readable(msg, it);
    if (item == nullptr || buffer == nullptr) return kFailed;
    std::memcpy(buffer, item->value.data(), std::min<size_t>(length, item->value.size()));
    return 0;
}

extern "C" uint32_t TLV_GetUINTByIterator(TLV_MSG* msg, TLV_ITER* it) noexcept {
    const TLV_ITER* item = fake::Readable(msg, it);
    if (item == nullptr || item->value.size() < 4) return 0;
    return static_cast<uint32_t>(fake::FromLittleEndian(item->value, 0, 4));
}

extern "C" uint32_t TLV_Append_Data(TLV_MSG* msg, uint16_t type, uint32_t length,
                                    const void* data) noexcept {
    if (Hit(Event::kAppend)) return kFailed;
    if (msg == nullptr || (data == nullptr && length != 0)) return kFailed;
    Quiet quiet;
    fake::AddItem(msg, type, std::string(static_cast<const char*>(data), length));
    return 0;
}

extern "C" uint32_t TLV_Append_UINT(TLV_MSG* msg, uint16_t type, uint32_t value) noexcept {
    if (Hit(Event::kAppend)) return kFailed;
    if (msg == nullptr) return kFailed;
    Quiet quiet;
    fake::AddItem(msg, type, fake::LittleEndian(value, 4));
    return 0;
}

extern "C" uint32_t TLV_Delete_Data(TLV_MSG* msg, TLV_ITER* it) noexcept {
    if (fake::Readable(msg, it) == nullptr) return kFailed;
    Quiet quiet;
    for (size_t i = 0; i < msg->items.size(); ++i) {
        if (msg->items[i].get() != it) continue;
        msg->deleted.push_back(std::move(msg->items[i]));
        msg->items.erase(msg->items.begin() + static_cast<std::ptrdiff_t>(i));
        ++msg->changes;
        return 0;
    }
    return kFailed;
}

extern "C" uint32_t TLV_GetMsgLen(TLV_MSG* msg, uint32_t form) noexcept {
    if (msg == nullptr || (form != TLV_FORM_DESCRIPTOR && form != TLV_FORM_BUFFER)) return 0;
    Quiet quiet;
    return static_cast<uint32_t>(fake::MakeImage(msg).size());
}

extern "C" uint32_t TLV_Flush(TLV_MSG* msg, uint32_t form, uint32_t wait_or_max,
                              uintptr_t fd_or_buffer) noexcept {
    if (Hit(Event::kFlush)) return 0;
    if (msg == nullptr) return 0;
    Quiet quiet;
    const std::string image = fake::MakeImage(msg);
    if (form == TLV_FORM_DESCRIPTOR) {
        return fake::FlushToDescriptor(static_cast<int32_t>(fd_or_buffer), wait_or_max, image);
    }
    if (form == TLV_FORM_BUFFER) fake::NoteBufferFlush(wait_or_max);
    if (form != TLV_FORM_BUFFER || fd_or_buffer == 0 || image.size() > wait_or_max) return 0;
    std::memcpy(reinterpret_cast<void*>(fd_or_buffer), image.data(), image.size());
    return static_cast<uint32_t>(image.size());
}

extern "C" TLV_MSG* TLV_CreateReceiveMsg(uint32_t form, uintptr_t fd_or_buffer,
                                         uint32_t wait_or_length) noexcept {
    if (Hit(Event::kMessage)) return nullptr;
    Quiet quiet;
    std::string image;
    if (form == TLV_FORM_DESCRIPTOR) {
        if (!fake::ReceiveFromDescriptor(static_cast<int32_t>(fd_or_buffer), wait_or_length,
                                         image)) {
            return nullptr;
        }
    } else if (form == TLV_FORM_BUFFER && fd_or_buffer != 0) {
        image.assign(reinterpret_cast<const char*>(fd_or_buffer), wait_or_length);
    }
    return fake::ParseImage(image);
}
