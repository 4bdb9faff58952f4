// Replays files through a target in an ordinary build: every file of the directories given, or the
// files themselves. Fails when one cannot be read, or when a directory holds none.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int* argc, char*** argv);

namespace {

bool Replay(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    if (!file.is_open() || file.bad()) {
        std::cerr << path.string() << ": cannot be read\n";
        return false;
    }
    // Whoever looks for the input that ended the program finds it in the last line.
    std::cerr << path.string() << std::endl;
    // A copy of exactly that size, so that a sanitizer sees a read behind it.
    const std::vector<uint8_t> input(bytes.begin(), bytes.end());
    (void)LLVMFuzzerTestOneInput(input.data(), input.size());
    return true;
}

int ReplayDirectory(const std::filesystem::path& directory) {
    int replayed = 0;
    for (const auto& entry : std::filesystem::directory_iterator(directory)) {
        if (!entry.is_regular_file()) continue;
        if (!Replay(entry.path())) return -1;
        ++replayed;
    }
    if (replayed == 0) std::cerr << directory.string() << ": holds no input\n";
    return replayed == 0 ? -1 : replayed;
}

}  // namespace

int main(int argc, char** argv) {
    if (LLVMFuzzerInitialize != nullptr) (void)LLVMFuzzerInitialize(&argc, &argv);
    int replayed = 0;
    for (int i = 1; i < argc; ++i) {
        std::error_code error;
        int count = 1;
        if (std::filesystem::is_directory(argv[i], error)) {
            count = ReplayDirectory(argv[i]);
        } else if (!Replay(argv[i])) {
            count = -1;
        }
        if (count < 0) return 1;
        replayed += count;
    }
    std::cout << replayed << " inputs replayed\n";
    return replayed == 0 ? 2 : 0;
}
