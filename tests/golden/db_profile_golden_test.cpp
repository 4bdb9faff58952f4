// The stored records of critical and authorization profiles against their bytes. Keys, lengths and
// value types are written out here, so that a changed registry does not change the test.
#include <aaadom/database.h>
#include <aaadom/results.h>

#include <cstring>
#include <string>
#include <vector>

#include "tests/golden/hex_file.h"
#include "tests/golden/temporary_database.h"

namespace {

struct Family {
    const char* title;
    uint32_t profile_type;
    uint32_t entry_type;
    uint32_t segment_type;
    std::string list_key;
    std::string segment_key;
    const char* vpn;
    const char* entry_golden;
    const char* segment_golden;
    uint32_t size;
    uint32_t sort_offset;
};

const Family kCritical{"Critical",
                       23,
                       24,
                       25,
                       std::string("criticalprofilename_Quarantine\0", 31),
                       std::string("criticalmicrosegmentname_Quarantine\0", 36),
                       "vpn-a",
                       "db_critical_vpn",
                       "db_critical_segment",
                       72,
                       40};
const Family kAuthor{"Author",
                     33,
                     34,
                     35,
                     std::string("authorprofilename_Staff\0", 24),
                     std::string("authormicrosegmentname_Staff\0", 29),
                     "vpn-b",
                     "db_author_vpn",
                     "db_author_segment",
                     68,
                     36};

class ProfileRecordGolden : public golden::TemporaryDatabase,
                            public ::testing::WithParamInterface<Family> {
  protected:
    void SetUp() override {
        TemporaryDatabase::SetUp();
        if (HasFatalFailure()) return;
        DOM_SetDomainDBMHandle(handle_);
    }
    void TearDown() override {
        DOM_SetDomainDBMHandle(DBM_INVALID_HANDLE);
        TemporaryDatabase::TearDown();
    }

    static uint32_t Save(uint32_t type, uint16_t operation = 1) {
        DomDbUpdateReq request{};
        request.object_type = type;
        request.operation = operation;
        strcpy(request.critical_profile_name, "Quarantine");
        strcpy(request.critical_text, "restricted");
        request.critical_number = 0x01020304;
        request.critical_number16 = 0xFFFE;
        strcpy(request.author_profile_name, "Staff");
        strcpy(request.author_text, "offices");
        request.author_number = 0x87654321;
        strcpy(request.entry_name, GetParam().vpn);
        return DOM_SetDataToDB(&request);
    }
    /// The entry of a VPN; empty when there is none.
    std::string Entry(const char* vpn) {
        const Family& family = GetParam();
        std::string entry(family.size, '\0');
        memcpy(entry.data() + family.sort_offset, vpn, strlen(vpn));
        const int32_t found = DBM_GetSortList(handle_, family.list_key.data(),
                                              static_cast<uint32_t>(family.list_key.size()),
                                              family.size, entry.data());
        return found == static_cast<int32_t>(family.size) ? entry : std::string();
    }
    std::string Segment() {
        const std::string& key = GetParam().segment_key;
        std::string value(1000, '\0');
        const int32_t length = DBM_GetBinary(handle_, key.data(), static_cast<uint32_t>(key.size()),
                                             0, static_cast<uint32_t>(value.size()), value.data());
        value.resize(length < 0 ? 0 : static_cast<size_t>(length));
        return value;
    }
    DBM_KEY_SLOT OnlyKeyOf(uint32_t value_type) {
        DBM_KEY_SLOT slot{};
        EXPECT_EQ(DBM_GetKeyNumByValueType(handle_, value_type), 1u);
        void* iterator = nullptr;
        EXPECT_EQ(DBM_GetKeysByValueType(handle_, 1, value_type, &iterator, &slot), 1u);
        DBM_FreeIterator(iterator);
        return slot;
    }
};

TEST_P(ProfileRecordGolden, SavingAVpnWritesTheFile) {
    ASSERT_EQ(Save(GetParam().profile_type), DOM_OK);
    ASSERT_EQ(Save(GetParam().entry_type), DOM_OK);
    EXPECT_EQ(golden::ToHex(Entry(GetParam().vpn)),
              golden::ToHex(golden::ReadHexFile(GetParam().entry_golden)));
}

TEST_P(ProfileRecordGolden, SavingADefaultSegmentWritesTheFile) {
    ASSERT_EQ(Save(GetParam().segment_type), DOM_OK);
    EXPECT_EQ(golden::ToHex(Segment()),
              golden::ToHex(golden::ReadHexFile(GetParam().segment_golden)));
}

TEST_P(ProfileRecordGolden, KeysKindsAndValueTypesAreTheRecords) {
    ASSERT_EQ(Save(GetParam().profile_type), DOM_OK);
    ASSERT_EQ(Save(GetParam().entry_type), DOM_OK);
    ASSERT_EQ(Save(GetParam().segment_type), DOM_OK);
    const DBM_KEY_SLOT list = OnlyKeyOf(GetParam().entry_type);
    EXPECT_EQ(std::string(list.key, list.key_length), GetParam().list_key);
    EXPECT_EQ(list.kind, uint32_t{DBM_KIND_SORTED});
    const DBM_KEY_SLOT segment = OnlyKeyOf(GetParam().segment_type);
    EXPECT_EQ(std::string(segment.key, segment.key_length), GetParam().segment_key);
    EXPECT_EQ(segment.kind, uint32_t{DBM_KIND_BINARY});
    EXPECT_EQ(DBM_GetKeyNumByValueType(handle_, GetParam().profile_type), 0u);
}

// A database that holds the files, written past the library.
TEST_P(ProfileRecordGolden, StoredFilesAreFoundOverwrittenAndDeleted) {
    const Family& family = GetParam();
    const std::string entry = golden::ReadHexFile(family.entry_golden);
    const std::string segment = golden::ReadHexFile(family.segment_golden);
    ASSERT_EQ(entry.size(), family.size);
    ASSERT_EQ(segment.size(), family.size);
    const auto list_length = static_cast<uint32_t>(family.list_key.size());
    const auto segment_length = static_cast<uint32_t>(family.segment_key.size());
    const uint32_t attributes[4] = {family.sort_offset, 32, 5, 0};
    ASSERT_EQ(DBM_CreateSortList(handle_, family.list_key.data(), list_length, attributes, 1,
                                 family.entry_type),
              0u);
    ASSERT_EQ(DBM_InsertSortList(handle_, family.list_key.data(), list_length, family.size,
                                 entry.data(), family.entry_type),
              0u);
    ASSERT_EQ(DBM_SetBinary(handle_, family.segment_key.data(), segment_length, 0, family.size,
                            segment.data(), family.segment_type),
              0u);
    EXPECT_EQ(Save(family.entry_type), DOM_OK);
    EXPECT_EQ(DBM_GetEntryNum(handle_, family.list_key.data(), list_length), 1u)
        << "the stored VPN is the one that is written";
    EXPECT_EQ(Save(family.profile_type, 0), DOM_OK);
    EXPECT_EQ(Entry(family.vpn), "");
    EXPECT_EQ(Segment(), "");
    EXPECT_EQ(DBM_GetKeyNumByValueType(handle_, family.entry_type), 0u);
    EXPECT_EQ(DBM_GetKeyNumByValueType(handle_, family.segment_type), 0u);
}

INSTANTIATE_TEST_SUITE_P(Families, ProfileRecordGolden, ::testing::Values(kCritical, kAuthor),
                         [](const auto& info) { return info.param.title; });

}  // namespace
