#include "texts.h"

#include <cstdint>
#include <cstdio>

namespace aaactl {
namespace {

constexpr uint32_t kFirstByteCharacter = 0xF780;
constexpr uint32_t kLastByteCharacter = 0xF7FF;
constexpr uint32_t kByteCharacterBase = 0xF700;

struct Character {
    size_t length;  // 1 for a byte that is no UTF-8
    uint32_t code;
    bool valid;
};

/// The character at `at`, which is inside `text`.
Character CharacterAt(const std::string& text, size_t at) {
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byte(at);
    const Character bad{1, first, false};
    if (first < 0x80) return {1, first, true};
    const size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() - at < length) return bad;
    uint32_t code = first & (0x7F >> length);
    for (size_t i = 1; i < length; ++i) {
        if ((byte(at + i) & 0xC0) != 0x80) return bad;
        code = code << 6 | (byte(at + i) & 0x3F);
    }
    constexpr uint32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < kSmallest[length] || code > 0x10FFFF || surrogate) return bad;
    return {length, code, true};
}

bool IsByteCharacter(uint32_t code) {
    return code >= kFirstByteCharacter && code <= kLastByteCharacter;
}

std::string ByteCharacter(unsigned char byte) {
    const uint32_t code = kByteCharacterBase + byte;
    return {static_cast<char>(0xE0 | code >> 12), static_cast<char>(0x80 | (code >> 6 & 0x3F)),
            static_cast<char>(0x80 | (code & 0x3F))};
}

Json Converted(const Json& document, std::string (*convert)(const std::string&)) {
    if (document.is_string()) return convert(document.get<std::string>());
    if (document.is_array()) {
        Json converted = Json::array();
        for (const Json& item : document) converted.push_back(Converted(item, convert));
        return converted;
    }
    if (!document.is_object()) return document;
    Json converted = Json::object();
    for (const auto& [name, value] : document.items()) {
        converted[convert(name)] = Converted(value, convert);
    }
    return converted;
}

}  // namespace

std::string Printable(const std::string& text) {
    std::string shown;
    for (size_t at = 0; at < text.size();) {
        const Character character = CharacterAt(text, at);
        const bool control = character.code < 0x20 ||
                             (character.code >= 0x7F && character.code < 0xA0) ||
                             character.code == 0x2028 || character.code == 0x2029;
        if (character.valid && !control) {
            shown.append(text, at, character.length);
        } else {
            for (size_t i = 0; i < character.length; ++i) {
                char escaped[5];
                snprintf(escaped, sizeof escaped, "\\x%02x",
                         static_cast<unsigned char>(text[at + i]));
                shown += escaped;
            }
        }
        at += character.length;
    }
    return shown;
}

std::string ToJsonText(const std::string& bytes) {
    std::string text;
    for (size_t at = 0; at < bytes.size();) {
        const Character character = CharacterAt(bytes, at);
        if (character.valid && !IsByteCharacter(character.code)) {
            text.append(bytes, at, character.length);
            at += character.length;
        } else {
            text += ByteCharacter(static_cast<unsigned char>(bytes[at]));
            ++at;
        }
    }
    return text;
}

std::string FromJsonText(const std::string& text) {
    std::string bytes;
    for (size_t at = 0; at < text.size();) {
        const Character character = CharacterAt(text, at);
        if (character.valid && IsByteCharacter(character.code)) {
            bytes += static_cast<char>(character.code - kByteCharacterBase);
        } else {
            bytes.append(text, at, character.length);
        }
        at += character.length;
    }
    return bytes;
}

Json ToJsonTexts(const Json& document) {
    return Converted(document, ToJsonText);
}

Json FromJsonTexts(const Json& document) {
    return Converted(document, FromJsonText);
}

}  // namespace aaactl
