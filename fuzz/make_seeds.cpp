// make-fuzz-seeds GOLDEN SEEDS
//
// Turns the golden files (*.hex) of directory GOLDEN into inputs of the targets:
// SEEDS/<target>/<name>.
#include <aaadom/codes.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <map>
#include <string>

#include "command_line.h"
#include "golden/hex_file.h"
#include "message.h"
#include "stored_keys.h"

namespace {

using fuzz::kMark;

std::string Little16(size_t number) {
    return {static_cast<char>(number & 0xFF), static_cast<char>(number >> 8 & 0xFF)};
}

uint32_t NumberAt(const std::string& bytes, size_t at, size_t size) {
    uint32_t number = 0;
    for (size_t i = 0; i < size; ++i)
        number |= static_cast<uint32_t>(static_cast<uint8_t>(bytes[at + i])) << (8 * i);
    return number;
}

bool IsImage(const std::string& bytes) {
    return bytes.size() >= 8 && bytes.compare(0, 4, std::string("TV\1\0", 4)) == 0 &&
           NumberAt(bytes, 4, 4) == bytes.size() - 8;
}

/// The sketch of an image; what is too long for one is cut.
std::string Sketch(const std::string& image) {
    std::string sketch;
    for (size_t at = 8; at + 6 <= image.size();) {
        const size_t length = NumberAt(image, at + 2, 4);
        std::string value = image.substr(at + 6, length);
        const bool nested = IsImage(value);
        if (nested) value = Sketch(value);
        value.resize(std::min<size_t>(value.size(), kMark - 1u));
        sketch += image.substr(at, 2) + Little16(value.size() | (nested ? kMark : 0)) + value;
        at += 6 + length;
    }
    return sketch;
}

std::string WithLength(const std::string& bytes, bool is_image) {
    return Little16(bytes.size() | (is_image ? kMark : 0)) + bytes;
}

bool Write(const std::filesystem::path& seeds, const std::string& target, const std::string& name,
           const std::string& bytes) {
    std::error_code error;
    std::filesystem::create_directories(seeds / target, error);
    std::ofstream file(seeds / target / name, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return static_cast<bool>(file);
}

/// An input of the command line target: the words, no document, one answer to everything.
std::string Command(const std::string& line, char way, const std::string& answer) {
    return line + std::string("\n\0", 2) + way + answer;
}

/// An input of the target of stored values: the key, plainly stored, the value.
bool WriteStored(const std::filesystem::path& seeds, const std::string& name,
                 const std::string& bytes) {
    for (size_t i = std::size(fuzz::kStoredKeys); i-- > 0;) {
        const fuzz::StoredKey& key = fuzz::kStoredKeys[i];
        if (!name.starts_with(key.golden)) continue;
        const bool is_message = key.value == fuzz::StoredKey::Value::kMessage;
        const std::string value = is_message ? Sketch(bytes) : bytes;
        return Write(seeds, "stored", name,
                     static_cast<char>(i) + std::string(1, '\0') + WithLength(value, false));
    }
    return true;
}

const std::string kAllDecoders("\0\xFF", 2);

/// The first byte says what to do, the second is the operation.
std::string Requests(const std::string& message) {
    const std::string domain("\x02\0\x05\0corp\0", 9);
    const std::string create = std::string("\0\0\4\0\3\0\0\0", 8) + domain;
    std::string requests;
    for (const char operation : {DOM_OP_SET, DOM_OP_GET, DOM_OP_GET_NEXT, DOM_OP_DELETE})
        requests += std::string("\x08", 1) + operation + message;
    return std::string("\x08\0", 2) + WithLength(create, false) + requests;
}

/// As an access module sends it, after its record switch is set.
std::string Reports(const std::string& message) {
    const std::string all_on("\x08\0\x08\0\0\0\4\0\x4E\0\0\0", 12);
    return all_on + std::string("\1\0", 2) + message;
}

/// What the command line reads from a reply; the others are answers of no sense to it.
bool IsAnswer(const std::string& name) {
    return name.starts_with("msg_000") || name.starts_with("reply_");
}

bool WriteMessage(const std::filesystem::path& seeds, const std::string& name,
                  const std::string& image) {
    const std::string sketch = WithLength(Sketch(image), false);
    return Write(seeds, "tlv", name, WithLength(image, true)) &&
           Write(seeds, "tlv", name + "_sketch", sketch) &&
           Write(seeds, "decoders", name, kAllDecoders + sketch) &&
           Write(seeds, "restore", name, Requests(sketch)) &&
           Write(seeds, "endpoint", name, Requests(sketch)) &&
           Write(seeds, "endpoint", name + "_record", Reports(sketch)) &&
           (!IsAnswer(name) ||
            Write(seeds, "ctl", name, Command("domain show corp", fuzz::kAnswerData, sketch)));
}

bool WriteSeeds(const std::filesystem::path& seeds, const std::string& name,
                const std::string& bytes) {
    bool written = true;
    if (IsImage(bytes)) written = WriteMessage(seeds, name, bytes);
    if (name.starts_with("stored_user_record")) written &= Write(seeds, "stlv", name, bytes);
    if (name.starts_with("db_ita_policy_old")) written &= Write(seeds, "old_policy", name, bytes);
    return written && WriteStored(seeds, name, bytes);
}

/// The commands of a transcript, a few of each kind, to a daemon.
bool WriteCommands(const std::filesystem::path& seeds, const std::filesystem::path& transcript,
                   std::map<std::string, int>& kinds) {
    constexpr int kOfEachKind = 1;
    std::ifstream file(transcript);
    for (std::string line; std::getline(file, line);) {
        if (!line.starts_with("$ ")) continue;
        line.erase(0, 2);
        std::erase(line, '"');
        std::erase(line, '\'');
        std::string kind = line.substr(0, line.find(' ', line.find(' ', line.find(' ') + 1) + 1));
        const int number = ++kinds[kind];
        if (number > kOfEachKind) continue;
        std::replace_if(
            kind.begin(), kind.end(), [](char c) { return isalnum(c) == 0; }, '_');
        if (!Write(seeds, "ctl", kind + "_" + std::to_string(number),
                   Command(line, fuzz::kAnswerReal, "")))
            return false;
    }
    return !kinds.empty();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        fprintf(stderr, "usage: make-fuzz-seeds GOLDEN TRANSCRIPTS SEEDS\n");
        return 2;
    }
    const std::filesystem::path seeds = argv[3];
    std::filesystem::remove_all(seeds);  // those of files that are no longer there
    int made = 0;
    for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
        if (entry.path().extension() != ".hex") continue;
        const std::string name = entry.path().stem();
        const std::string bytes = golden::ReadHexFile(name);
        if (bytes.empty() || !WriteSeeds(seeds, name, bytes)) {
            fprintf(stderr, "make-fuzz-seeds: %s cannot be turned into seeds\n", name.c_str());
            return 1;
        }
        ++made;
    }
    std::map<std::string, int> kinds;
    for (const auto& entry : std::filesystem::directory_iterator(argv[2])) {
        if (entry.path().extension() == ".transcript" &&
            !WriteCommands(seeds, entry.path(), kinds)) {
            fprintf(stderr, "make-fuzz-seeds: %s has no commands\n", entry.path().c_str());
            return 1;
        }
    }
    return made == 0 || kinds.empty();
}
