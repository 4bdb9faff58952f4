#include "dbm/file_check.h"

#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <vector>

#include "dbm/damage_guard.h"

namespace aaadom::dbm {

namespace {

/* The file layout of LMDB 0.9 on a 64-bit little-endian host. */
constexpr uint32_t kMagic = 0xBEEFC0DE;
constexpr uint32_t kDataVersion = 1;
enum : uint16_t { kBranch = 0x01, kLeaf = 0x02, kOverflow = 0x04, kMetaPage = 0x08 };
enum : uint16_t { kBigData = 0x01, kSubData = 0x02 };
constexpr uint16_t kIntegerKey = 0x08;
/* LMDB keeps the low environment flags here; a new file is made with MDB_NOSUBDIR. */
constexpr uint16_t kHarmlessFlags = MDB_NOSUBDIR;
/* What a process can map; with more, opening would fail for want of memory, which is no damage. */
constexpr uint64_t kLargestFile = uint64_t{1} << 46;
constexpr uint64_t kNoPage = ~uint64_t{0};
/* A configuration is far smaller; of a large file of records the first part. */
constexpr off_t kReadAhead = off_t{64} << 20;
constexpr unsigned kMaxDepth = 32;
constexpr size_t kMaxKey = 511;
/* The keys of the list of free pages. */
constexpr size_t kTransactionKey = sizeof(uint64_t);

struct Tree {
    uint32_t pad;
    uint16_t flags;
    uint16_t depth;
    uint64_t branch_pages;
    uint64_t leaf_pages;
    uint64_t overflow_pages;
    uint64_t entries;
    uint64_t root;
};
static_assert(sizeof(Tree) == 48);

struct PageHeader {
    uint64_t number;
    uint16_t pad;
    uint16_t flags;
    uint16_t lower; /* with upper: page count of an overflow run */
    uint16_t upper;
};
static_assert(sizeof(PageHeader) == 16);

struct MetaPage {
    PageHeader header;
    uint32_t magic;
    uint32_t version;
    uint64_t address;
    uint64_t map_size;
    Tree free_list; /* its pad is the page size */
    Tree main;
    uint64_t last_page;
    uint64_t transaction;
};
static_assert(sizeof(MetaPage) == 152);

struct Node {
    uint16_t low;
    uint16_t high;
    uint16_t flags;
    uint16_t key_size;
};
static_assert(sizeof(Node) == 8);

bool ReadExactly(int fd, void* to, size_t size, uint64_t offset) {
    ssize_t got;
    do {
        got = pread(fd, to, size, static_cast<off_t>(offset));
    } while (got < 0 && errno == EINTR);
    return got == static_cast<ssize_t>(size);
}

bool MetaIsSound(const MetaPage& meta) {
    const uint32_t size = meta.free_list.pad;
    return meta.magic == kMagic && meta.version == kDataVersion &&
           (meta.header.flags & kMetaPage) != 0 && size >= 512 && size <= 65536 &&
           (size & (size - 1)) == 0 && (meta.free_list.flags & ~kHarmlessFlags) == kIntegerKey &&
           meta.main.flags == 0 && meta.last_page >= 1 && meta.last_page < kLargestFile / size;
}

/* Both meta pages; the second one lies one page size behind the first. */
bool ReadMetas(int fd, MetaPage metas[2]) {
    if (!ReadExactly(fd, &metas[0], sizeof metas[0], 0) || !MetaIsSound(metas[0])) return false;
    const uint64_t size = metas[0].free_list.pad;
    return ReadExactly(fd, &metas[1], sizeof metas[1], size) && MetaIsSound(metas[1]) &&
           metas[1].free_list.pad == size;
}

enum class Contents { kFreeList, kDirectory, kTable };

class Walker {
  public:
    Walker(int fd, uint64_t file_size, const MetaPage& meta)
        : fd_(fd),
          page_size_(meta.free_list.pad),
          last_page_(meta.last_page),
          pages_in_file_(file_size / page_size_),
          seen_(last_page_ + 1 < pages_in_file_ ? last_page_ + 1 : pages_in_file_) {}

    bool Check(const MetaPage& meta) {
        if (!CheckTree(meta.main, Contents::kDirectory)) return false;
        if (!CheckTree(meta.free_list, Contents::kFreeList)) return false;
        /* A page that is both free and in use would be overwritten by the next commit. */
        for (const uint64_t page : free_pages_)
            if (page < seen_.size() && seen_[page]) return false;
        return true;
    }

