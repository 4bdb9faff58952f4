// The stored form of a user record, byte by byte, and its search key.
#include <cstddef>

#include "unit/userrecord/record_fixture.h"

namespace {

using namespace record_test;

struct StoredItem {
    uint32_t header_at;
    uint16_t type;
    uint16_t length;
};
// Written out: the run database of a former start is read by these offsets.
constexpr StoredItem kItems[] = {
    {0, 264, 8},  {12, 166, 4},    {20, 174, 4},    {28, 167, 4},   {36, 168, 16},
    {56, 175, 4}, {64, 176, 4},    {72, 171, 2},    {78, 172, 2},   {84, 173, 2},
    {90, 169, 6}, {100, 165, 256}, {360, 164, 256}, {620, 170, 48},
};
constexpr uint32_t kWithoutDetail = 672;

class StoredRecord : public RecordTest {
  protected:
    static std::string Store(const UserRecord& record, uint32_t room = DOM_RECORD_STORED_SIZE) {
        // Of exactly the size, so that the sanitizer sees a write behind it.
        std::vector<char> buffer(room, '\x5A');
        const uint32_t length =
            DOM_userrecord_tlv_EncodeUserRecordStlv(&record, room, buffer.data());
        EXPECT_LE(length, room);
        for (size_t i = length; i < buffer.size(); ++i) {
            EXPECT_EQ(buffer[i], '\x5A') << i;
            if (buffer[i] != '\x5A') break;
        }
        return std::string(buffer.data(), length);
    }
    static std::string Header(uint16_t type, uint16_t length) {
        const uint16_t words[] = {type, length};
        return std::string(reinterpret_cast<const char*>(words), sizeof words);
    }
    template <typename Value>
    static std::string Bytes(const Value& value) {
        return std::string(reinterpret_cast<const char*>(&value), sizeof value);
    }
    /// The value of item `n` of the stored sample.
    static std::string ValueAt(uint32_t n) {
        return Store(Sample()).substr(kItems[n].header_at + 4, kItems[n].length);
    }
};

TEST_F(StoredRecord, TakesSixHundredSeventyTwoBytesWithoutADetailText) {
    EXPECT_EQ(Store(golden::SampleRecord(false)).size(), kWithoutDetail);
}

TEST_F(StoredRecord, EveryItemStandsAtItsOffset) {
    const std::string stored = Store(golden::SampleRecord(false));
    uint32_t end = 0;
    for (const StoredItem& item : kItems) {
        EXPECT_EQ(item.header_at, end);
        EXPECT_EQ(stored.substr(item.header_at, 4), Header(item.type, item.length)) << item.type;
        end = item.header_at + 4 + item.length;
    }
    EXPECT_EQ(stored.size(), end);
}

TEST_F(StoredRecord, EveryItemCarriesItsField) {
    const UserRecord record = Sample();
    const std::string want[] = {
        Bytes(record.serial),        Bytes(record.first_number),  Bytes(record.second_number),
        Bytes(record.ipv4),          Bytes(record.ipv6),          Bytes(record.third_number),
        Bytes(record.fourth_number), Bytes(record.number16[0]),   Bytes(record.number16[1]),
        Bytes(record.number16[2]),   Bytes(record.mac),           Bytes(record.first_name),
        Bytes(record.second_name),   Bytes(record.interface_name)};
    for (uint32_t n = 0; n < std::size(want); ++n) EXPECT_EQ(ValueAt(n), want[n]) << n;
}

// The run lists sort by these 8 bytes; moving the serial number would unsort every list.
TEST_F(StoredRecord, SerialNumberIsTheEightBytesAtOffsetFour) {
    UserRecord record = Sample();
    record.serial = 0xF1E2D3C4B5A69788u;
    uint64_t serial = 0;
    memcpy(&serial, Store(record).data() + 4, sizeof serial);
    EXPECT_EQ(serial, 0xF1E2D3C4B5A69788u);
}

TEST_F(StoredRecord, DetailLengthAndTextComeLast) {
    const std::string stored = Store(Sample());
    EXPECT_EQ(stored.size(), 684u + 9);
    EXPECT_EQ(stored.substr(672), Header(208, 4) + std::string("\x09\0\0\0", 4) + Header(207, 9) +
                                      std::string("rejected", 9));
}

TEST_F(StoredRecord, DetailNeedsATextAndALength) {
    UserRecord no_length = Sample();
    no_length.detail_len = 0;
    UserRecord no_text = Sample();
    no_text.detail = nullptr;
    EXPECT_EQ(Store(no_length).size(), kWithoutDetail);
    EXPECT_EQ(Store(no_text).size(), kWithoutDetail);
}

TEST_F(StoredRecord, NameFieldsAreStoredWholeWithWhatStandsBehindTheTerminator) {
    UserRecord record = golden::SampleRecord(false);
    memset(record.first_name, 'f', sizeof record.first_name);
    record.second_name[200] = 's';
    record.interface_name[47] = 'i';
    const std::string stored = Store(record);
    EXPECT_EQ(stored.substr(104, 256), std::string(256, 'f'));
    EXPECT_EQ(stored.substr(364, 256), Bytes(record.second_name));
    EXPECT_EQ(stored.substr(624, 48), Bytes(record.interface_name));
}

TEST_F(StoredRecord, LargestDetailTextFillsTheBuffer) {
    std::string text(64851, 'd');
    UserRecord record = golden::SampleRecord(false);
    record.detail = text.data();
    record.detail_len = 64851;
    EXPECT_EQ(Store(record).size(), 65535u);
}

TEST_F(StoredRecord, DetailTextThatDoesNotFitLeavesItsLengthAlone) {
    std::string text(70000, 'd');
    UserRecord record = golden::SampleRecord(false);
    record.detail = text.data();
    for (const uint32_t length : {64852u, 65535u, 65536u, 70000u}) {
        record.detail_len = length;
        EXPECT_EQ(Store(record).substr(672), Header(208, 4) + Bytes(length)) << length;
    }
}

TEST_F(StoredRecord, LengthIsNeverReadAsSixteenBits) {
    std::string text(65536 + 5, 'd');
    UserRecord record = golden::SampleRecord(false);
    record.detail = text.data();
    record.detail_len = 65536 + 5;
    EXPECT_EQ(Store(record).size(), 680u);
}

TEST_F(StoredRecord, ItemsThatDoNotFitAreOmittedAndSmallerOnesFollow) {
    // Room for the items up to the MAC address and 20 bytes: no name fits, the length of the detail
    // text (8 bytes) does, and then not the text (13 bytes).
    const std::string stored = Store(Sample(), 100 + 20);
    EXPECT_EQ(stored.size(), 108u);
    EXPECT_EQ(stored.substr(100), Header(208, 4) + std::string("\x09\0\0\0", 4));
}

TEST_F(StoredRecord, NoRoomIsNeverExceeded) {
    for (uint32_t room = 0; room < 700; ++room) Store(Sample(), room);
    EXPECT_EQ(Store(Sample(), 11).size(), 8u) << "the serial number needs 12, a number 8";
    EXPECT_EQ(Store(Sample(), 5).size(), 0u);
}

TEST_F(StoredRecord, NullArgumentsStoreNothing) {
    const UserRecord record = Sample();
    char buffer[64];
    EXPECT_EQ(DOM_userrecord_tlv_EncodeUserRecordStlv(nullptr, sizeof buffer, buffer), 0u);
    EXPECT_EQ(DOM_userrecord_tlv_EncodeUserRecordStlv(&record, 64, nullptr), 0u);
}

TEST_F(StoredRecord, KeyIsTheItemOfTheSerialNumber) {
    char key[12];
    EXPECT_EQ(
        DOM_userrecord_tlv_EncodeUserRecordSerialNumberStlv(0x0102030405060708u, sizeof key, key),
        12u);
    EXPECT_EQ(std::string(key, sizeof key), Store(Sample()).substr(0, 12));
}

TEST_F(StoredRecord, KeyNeedsTwelveBytes) {
    char key[12];
    memset(key, '\x5A', sizeof key);
    EXPECT_EQ(DOM_userrecord_tlv_EncodeUserRecordSerialNumberStlv(1, 11, key), 0u);
    EXPECT_EQ(std::string(key, sizeof key), std::string(12, '\x5A'));
    EXPECT_EQ(DOM_userrecord_tlv_EncodeUserRecordSerialNumberStlv(1, 12, nullptr), 0u);
}

}  // namespace
