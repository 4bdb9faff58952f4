// Golden files: bytes as hexadecimal digits, blanks between, '#' starts a comment.
#pragma once

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace golden {

inline std::string PathOf(const std::string& name) {
    return std::string(AAADOM_SOURCE_DIR) + "/tests/golden/" + name + ".hex";
}

/// The bytes of a golden file; empty when it cannot be read or holds anything but whole bytes.
inline std::string ReadHexFile(const std::string& name) {
    std::ifstream file(PathOf(name));
    std::string digits;
    for (std::string line; std::getline(file, line);) {
        for (const char c : line.substr(0, line.find('#'))) {
            if (std::isxdigit(static_cast<unsigned char>(c))) {
                digits += c;
            } else if (!std::isspace(static_cast<unsigned char>(c))) {
                return {};
            }
        }
    }
    if (digits.size() % 2 != 0) return {};
    std::string bytes;
    for (size_t i = 0; i < digits.size(); i += 2) {
        bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
    }
    return bytes;
}

/// Bytes in the digits of a golden file, for messages of failing tests.
inline std::string ToHex(const std::string& bytes) {
    static const char* const digits = "0123456789abcdef";
    std::string text;
    for (const char c : bytes) {
        text += digits[static_cast<unsigned char>(c) >> 4];
        text += digits[static_cast<unsigned char>(c) & 15];
        text += ' ';
    }
    return text;
}

/// The files of all messages, sorted.
inline std::vector<std::string> MessageFiles() {
    std::vector<std::string> names;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::string(AAADOM_SOURCE_DIR) + "/tests/golden")) {
        const std::string name = entry.path().stem();
        if (entry.path().extension() == ".hex" && name.rfind("msg_", 0) == 0) names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace golden