  private:
    /* The tree's keys ascend strictly, the separators of its branches among them: LMDB's searches
     * and its rebalancing may run astray otherwise. */
    struct Order {
        uint64_t count = 0;
        bool any = false;
        std::string last;      /* the last leaf key */
        std::string separator; /* the next leaf key is not below it */

        static int Compare(const std::string& a, const std::string& b, Contents contents) {
            if (contents != Contents::kFreeList) return a.compare(b);
            uint64_t left, right;
            memcpy(&left, a.data(), sizeof left);
            memcpy(&right, b.data(), sizeof right);
            return left < right ? -1 : left > right;
        }
        /* Left of a separator lies a key at least. */
        bool Separate(std::string key, Contents contents) {
            if (Compare(last, key, contents) >= 0) return false;
            separator = std::move(key);
            return true;
        }
        bool Take(std::string key, Contents contents) {
            if (any && Compare(last, key, contents) >= 0) return false;
            if (!separator.empty() && Compare(separator, key, contents) > 0) return false;
            last = std::move(key);
            any = true;
            ++count;
            return true;
        }
    };

    bool CheckTree(const Tree& tree, Contents contents) {
        if (tree.root == kNoPage) return tree.entries == 0 && tree.depth == 0;
        if (tree.depth == 0 || tree.depth > kMaxDepth) return false;
        Order order;
        return CheckPage(tree.root, tree.depth, contents, &order) && order.count == tree.entries;
    }

    /* Each page is reached once, and lies inside the file. */
    bool Claim(uint64_t first, uint64_t count) {
        if (first < 2 || count > seen_.size() || first > seen_.size() - count) return false;
        for (uint64_t page = first; page < first + count; ++page) {
            if (seen_[page]) return false;
            seen_[page] = true;
        }
        return true;
    }

    bool CheckPage(uint64_t number, unsigned depth, Contents contents, Order* order) {
        if (!Claim(number, 1)) return false;
        std::vector<uint8_t> page(page_size_);
        if (!ReadExactly(fd_, page.data(), page_size_, number * page_size_)) return false;
        PageHeader header;
        memcpy(&header, page.data(), sizeof header);
        const uint16_t wanted = depth == 1 ? kLeaf : kBranch;
        if (header.number != number || header.flags != wanted) return false;
        if (header.lower < sizeof header || header.lower % 2 != 0 || header.lower > header.upper ||
            header.upper > page_size_)
            return false;
        const size_t count = (header.lower - sizeof header) / 2;
        if (count < (depth == 1 ? 1u : 2u)) return false;
        for (size_t i = 0; i < count; ++i) {
            uint16_t at;
            memcpy(&at, page.data() + sizeof header + 2 * i, sizeof at);
            if (at < header.upper || at % 2 != 0 || at + sizeof(Node) > page_size_) return false;
            Node node;
            memcpy(&node, page.data() + at, sizeof node);
            const size_t key_end = at + sizeof(Node) + node.key_size;
            if (key_end > page_size_ || node.key_size > kMaxKey) return false;
            std::string key(reinterpret_cast<const char*>(page.data()) + at + sizeof(Node),
                            node.key_size);
            const bool is_key =
                contents == Contents::kFreeList ? key.size() == kTransactionKey : !key.empty();
            if (depth > 1) {
                const uint64_t child =
                    node.low | uint64_t{node.high} << 16 | uint64_t{node.flags} << 32;
                if (i > 0 && (!is_key || !order->Separate(key, contents))) return false;
                if (!CheckPage(child, depth - 1, contents, order)) return false;
            } else if (!is_key || !order->Take(key, contents) ||
                       !CheckLeafNode(node, page.data() + at + sizeof(Node), page_size_ - key_end,
                                      contents)) {
                return false;
            }
        }
        return true;
    }

