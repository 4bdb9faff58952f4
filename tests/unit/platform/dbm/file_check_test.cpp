/* A database whose file is damaged in one place is refused when it is opened, and left as it is. */
#include <functional>
#include <future>

#include "database_test.h"
#include "dbm/registry.h"
#include "stored_file.h"

namespace {

using File = StoredFile;
constexpr size_t kPage = File::kPage;

struct Damage {
    const char* name;
    std::function<void(File&)> make;
};

class FileCheck : public DatabaseTest {
  protected:
    static constexpr int kKeys = 90;
    static constexpr const char* kLarge = "large"; /* its pages are free later */
    static std::string Key(int number) { return "key" + std::to_string(number); }
    static std::string Text(int number) { return std::string(50 + number * 60, 'v'); }

    /* A table of two levels with values of one or two pages of their own, and a list of free
     * pages of two levels with a record of its own pages: all that a file may hold. */
    void SetUp() override {
        DatabaseTest::SetUp();
        path_ = DataFile("DOM_DB", "run");
        const DBM_HANDLE handle = Create("DOM_DB", "isp-domain", 0);
        ASSERT_EQ(DBM_Begin(handle), 0u);
        for (int i = 0; i < kKeys; ++i) Set(handle, Key(i), Text(i));
        Set(handle, kLarge, std::string(300 * kPage, 'x'));
        ASSERT_EQ(DBM_Commit(handle), 0u);
        FreePages(handle);
        ASSERT_EQ(DBM_Close(handle), 0u);
        opened_.clear();
        sound_.emplace(path_);
        const File& file = *sound_;
        ASSERT_EQ(file.U16(file.Table() + File::kDepth), 2);
        ASSERT_EQ(file.U16(file.FreeList() + File::kDepth), 2);
        ASSERT_FALSE(file.LeafNodes(file.FreeList(), true).empty());
        ASSERT_GT(file.LeafNodes(file.Table(), true).size(), 10u);
    }

    /* While somebody reads, each commit leaves a record of its own in the list. */
    static void FreePages(DBM_HANDLE handle) {
        std::promise<void> reads, done;
        std::thread reader([&] {
            const aaadom::dbm::ReadAccess read(aaadom::dbm::FindHandle(handle)->environment());
            reads.set_value();
            done.get_future().wait();
        });
        reads.get_future().wait();
        ASSERT_EQ(DBM_DeleteKey(handle, kLarge, strlen(kLarge)), 0u);
        for (int i = 0; i < 100; ++i) Set(handle, Key(1), Text(1));
        done.set_value();
        reader.join();
    }

    void ExpectSound(const File& file) {
        file.Write(path_);
        const DBM_HANDLE handle = OpenExisting();
        ASSERT_NE(handle, DBM_INVALID_HANDLE) << (Lines().empty() ? "" : Lines().back());
        for (int round = 0; round < 3; ++round) {
            for (int i = 0; i < kKeys; ++i) ASSERT_EQ(Get(handle, Key(i)), Text(i));
            ASSERT_EQ(Set(handle, "new", std::string(40000, 'n')), 0u);
        }
    }

    void ExpectRefused(const std::vector<Damage>& damages) {
        for (const Damage& damage : damages) {
            SCOPED_TRACE(damage.name);
            File file = *sound_;
            damage.make(file);
            ASSERT_FALSE(file == *sound_);
            file.Write(path_);
            Lines().clear();
            EXPECT_EQ(OpenExisting(), DBM_INVALID_HANDLE);
            ASSERT_EQ(Lines().size(), 1u);
            EXPECT_NE(Lines()[0].find(path_), std::string::npos) << Lines()[0];
            EXPECT_NE(Lines()[0].find("restore data.mdb from a backup"), std::string::npos)
                << Lines()[0];
            EXPECT_TRUE(File(path_) == file);
        }
    }

