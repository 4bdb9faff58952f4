// Reading the stored form of a user record, whatever bytes it holds.
#include <platform/stlv.h>

#include <cstdlib>

#include "unit/userrecord/record_fixture.h"

namespace {

using namespace record_test;

class StoredRecordLoad : public RecordTest {
  protected:
    ~StoredRecordLoad() override { free(record_.detail); }

    static std::string Item(uint16_t type, const std::string& value) {
        std::string item(4 + value.size(), '\0');
        EXPECT_EQ(STLV_Set(item.data(), static_cast<uint32_t>(item.size()), type,
                           static_cast<uint32_t>(value.size()), value.data()),
                  item.size());
        return item;
    }
    static std::string DetailLength(uint32_t length) {
        return Item(208, std::string(reinterpret_cast<const char*>(&length), sizeof length));
    }
    static std::string Stored(const UserRecord& record) {
        std::string buffer(DOM_RECORD_STORED_SIZE, '\0');
        buffer.resize(DOM_userrecord_tlv_EncodeUserRecordStlv(&record, DOM_RECORD_STORED_SIZE,
                                                              buffer.data()));
        return buffer;
    }
    void Load(const std::string& stored) {
        free(record_.detail);
        // Of exactly the size, so that the sanitizer sees a read behind it.
        const std::vector<char> buffer(stored.begin(), stored.end());
        DOM_userrecord_tlv_DecodeUserRecordStlv(buffer.data(), static_cast<uint32_t>(buffer.size()),
                                                &record_);
    }
    void ExpectNoDetail() {
        EXPECT_EQ(record_.detail, nullptr);
        EXPECT_EQ(record_.detail_len, 0u);
    }
    /// Compares all but the detail pointer.
    void ExpectFieldsOf(const UserRecord& want) {
        UserRecord got = record_;
        got.detail = want.detail;
        EXPECT_EQ(memcmp(&got, &want, sizeof want), 0);
    }

    UserRecord record_{};
};

TEST_F(StoredRecordLoad, GivesBackEveryField) {
    Load(Stored(Sample()));
    ExpectFieldsOf(Sample());
    EXPECT_STREQ(record_.detail, "rejected");
}

TEST_F(StoredRecordLoad, GivesBackARecordWithoutDetailText) {
    Load(Stored(golden::SampleRecord(false)));
    ExpectFieldsOf(golden::SampleRecord(false));
    ExpectNoDetail();
}

TEST_F(StoredRecordLoad, LargestDetailTextComesBackWhole) {
    std::string text(64850, 'd');
    UserRecord record = Sample();
    record.detail = text.data();
    record.detail_len = 64851;
    Load(Stored(record));
    ASSERT_NE(record_.detail, nullptr);
    EXPECT_EQ(record_.detail, text);
}

TEST_F(StoredRecordLoad, NamesAreCutToTheirField) {
    UserRecord record = golden::SampleRecord(false);
    memset(record.first_name, 'f', sizeof record.first_name);
    memset(record.second_name, 's', sizeof record.second_name);
    memset(record.interface_name, 'i', sizeof record.interface_name);
    Load(Stored(record));
    EXPECT_EQ(record_.first_name, std::string(255, 'f'));
    EXPECT_EQ(record_.second_name, std::string(255, 's'));
    EXPECT_EQ(record_.interface_name, std::string(47, 'i'));
}

TEST_F(StoredRecordLoad, ShortAndLongNamesAreTerminated) {
    memset(record_.first_name, 'x', sizeof record_.first_name);
    memset(record_.second_name, 'x', sizeof record_.second_name);
    memset(record_.interface_name, 'x', sizeof record_.interface_name);
    Load(Item(165, "abc") + Item(164, "") + Item(170, std::string(60000, 'i')));
    EXPECT_STREQ(record_.first_name, "abc");
    EXPECT_STREQ(record_.second_name, "");
    EXPECT_EQ(record_.interface_name, std::string(47, 'i'));
}

TEST_F(StoredRecordLoad, NamesEndAtTheirTerminator) {
    Load(Item(165, std::string("abc\0def", 7)));
    EXPECT_STREQ(record_.first_name, "abc");
}

TEST_F(StoredRecordLoad, ItemsShorterThanTheirFieldAreSkipped) {
    const UserRecord before = golden::SampleRecord(false);
    record_ = before;
    std::string stored;
    for (const uint16_t type : {166, 174, 167, 175, 176}) stored += Item(type, "abc");
    for (const uint16_t type : {171, 172, 173}) stored += Item(type, "a");
    stored += Item(168, std::string(15, 'a')) + Item(169, "abcde") + Item(264, "abcdefg");
    Load(stored);
    ExpectFieldsOf(before);
}

TEST_F(StoredRecordLoad, ItemsLongerThanTheirFieldGiveTheirFirstBytes) {
    Load(Item(166, std::string("\x01\0\0\0\xFF", 5)) + Item(171, std::string("\x02\0\xFF", 3)) +
         Item(169, "abcdefg") + Item(264, std::string("\x03\0\0\0\0\0\0\0\xFF", 9)));
    EXPECT_EQ(record_.first_number, 1u);
    EXPECT_EQ(record_.number16[0], 2u);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(record_.mac), 6), "abcdef");
    EXPECT_EQ(record_.serial, 3u);
    EXPECT_EQ(record_.second_number, 0u);
    EXPECT_EQ(record_.number16[1], 0u);
}

TEST_F(StoredRecordLoad, UnknownItemsAreSkipped) {
    Load(Item(1, "junk") + Item(178, "") + Stored(Sample()) + Item(0xFFFF, "junk"));
    ExpectFieldsOf(Sample());
}

