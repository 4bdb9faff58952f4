/* The bytes of a closed data file, and where its parts lie. Offsets count from the file's begin. */
#ifndef TESTS_PLATFORM_DBM_STORED_FILE_H
#define TESTS_PLATFORM_DBM_STORED_FILE_H

#include <stdint.h>
#include <string.h>

#include <fstream>
#include <string>
#include <vector>

class StoredFile {
  public:
    static constexpr size_t kPage = 4096;
    static constexpr uint16_t kBigData = 1; /* of a node: the value lies in pages of its own */

    explicit StoredFile(const std::string& path) {
        std::ifstream file(path, std::ios::binary | std::ios::ate);
        bytes_.resize(static_cast<size_t>(file.tellg()));
        file.seekg(0);
        file.read(bytes_.data(), static_cast<std::streamsize>(bytes_.size()));
    }
    void Write(const std::string& path) const {
        std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes_;
    }
    size_t Pages() const { return bytes_.size() / kPage; }
    bool operator==(const StoredFile& other) const { return bytes_ == other.bytes_; }

    template <class Number>
    Number At(size_t offset) const {
        Number number{};
        if (offset + sizeof number <= bytes_.size())
            memcpy(&number, bytes_.data() + offset, sizeof number);
        return number;
    }
    uint16_t U16(size_t offset) const { return At<uint16_t>(offset); }
    uint64_t U64(size_t offset) const { return At<uint64_t>(offset); }
    template <class Number>
    void Put(size_t offset, Number number) {
        memcpy(&bytes_.at(offset), &number, sizeof number);
    }
    void Put16(size_t offset, size_t number) { Put(offset, static_cast<uint16_t>(number)); }
    void Put32(size_t offset, size_t number) { Put(offset, static_cast<uint32_t>(number)); }
    void Put64(size_t offset, uint64_t number) { Put(offset, number); }
    void Copy(size_t to, size_t from, size_t size) {
        memmove(&bytes_.at(to), &bytes_.at(from), size);
    }

    /* Of a meta page. */
    enum : size_t {
        kMagic = 16,
        kVersion = 20,
        kFreeList = 40,
        kPageSize = 40,
        kFreeListFlags = 44,
        kMainFlags = 92,
        kMain = 88,
        kLastPage = 136,
        kTransaction = 144,
    };
    size_t NewestMeta() const { return U64(kPage + kTransaction) > U64(kTransaction) ? kPage : 0; }

    /* Of a tree's description. */
    enum : size_t { kTreeFlags = 4, kDepth = 6, kEntries = 32, kRoot = 40 };
    size_t Directory() const { return NewestMeta() + kMain; }
    size_t FreeList() const { return NewestMeta() + kFreeList; }
    /* The first table's: its value lies in the directory. */
    size_t Table() const { return Value(Nodes(Root(Directory())).front()); }
    size_t Root(size_t tree) const { return U64(tree + kRoot) * kPage; }

    /* Of a page. */
    enum : size_t { kPageFlags = 10, kLower = 12, kUpper = 14, kPointers = 16 };
    std::vector<size_t> Nodes(size_t page) const {
        std::vector<size_t> nodes;
        for (size_t at = page + kPointers; at < page + U16(page + kLower); at += 2)
            nodes.push_back(page + U16(at));
        return nodes;
    }

    /* Of a node. */
    enum : size_t { kLow = 0, kHigh = 2, kNodeFlags = 4, kKeySize = 6, kKey = 8 };
    size_t Value(size_t node) const { return node + kKey + U16(node + kKeySize); }
    uint32_t ValueSize(size_t node) const { return At<uint32_t>(node); }
    size_t Child(size_t node) const { return size_t{At<uint32_t>(node)} * kPage; }

    std::vector<size_t> Leaves(size_t tree) const {
        if (U16(tree + kDepth) == 1) return {Root(tree)};
        std::vector<size_t> leaves;
        for (size_t node : Nodes(Root(tree))) leaves.push_back(Child(node));
        return leaves;
    }
    /* The nodes of a tree's leaves that hold their value in pages of its own, or in the leaf. */
    std::vector<size_t> LeafNodes(size_t tree, bool big) const {
        std::vector<size_t> found;
        for (size_t leaf : Leaves(tree))
            for (size_t node : Nodes(leaf))
                if ((U16(node + kNodeFlags) == kBigData) == big) found.push_back(node);
        return found;
    }

  private:
    std::string bytes_;
};

#endif
