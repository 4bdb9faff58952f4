#include "domain/name_index.h"

#include <gtest/gtest.h>
#include <strings.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "domain/tables.h"

namespace aaadom {
namespace {

/// What the index has to say: the first record in slot order whose name is equal ignoring case.
DomainInfo* Scan(DomainInfo* const (&slots)[DOM_MAX_DOMAINS], const char* name) {
    for (DomainInfo* record : slots) {
        if (record != nullptr && strcasecmp(record->name, name) == 0) return record;
    }
    return nullptr;
}

class NameIndexTest : public testing::Test {
  protected:
    NameIndexTest() : table_(std::make_unique<DomainTable>()), records_(DOM_MAX_DOMAINS) {}

    AAADOM_NO_TSA void Put(uint32_t slot, const std::string& name) {
        DomainInfo& record = records_[slot];
        if (table_->slots[slot] != nullptr) table_->ClearSlot(slot);
        memset(record.name, 0, sizeof record.name);
        name.copy(record.name, sizeof record.name - 1);
        table_->SetSlot(slot, &record);
    }
    AAADOM_NO_TSA void Clear(uint32_t slot) { table_->ClearSlot(slot); }
    AAADOM_NO_TSA DomainInfo* Find(const std::string& name) { return table_->Find(name.c_str()); }
    AAADOM_NO_TSA DomainInfo* ScanFor(const std::string& name) {
        return Scan(table_->slots, name.c_str());
    }
    DomainInfo* Record(uint32_t slot) { return &records_[slot]; }

    std::unique_ptr<DomainTable> table_;
    std::vector<DomainInfo> records_;
};

TEST_F(NameIndexTest, FindsEveryLengthIgnoringCase) {
    for (size_t length = 0; length <= 255; ++length) {
        std::string name(length, 'x');
        for (size_t i = 0; i < length; ++i) name[i] = static_cast<char>('a' + i % 26);
        Put(0, name);
        std::string capitals = name;
        for (char& c : capitals) c = static_cast<char>(toupper(c));
        EXPECT_EQ(Find(capitals), Record(0)) << length;
        EXPECT_EQ(Find(name + "x"), nullptr) << length;
        if (length > 0) {
            EXPECT_EQ(Find(name.substr(1)), nullptr) << length;
        }
    }
}

TEST_F(NameIndexTest, EveryByteOfANameCounts) {
    for (size_t length : {1u, 3u, 7u, 8u, 9u, 15u, 16u, 23u, 64u, 255u}) {
        std::string name(length, 'a');
        Put(0, name);
        for (size_t i = 0; i < length; ++i) {
            std::string other = name;
            other[i] = 'b';
            EXPECT_EQ(Find(other), nullptr) << length << ' ' << i;
        }
    }
}

TEST_F(NameIndexTest, FoldsLettersAndNothingElse) {
    for (int a = 1; a < 256; ++a) {
        Put(0, std::string(1, static_cast<char>(a)));
        for (int b = 1; b < 256; ++b) {
            std::string name(1, static_cast<char>(b));
            EXPECT_EQ(Find(name), ScanFor(name)) << a << ' ' << b;
        }
    }
}

TEST_F(NameIndexTest, LowestSlotWinsWhateverTheOrderOfAdding) {
    Put(9, "Same");
    Put(3, "same");
    Put(700, "SAME");
    EXPECT_EQ(Find("same"), Record(3));
    Clear(3);
    EXPECT_EQ(Find("same"), Record(9));
    Put(0, "sAme");
    EXPECT_EQ(Find("same"), Record(0));
}

TEST_F(NameIndexTest, SlotIsForgottenUnderTheNameItWasIndexedBy) {
    Put(5, "before");
    strcpy(Record(5)->name, "after");
    Clear(5);
    EXPECT_EQ(Find("before"), nullptr);
    EXPECT_EQ(Find("after"), nullptr);
}

TEST_F(NameIndexTest, ClearingAnEmptySlotChangesNothing) {
    Put(1, "one");
    Clear(2);
    EXPECT_EQ(Find("one"), Record(1));
}

TEST_F(NameIndexTest, NullIsNotFound) {
    MutexGuard lock(table_->mutex);
    EXPECT_EQ(table_->Find(nullptr), nullptr);
}

TEST_F(NameIndexTest, AgreesWithAScanUnderRandomChanges) {
    std::mt19937 random(4711);
    std::vector<std::string> names;
    for (int i = 0; i < 1500; ++i) {
        // Few stems in mixed case: many names are equal ignoring case.
        std::string name = (i % 3 == 0   ? "Dom"
                            : i % 3 == 1 ? "dOM"
                                         : "isp-") +
                           std::to_string(i % 900);
        if (i % 7 == 0) name += std::string(i % 200, 'Q');
        names.push_back(name);
    }
    for (int step = 0; step < 30000; ++step) {
        uint32_t slot = random() % DOM_MAX_DOMAINS;
        // Phases of filling and of emptying.
        bool add = (step / 5000) % 2 == 0 ? random() % 8 != 0 : random() % 8 == 0;
        if (add) {
            Put(slot, names[random() % names.size()]);
        } else {
            Clear(slot);
        }
        for (int probe = 0; probe < 4; ++probe) {
            const std::string& name = names[random() % names.size()];
            ASSERT_EQ(Find(name), ScanFor(name)) << step << ' ' << name;
        }
    }
    for (const std::string& name : names) ASSERT_EQ(Find(name), ScanFor(name)) << name;
}

}  // namespace
}  // namespace aaadom