    bool CheckLeafNode(const Node& node, const uint8_t* key, size_t room, Contents contents) {
        const uint32_t size = node.low | uint32_t{node.high} << 16;
        const uint8_t* data = key + node.key_size;
        if (size > INT32_MAX) return false;
        if (contents == Contents::kDirectory) {
            if (node.flags != kSubData || size != sizeof(Tree) || size > room) return false;
            Tree tree;
            memcpy(&tree, data, sizeof tree);
            return tree.flags == 0 && CheckTree(tree, Contents::kTable);
        }
        std::vector<uint8_t> list;
        if (node.flags == kBigData) {
            uint64_t first;
            if (room < sizeof first) return false;
            memcpy(&first, data, sizeof first);
            if (!CheckOverflow(first, size)) return false;
            if (contents != Contents::kFreeList) return true;
            list.resize(size);
            if (!ReadExactly(fd_, list.data(), size, first * page_size_ + sizeof(PageHeader)))
                return false;
            data = list.data();
        } else if (node.flags != 0 || size > room) {
            return false;
        }
        return contents != Contents::kFreeList || CheckFreePages(data, size);
    }

    bool CheckOverflow(uint64_t first, uint32_t size) {
        if (first < 2 || first >= seen_.size()) return false;
        PageHeader header;
        if (!ReadExactly(fd_, &header, sizeof header, first * page_size_)) return false;
        const uint64_t count = header.lower | uint64_t{header.upper} << 16;
        return header.number == first && header.flags == kOverflow &&
               count == (sizeof header + uint64_t{size} + page_size_ - 1) / page_size_ &&
               Claim(first, count);
    }

    /* One free-list record: a count, then page numbers in descending order. */
    bool CheckFreePages(const uint8_t* data, uint32_t size) {
        uint64_t count;
        if (size < sizeof count) return false;
        memcpy(&count, data, sizeof count);
        if (count > size / sizeof count - 1) return false;
        uint64_t above = last_page_ + 1;
        for (uint64_t i = 1; i <= count; ++i) {
            uint64_t page;
            memcpy(&page, data + i * sizeof page, sizeof page);
            if (page < 2 || page >= above) return false;
            free_pages_.push_back(page);
            above = page;
        }
        return true;
    }

    const int fd_;
    const size_t page_size_;
    const uint64_t last_page_;
    const uint64_t pages_in_file_;
    std::vector<bool> seen_;
    std::vector<uint64_t> free_pages_;
};

}  // namespace

int CheckFileHeader(const std::string& data_file) {
    const int fd = open(data_file.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return errno;
    MetaPage metas[2];
    const bool sound = ReadMetas(fd, metas);
    close(fd);
    return sound ? 0 : kDamagedFile;
}

int ReadFileStamp(MDB_env* env, uint32_t page_size, FileStamp* stamp) {
    int fd;
    if (int code = mdb_env_get_fd(env, &fd)) return code;
    struct stat status;
    if (fstat(fd, &status) != 0) return errno;
    if (status.st_nlink == 0) return kRemovedFile;
    stamp->size = static_cast<uint64_t>(status.st_size);
    stamp->seconds = status.st_ctim.tv_sec;
    stamp->nanoseconds = status.st_ctim.tv_nsec;
    return stamp->size < 2 * uint64_t{page_size} ? kDamagedFile : 0;
}

int CheckFileStructure(MDB_env* env) {
    int fd;
    if (int code = mdb_env_get_fd(env, &fd)) return code;
    /* After a boot: in one go instead of a wait for the disk at each page. */
    (void)posix_fadvise(fd, 0, kReadAhead, POSIX_FADV_WILLNEED);
    /* Two commits of another process between the begin and the read overwrite the snapshot's meta
     * page; the next try takes a newer snapshot. */
    for (int attempt = 0; attempt < 100; ++attempt) {
        MDB_txn* txn;
        if (int code = GuardedBegin(env, MDB_RDONLY, &txn)) return code;
        MetaPage metas[2];
        int code = ReadMetas(fd, metas) ? EAGAIN : kDamagedFile;
        for (const MetaPage& meta : metas) {
            if (code != EAGAIN || meta.transaction != mdb_txn_id(txn)) continue;
            struct stat status;
            code = fstat(fd, &status) != 0 ? errno : 0;
            if (code == 0) {
                try {
                    Walker walker(fd, static_cast<uint64_t>(status.st_size), meta);
                    code = walker.Check(meta) ? 0 : kDamagedFile;
                } catch (...) {
                    code = ENOMEM;
                }
            }
            break;
        }
        mdb_txn_abort(txn);
        if (code != EAGAIN) return code;
    }
    return EAGAIN;
}

}  // namespace aaadom::dbm