TEST_F(StoredRecordLoad, OrderOfTheItemsDoesNotMatter) {
    Load(Item(207, std::string("why", 4)) + Item(173, std::string("\x05\0", 2)) + DetailLength(4));
    EXPECT_STREQ(record_.detail, "why");
    EXPECT_EQ(record_.number16[2], 5u);
}

TEST_F(StoredRecordLoad, FieldsWithoutItemStayAndTheDetailTextDoesNot) {
    record_ = golden::SampleRecord(false);
    record_.detail_len = 77;
    char elsewhere[] = "not the record's to free";
    record_.detail = elsewhere;
    DOM_userrecord_tlv_DecodeUserRecordStlv("", 0, &record_);
    ExpectNoDetail();
    ExpectFieldsOf(golden::SampleRecord(false));
}

TEST_F(StoredRecordLoad, DetailLengthWithoutTextGivesNoText) {
    Load(DetailLength(5));
    ExpectNoDetail();
}

TEST_F(StoredRecordLoad, DetailTextWithoutLengthGivesNoText) {
    Load(Item(207, "why"));
    ExpectNoDetail();
    Load(Item(207, "why") + DetailLength(0));
    ExpectNoDetail();
}

TEST_F(StoredRecordLoad, DetailTextIsCutToItsLengthMinusOne) {
    Load(DetailLength(5) + Item(207, "rejected"));
    EXPECT_STREQ(record_.detail, "reje");
    EXPECT_EQ(record_.detail_len, 5u);
    Load(DetailLength(1) + Item(207, "rejected"));
    EXPECT_STREQ(record_.detail, "");
}

TEST_F(StoredRecordLoad, DetailTextShorterThanItsLengthIsFollowedByZeros) {
    Load(DetailLength(9) + Item(207, "why"));
    ASSERT_NE(record_.detail, nullptr);
    EXPECT_EQ(std::string(record_.detail, 9), std::string("why\0\0\0\0\0\0", 9));
    EXPECT_EQ(record_.detail_len, 9u);
}

TEST_F(StoredRecordLoad, FirstOfTwoDetailTextsCounts) {
    Load(DetailLength(6) + Item(207, "first") + Item(207, "other"));
    EXPECT_STREQ(record_.detail, "first");
}

TEST_F(StoredRecordLoad, LastOfTwoItemsCounts) {
    Load(DetailLength(3) + DetailLength(6) + Item(207, "first") + Item(165, "a") + Item(165, "b"));
    EXPECT_STREQ(record_.detail, "first");
    EXPECT_STREQ(record_.first_name, "b");
}

TEST_F(StoredRecordLoad, DetailLengthThatNoItemCanHaveIsRefusedBeforeAllocating) {
    for (const uint32_t length : {65536u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        const uint64_t allocations = fake::Count(fake::Event::kAllocation);
        record_.detail = nullptr;
        const std::string stored = DetailLength(length) + Item(207, "why");
        DOM_userrecord_tlv_DecodeUserRecordStlv(stored.data(), static_cast<uint32_t>(stored.size()),
                                                &record_);
        EXPECT_EQ(fake::Count(fake::Event::kAllocation), allocations);
        ExpectNoDetail();
    }
}

TEST_F(StoredRecordLoad, ShortMemoryGivesNoDetailText) {
    const std::string stored = Stored(Sample());
    fake::FailAllocation(1);
    DOM_userrecord_tlv_DecodeUserRecordStlv(stored.data(), static_cast<uint32_t>(stored.size()),
                                            &record_);
    EXPECT_TRUE(fake::Tripped());
    ExpectNoDetail();
    EXPECT_EQ(record_.serial, Sample().serial);
}

TEST_F(StoredRecordLoad, EveryPrefixIsReadInsideItsBytes) {
    const std::string stored = Stored(Sample());
    for (size_t length = 0; length < stored.size(); ++length) {
        record_ = UserRecord{};
        Load(stored.substr(0, length));
        ExpectNoDetail();
        EXPECT_EQ(record_.serial, length < 12 ? 0 : Sample().serial) << length;
    }
}

TEST_F(StoredRecordLoad, ItemLongerThanTheRestEndsTheReading) {
    std::string lying = Item(165, "abc");
    lying[2] = '\xFF';
    lying[3] = '\xFF';
    Load(Item(166, std::string("\x01\0\0\0", 4)) + lying + Item(174, std::string("\x02\0\0\0", 4)));
    EXPECT_EQ(record_.first_number, 1u);
    EXPECT_STREQ(record_.first_name, "");
    EXPECT_EQ(record_.second_number, 0u);
}

TEST_F(StoredRecordLoad, UnalignedBuffersAreFine) {
    const std::string stored = "xyz" + Stored(Sample());
    for (int skip = 1; skip <= 3; ++skip) {
        const std::string shifted = std::string(skip, 'x') + stored.substr(3);
        DOM_userrecord_tlv_DecodeUserRecordStlv(
            shifted.data() + skip, static_cast<uint32_t>(shifted.size()) - skip, &record_);
        ExpectFieldsOf(Sample());
        free(record_.detail);
        record_.detail = nullptr;
    }
}

TEST_F(StoredRecordLoad, NullArgumentsAreHarmless) {
    const std::string stored = Stored(Sample());
    DOM_userrecord_tlv_DecodeUserRecordStlv(stored.data(), static_cast<uint32_t>(stored.size()),
                                            nullptr);
    DOM_userrecord_tlv_DecodeUserRecordStlv(nullptr, 100, &record_);
    ExpectFieldsOf(UserRecord{});
    ExpectNoDetail();
}

}  // namespace
