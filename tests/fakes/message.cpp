#include "fakes/message.h"

#include <set>

#include "fakes/state.h"

namespace fake {
namespace {
constexpr size_t kImageHeader = 8;
constexpr size_t kTlvHeader = 6;

std::set<const TLV_MSG*>& Live() {
    static auto* live = new std::set<const TLV_MSG*>;
    return *live;
}
}  // namespace

TLV_MSG* NewMessage() {
    Inside inside;
    auto* msg = new TLV_MSG;
    Live().insert(msg);
    NoteMessage(1);
    return msg;
}

void DestroyMessage(TLV_MSG* msg) {
    if (msg == nullptr) return;
    Inside inside;
    if (Live().erase(msg) == 0) {
        NoteMisuse("TLV_Destroy of something that is no live message");
        return;
    }
    delete msg;
    NoteMessage(-1);
}

void AddItem(TLV_MSG* msg, uint16_t type, const std::string& value) {
    msg->items.push_back(std::make_unique<TLV_ITER>(TLV_ITER{msg, type, value, 0}));
    ++msg->changes;
}

TLV_ITER* HandOut(TLV_MSG* msg, size_t index) {
    if (index >= msg->items.size()) return nullptr;
    TLV_ITER* it = msg->items[index].get();
    it->handed_out_at = msg->changes;
    return it;
}

TLV_ITER* Readable(TLV_MSG* msg, TLV_ITER* it) {
    if (msg == nullptr || it == nullptr) return nullptr;
    if (it->owner != msg) {
        NoteMisuse("an iterator used with another message than its own");
        return nullptr;
    }
    if (it->handed_out_at != msg->changes) {
        NoteMisuse("an iterator used after an append or delete");
        return nullptr;
    }
    return it;
}

std::string LittleEndian(uint64_t value, int bytes) {
    std::string out;
    for (int i = 0; i < bytes; ++i) out.push_back(static_cast<char>(value >> (8 * i) & 0xFF));
    return out;
}

uint64_t FromLittleEndian(const std::string& bytes, size_t offset, int count) {
    uint64_t value = 0;
    for (int i = 0; i < count; ++i) {
        value |= static_cast<uint64_t>(static_cast<uint8_t>(bytes[offset + static_cast<size_t>(i)]))
                 << (8 * i);
    }
    return value;
}

std::string MakeImage(const TLV_MSG* msg) {
    std::string body;
    for (const auto& item : msg->items) {
        body += LittleEndian(item->type, 2) + LittleEndian(item->value.size(), 4) + item->value;
    }
    return std::string("TV\x01\x00", 4) + LittleEndian(body.size(), 4) + body;
}

TLV_MSG* ParseImage(const std::string& image) {
    if (image.size() < kImageHeader || image.compare(0, 4, std::string("TV\x01\x00", 4)) != 0) {
        return nullptr;
    }
    if (FromLittleEndian(image, 4, 4) != image.size() - kImageHeader) return nullptr;
    std::vector<std::pair<uint16_t, std::string>> found;
    for (size_t at = kImageHeader; at < image.size();) {
        if (image.size() - at < kTlvHeader) return nullptr;
        const auto type = static_cast<uint16_t>(FromLittleEndian(image, at, 2));
        const uint64_t length = FromLittleEndian(image, at + 2, 4);
        at += kTlvHeader;
        if (length > image.size() - at) return nullptr;
        found.emplace_back(type, image.substr(at, length));
        at += length;
    }
    TLV_MSG* msg = NewMessage();
    for (const auto& [type, value] : found) AddItem(msg, type, value);
    return msg;
}

TLV_MSG* Parse(const std::string& image) {
    Quiet quiet;
    return ParseImage(image);
}
std::string ImageOf(TLV_MSG* msg) {
    Quiet quiet;
    return msg == nullptr ? std::string() : MakeImage(msg);
}

}  // namespace fake