    std::string path_;
    std::optional<File> sound_;
};

size_t FirstLeaf(const File& file) {
    return file.Leaves(file.Table()).front();
}
size_t FirstNode(const File& file) {
    return file.Nodes(FirstLeaf(file)).front();
}
/* The first node of a page moves to its end, where `room` bytes or one less are left for the value.
 */
size_t MoveToEnd(File& file, size_t page, size_t room) {
    const size_t node = file.Nodes(page).front();
    const size_t size = File::kKey + file.U16(node + File::kKeySize);
    const size_t at = (kPage - size - room + 1) / 2 * 2;
    file.Copy(page + at, node, std::min(size + room, kPage - at));
    file.Put16(page + File::kPointers, at);
    return page + at;
}
size_t BigNode(const File& file, size_t number = 0) {
    return file.LeafNodes(file.Table(), true).at(number);
}
size_t BigPage(const File& file, size_t number = 0) {
    return file.U64(file.Value(BigNode(file, number))) * kPage;
}
size_t FreeRecord(const File& file) {
    return file.Value(file.LeafNodes(file.FreeList(), false).back());
}

TEST_F(FileCheck, SoundFileOpens) {
    ExpectSound(*sound_);
}

// The engine frees pages at the end of the file that were never written.
TEST_F(FileCheck, FreePageBehindTheEndOfTheFileIsSound) {
    File file = *sound_;
    const size_t last = file.NewestMeta() + File::kLastPage;
    file.Put64(last, file.U64(last) + 10);
    file.Put64(FreeRecord(file) + 8, file.U64(last) - 5);
    ExpectSound(file);
}

TEST_F(FileCheck, MetaPages) {
    const auto meta = [](size_t field, auto number) {
        return [=](File& file) { file.Put(file.NewestMeta() + field, number); };
    };
    ExpectRefused({
        {"magic number", meta(File::kMagic, uint32_t{1})},
        {"version", meta(File::kVersion, uint32_t{2})},
        {"no meta page", meta(File::kPageFlags, uint16_t{2})},
        {"page size too small", meta(File::kPageSize, uint32_t{256})},
        {"page size too large", meta(File::kPageSize, uint32_t{1} << 17)},
        {"page size no power of two", meta(File::kPageSize, uint32_t{4098})},
        {"list of free pages without numbers", meta(File::kFreeListFlags, uint16_t{0})},
        {"directory of another kind", meta(File::kMainFlags, uint16_t{4})},
        {"no pages", meta(File::kLastPage, uint64_t{0})},
        {"more pages than any disk has", meta(File::kLastPage, uint64_t{1} << 40)},
        {"first meta page", [](File& file) { file.Put32(File::kMagic, 1); }},
        {"second meta page", [](File& file) { file.Put32(kPage + File::kMagic, 1); }},
        {"two page sizes", [](File& file) { file.Put32(kPage + File::kPageSize, 8192); }},
    });
}

TEST_F(FileCheck, Trees) {
    const auto tree = [](size_t field, auto number) {
        return [=](File& file) { file.Put(file.Table() + field, number); };
    };
    constexpr uint64_t kNone = ~uint64_t{0};
    ExpectRefused({
        {"empty with entries", tree(File::kRoot, kNone)},
        {"empty with a level",
         [=](File& file) {
             tree(File::kRoot, kNone)(file);
             tree(File::kEntries, uint64_t{0})(file);
         }},
        {"no level", tree(File::kDepth, uint16_t{0})},
        {"too many levels", tree(File::kDepth, uint16_t{33})},
        {"a level too many", tree(File::kDepth, uint16_t{3})},
        {"an entry too many", tree(File::kEntries, uint64_t{100000})},
        {"root in a meta page", tree(File::kRoot, uint64_t{1})},
        {"root behind the file", tree(File::kRoot, uint64_t{1} << 39)},
        {"table of another kind", tree(File::kTreeFlags, uint16_t{4})},
        {"no value of a table",
         [](File& file) {
             file.Put16(file.Nodes(file.Root(file.Directory())).front() + File::kNodeFlags, 0);
         }},
        {"too short for a table",
         [](File& file) {
             file.Put16(file.Nodes(file.Root(file.Directory())).front() + File::kLow, 40);
         }},
        {"table behind the end of the page",
         [](File& file) { MoveToEnd(file, file.Root(file.Directory()), 20); }},
    });
}

TEST_F(FileCheck, Pages) {
    const auto leaf = [](size_t field, size_t number) {
        return [=](File& file) { file.Put16(FirstLeaf(file) + field, number); };
    };
    ExpectRefused({
        {"number of another page", leaf(0, 2)},
        {"kind of another page", leaf(File::kPageFlags, 4)},
        {"list of entries begins in the header", leaf(File::kLower, 8)},
        {"half an entry", leaf(File::kLower, 19)},
        {"entries over the nodes", leaf(File::kUpper, 16)},
        {"nodes behind the end", leaf(File::kUpper, kPage + 2)},
        {"leaf without entries", leaf(File::kLower, File::kPointers)},
        {"branch with one child",
         [](File& file) { file.Put16(file.Root(file.Table()) + File::kLower, 18); }},
        {"node among the entries", leaf(File::kPointers, 2)},
        {"node at an odd place",
         [](File& file) {
             const size_t at = FirstLeaf(file) + File::kPointers;
             file.Put16(at, file.U16(at) + 1);
         }},
        {"node behind the end", leaf(File::kPointers, kPage - 4)},
        {"key behind the end",
         [](File& file) { file.Put16(MoveToEnd(file, FirstLeaf(file), 4) + File::kKeySize, 500); }},
        {"key too long",
         [](File& file) {
             const size_t leaf = FirstLeaf(file);
             const size_t lowest = leaf + file.U16(leaf + File::kUpper);
             file.Put16(lowest + File::kKeySize, 600);
         }},
        {"page in two places",
         [](File& file) {
             const auto nodes = file.Nodes(file.Root(file.Table()));
             file.Copy(nodes[1], nodes[0], 6);
         }},
    });
}

TEST_F(FileCheck, KeysOutOfOrder) {
    const auto separator = [](size_t tree, const File& file) {
        return file.Nodes(file.Root(tree)).at(1);
    };
    ExpectRefused({
        {"two keys of a page",
         [](File& file) {
             const size_t at = FirstLeaf(file) + File::kPointers;
             const uint16_t first = file.U16(at);
             file.Put16(at, file.U16(at + 2));
             file.Put16(at + 2, first);
         }},
        {"empty key", [](File& file) { file.Put16(FirstNode(file) + File::kKeySize, 0); }},
        {"empty separator",
         [=](File& file) { file.Put16(separator(file.Table(), file) + File::kKeySize, 0); }},
        {"separator below what is left of it",
         [=](File& file) { file.Put16(separator(file.Table(), file) + File::kKey + 1, 0); }},
        {"separator above what is right of it",
         [=](File& file) { file.Put16(separator(file.Table(), file) + File::kKey, 0xFFFF); }},
        {"transaction below the one before",
         [=](File& file) { file.Put64(separator(file.FreeList(), file) + File::kKey, 1); }},
        {"transaction above the one after",
         [=](File& file) { file.Put64(separator(file.FreeList(), file) + File::kKey, ~0ull); }},
        {"half a transaction",
         [=](File& file) { file.Put16(separator(file.FreeList(), file) + File::kKeySize, 4); }},
    });
}

TEST_F(FileCheck, Values) {
    const auto node = [](size_t field, size_t number) {
        return [=](File& file) { file.Put16(FirstNode(file) + field, number); };
    };
    ExpectRefused({
        {"too long for any value", node(File::kHigh, 0x8000)},
        {"unknown kind", node(File::kNodeFlags, 4)},
        {"behind the end of the page", node(File::kLow, 0xFFFF)},
        {"page number behind the end of the page",
         [](File& file) {
             file.Put16(MoveToEnd(file, FirstLeaf(file), 4) + File::kNodeFlags, File::kBigData);
         }},
    });
}

TEST_F(FileCheck, ValuesInPagesOfTheirOwn) {
    const auto page = [](uint64_t number) {
        return [=](File& file) { file.Put64(file.Value(BigNode(file)), number); };
    };
    ExpectRefused({
        {"meta page", page(1)},
        {"page behind the file", page(uint64_t{1} << 39)},
        {"page of another kind", [=](File& file) { page(file.Root(file.Table()) / kPage)(file); }},
        {"number of another page", [](File& file) { file.Put64(BigPage(file), 3); }},
        {"more pages than the value needs",
         [](File& file) { file.Put16(BigPage(file) + File::kLower, 9); }},
        {"more pages than the file has",
         [](File& file) {
             const uint32_t size = 0x10000000;
             file.Put32(BigNode(file), size);
             file.Put32(BigPage(file) + File::kLower, (16 + size + kPage - 1) / kPage);
         }},
        {"over the end of the file",
         [](File& file) {
             const size_t pages = file.Pages() - 3;
             file.Put32(BigNode(file), pages * kPage - 16);
             file.Put32(BigPage(file) + File::kLower, pages);
         }},
        {"value in two places",
         [](File& file) {
             file.Put32(BigNode(file, 1), file.ValueSize(BigNode(file, 0)));
             file.Copy(file.Value(BigNode(file, 1)), file.Value(BigNode(file, 0)), 8);
         }},
    });
}

TEST_F(FileCheck, ListOfFreePages) {
    const auto node = [](const File& file) {
        return file.LeafNodes(file.FreeList(), false).back();
    };
    ExpectRefused({
        {"record of half a number", [=](File& file) { file.Put16(node(file), 4); }},
        {"more pages than the record holds",
         [](File& file) { file.Put64(FreeRecord(file), 1000); }},
        {"meta page",
         [](File& file) {
             const size_t record = FreeRecord(file);
             file.Put64(record + 8 * file.U64(record), 1);
         }},
        {"behind the last page",
         [](File& file) {
             file.Put64(FreeRecord(file) + 8, file.U64(file.NewestMeta() + File::kLastPage) + 1);
         }},
        {"a page twice",
         [](File& file) { file.Copy(FreeRecord(file) + 16, FreeRecord(file) + 8, 8); }},
        {"page in use",
         [](File& file) {
             file.Put64(FreeRecord(file), 1);
             file.Put64(FreeRecord(file) + 8, file.Root(file.Table()) / kPage);
         }},
        {"record of a table", [=](File& file) { file.Put16(node(file) + File::kNodeFlags, 2); }},
        {"half a transaction", [=](File& file) { file.Put16(node(file) + File::kKeySize, 4); }},
        {"record in pages that are none of it",
         [](File& file) {
             const size_t big = file.LeafNodes(file.FreeList(), true).front();
             file.Put64(file.Value(big), file.Root(file.Table()) / kPage);
         }},
    });
}

}  // namespace
