#include "database_test.h"

namespace {

class ArrayValues : public DatabaseTest {};
class BinaryValues : public DatabaseTest {};
class Keys : public DatabaseTest {};
class KeysByValueType : public DatabaseTest {};

int32_t SetElement(DBM_HANDLE handle, uint32_t index, const std::string& value) {
    return DBM_SetArray(handle, "apstDomainInfoTab", 17, index, value.size(), value.data(), 1);
}

std::string Element(DBM_HANDLE handle, uint32_t index, uint32_t size = 65535) {
    std::string buffer(size, '\0');
    const int32_t got = DBM_GetArray(handle, "apstDomainInfoTab", 17, index, size, buffer.data());
    return got < 0 ? "<failed>" : buffer.substr(0, static_cast<size_t>(got));
}

TEST_F(ArrayValues, ElementsAreIndependentAndSparse) {
    const DBM_HANDLE handle = Create();
    EXPECT_EQ(SetElement(handle, 0, "zero"), 0);
    EXPECT_EQ(SetElement(handle, 1023, "last"), 0);
    EXPECT_EQ(SetElement(handle, 1024, "beyond"), 0);
    EXPECT_EQ(Element(handle, 0), "zero");
    EXPECT_EQ(Element(handle, 1), "");
    EXPECT_EQ(Element(handle, 1023), "last");
    EXPECT_EQ(Element(handle, 1024), "beyond");
}

TEST_F(ArrayValues, LengthZeroRemovesAndAnAbsentElementIsNoFailure) {
    const DBM_HANDLE handle = Create();
    EXPECT_EQ(DBM_SetArray(handle, "apstDomainInfoTab", 17, 3, 0, nullptr, 1), 0);
    EXPECT_EQ(DBM_IsKeyExist(handle, "apstDomainInfoTab", 17), 0u);
    SetElement(handle, 3, "x");
    EXPECT_EQ(DBM_SetArray(handle, "apstDomainInfoTab", 17, 3, 0, nullptr, 1), 0);
    EXPECT_EQ(DBM_SetArray(handle, "apstDomainInfoTab", 17, 3, 0, nullptr, 1), 0);
    EXPECT_EQ(Element(handle, 3), "");
    EXPECT_EQ(DBM_IsKeyExist(handle, "apstDomainInfoTab", 17), 1u);
}

TEST_F(ArrayValues, ReadsCopyNoMoreThanTheBuffer) {
    const DBM_HANDLE handle = Create();
    SetElement(handle, 1, "abcdef");
    EXPECT_EQ(Element(handle, 1, 4), "abcd");
    EXPECT_EQ(DBM_GetArray(handle, "apstDomainInfoTab", 17, 1, 0, nullptr), 0);
    char guard[8] = "???????";
    EXPECT_EQ(DBM_GetArray(handle, "apstDomainInfoTab", 17, 1, 3, guard), 3);
    EXPECT_STREQ(guard, "abc????");
}

TEST_F(ArrayValues, NextIndexWalksAscendingByNumber) {
    const DBM_HANDLE handle = Create();
    for (uint32_t index : {256u, 1u, 70000u, 2u, 0x80000000u}) SetElement(handle, index, "x");
    std::vector<int32_t> walked;
    for (int32_t i = -1; (i = DBM_GetNextArrayIndex(handle, "apstDomainInfoTab", 17, i)) >= 0;)
        walked.push_back(i);
    EXPECT_EQ(walked, (std::vector<int32_t>{1, 2, 256, 70000}));
    EXPECT_LT(DBM_GetNextArrayIndex(handle, "none", 4, -1), 0);
    EXPECT_LT(DBM_GetNextArrayIndex(handle, "apstDomainInfoTab", 17, INT32_MAX), 0);
    EXPECT_EQ(DBM_GetEntryNum(handle, "apstDomainInfoTab", 17), 5u);
}

TEST_F(ArrayValues, OtherKindsRefuseTheKey) {
    const DBM_HANDLE handle = Create();
    SetElement(handle, 1, "x");
    char byte;
    EXPECT_EQ(DBM_SetBinary(handle, "apstDomainInfoTab", 17, -1, 1, "y", 1), kFailed);
    EXPECT_LT(DBM_GetBinary(handle, "apstDomainInfoTab", 17, 0, 1, &byte), 0);
    EXPECT_LT(DBM_GetBinaryLen(handle, "apstDomainInfoTab", 17), 0);
    EXPECT_EQ(DBM_ClearAvlList(handle, "apstDomainInfoTab", 17), kFailed);
    EXPECT_EQ(Element(handle, 1), "x");
    Set(handle, "b", "v");
    EXPECT_EQ(DBM_SetArray(handle, "b", 1, 0, 1, "y", 1), -1);
    EXPECT_EQ(DBM_SetArray(handle, "b", 1, 0, 0, nullptr, 1), -1);
    EXPECT_LT(DBM_GetArray(handle, "b", 1, 0, 1, &byte), 0);
}

TEST_F(ArrayValues, AThousandFullDomainsFit) {
    const DBM_HANDLE handle = Create("DOM_DB", "isp-domain", 0);
    std::string value(65535, 'd');
    ASSERT_EQ(DBM_Begin(handle), 0u);
    for (uint32_t i = 0; i < 1024; ++i) {
        memcpy(value.data(), &i, sizeof i);
        ASSERT_EQ(SetElement(handle, i, value), 0);
    }
    ASSERT_EQ(DBM_Commit(handle), 0u);
    for (uint32_t i = 0; i < 1024; i += 31) {
        memcpy(value.data(), &i, sizeof i);
        EXPECT_EQ(Element(handle, i), value);
    }
    EXPECT_EQ(DBM_GetEntryNum(handle, "apstDomainInfoTab", 17), 1024u);
}

TEST_F(BinaryValues, AnEmptyValueIsStored) {
    const DBM_HANDLE handle = Create();
    EXPECT_EQ(DBM_SetBinary(handle, "szDefaultDomain", 15, -1, 0, nullptr, 2), 0u);
    EXPECT_EQ(DBM_IsKeyExist(handle, "szDefaultDomain", 15), 1u);
    EXPECT_EQ(Get(handle, "szDefaultDomain"), "");
    EXPECT_EQ(DBM_GetBinaryLen(handle, "szDefaultDomain", 15), 0);
}

TEST_F(BinaryValues, WritesReplaceTheWholeValue) {
    const DBM_HANDLE handle = Create();
    Set(handle, "k", "a long value");
    EXPECT_EQ(Set(handle, "k", "short"), 0u);
    EXPECT_EQ(Get(handle, "k"), "short");
    EXPECT_EQ(DBM_GetBinaryLen(handle, "k", 1), 5);
}

TEST_F(BinaryValues, IndexMinusOneAndZeroMeanTheSame) {
    const DBM_HANDLE handle = Create();
    char byte = 0;
    EXPECT_EQ(DBM_SetBinary(handle, "k", 1, 0, 1, "a", 2), 0u);
    EXPECT_EQ(DBM_GetBinary(handle, "k", 1, -1, 1, &byte), 1);
    EXPECT_EQ(byte, 'a');
    EXPECT_EQ(DBM_SetBinary(handle, "k", 1, 1, 1, "b", 2), kFailed);
    EXPECT_LT(DBM_GetBinary(handle, "k", 1, 1, 1, &byte), 0);
}

TEST_F(BinaryValues, AnAbsentKeyReadsAsNothing) {
    const DBM_HANDLE handle = Create();
    EXPECT_EQ(Get(handle, "none"), "");
    EXPECT_EQ(DBM_GetBinaryLen(handle, "none", 4), 0);
}

TEST_F(BinaryValues, ANullValueWithALengthIsRefused) {
    const DBM_HANDLE handle = Create();
    EXPECT_EQ(DBM_SetBinary(handle, "k", 1, -1, 3, nullptr, 2), kFailed);
    EXPECT_EQ(DBM_SetArray(handle, "k", 1, 0, 3, nullptr, 2), -1);
    EXPECT_LT(DBM_GetBinary(handle, "k", 1, 0, 3, nullptr), 0);
    EXPECT_FALSE(Exists(handle, "k"));
}

TEST_F(Keys, TheTerminatorIsPartOfTheKey) {
    const DBM_HANDLE handle = Create();
    Set(handle, std::string("szDefaultDomain", 15), "without");
    Set(handle, std::string("szDefaultDomain", 16), "with");
    EXPECT_EQ(Get(handle, std::string("szDefaultDomain", 15)), "without");
    EXPECT_EQ(Get(handle, std::string("szDefaultDomain", 16)), "with");
}

TEST_F(Keys, AKeyThatBeginsLikeAnotherIsItsOwn) {
    const DBM_HANDLE handle = Create();
    Set(handle, "a", "1");
    Set(handle, "ab", "2");
    EXPECT_EQ(DBM_DeleteKey(handle, "a", 1), 0u);
    EXPECT_EQ(Get(handle, "ab"), "2");
}

TEST_F(Keys, LengthsFromOneToFourHundredAreKeys) {
    const DBM_HANDLE handle = Create();
    EXPECT_EQ(Set(handle, std::string(400, 'k'), "v"), 0u);
    EXPECT_EQ(Get(handle, std::string(400, 'k')), "v");
    EXPECT_EQ(Set(handle, std::string(401, 'k'), "v"), kFailed);
    EXPECT_EQ(Set(handle, "", "v"), kFailed);
    EXPECT_EQ(DBM_SetBinary(handle, nullptr, 3, -1, 1, "v", 2), kFailed);
}

TEST_F(Keys, DeletingRemovesEverythingUnderTheKey) {
    const DBM_HANDLE handle = Create();
    SetElement(handle, 1, "x");
    SetElement(handle, 2, std::string(65535, 'x'));
    EXPECT_EQ(DBM_DeleteKey(handle, "apstDomainInfoTab", 17), 0u);
    EXPECT_EQ(DBM_IsKeyExist(handle, "apstDomainInfoTab", 17), 0u);
    EXPECT_EQ(DBM_GetKeyNumByValueType(handle, 1), 0u);
    EXPECT_EQ(Element(handle, 2), "");
    EXPECT_EQ(DBM_DeleteKey(handle, "apstDomainInfoTab", 17), kFailed);
    /* The name is free for another kind. */
    EXPECT_EQ(Set(handle, "apstDomainInfoTab", "binary"), 0u);
}

TEST_F(Keys, TablesOfOneDatabaseAreSeparate) {
    const DBM_HANDLE first = Create("DOM_DB", "one");
    const DBM_HANDLE second = Create("DOM_DB", "two");
    Set(first, "k", "1");
    EXPECT_FALSE(Exists(second, "k"));
}

TEST_F(KeysByValueType, ListsInKeyOrderWithTextsThatOutliveTheIterator) {
    const DBM_HANDLE handle = Create();
    Set(handle, std::string("profilename_b", 14), "", 5);
    Set(handle, std::string("profilename_a", 14), "xyz", 5);
    Set(handle, "other", "", 6);
    EXPECT_EQ(DBM_GetKeyNumByValueType(handle, 5), 2u);
    DBM_KEY_SLOT slots[3] = {};
    void* iterator = nullptr;
    ASSERT_EQ(DBM_GetKeysByValueType(handle, 3, 5, &iterator, slots), 2u);
    EXPECT_NE(iterator, nullptr);
    DBM_FreeIterator(iterator);
    EXPECT_STREQ(slots[0].key, "profilename_a");
    EXPECT_STREQ(slots[1].key, "profilename_b");
    EXPECT_EQ(slots[0].key_length, 14u);
    EXPECT_EQ(slots[0].kind, uint32_t{DBM_KIND_BINARY});
    EXPECT_EQ(slots[0].value_type, 5u);
    EXPECT_EQ(slots[0].value_length, 3u);
    DBM_DeleteKey(handle, "profilename_a", 14);
    EXPECT_STREQ(slots[0].key, "profilename_a");
}

TEST_F(KeysByValueType, NeverFillsMoreThanTheGivenSlots) {
    const DBM_HANDLE handle = Create();
    for (const char* key : {"a", "b", "c"}) Set(handle, key, "", 5);
    DBM_KEY_SLOT slots[3] = {};
    EXPECT_EQ(DBM_GetKeysByValueType(handle, 2, 5, nullptr, slots), 2u);
    EXPECT_EQ(slots[2].key, nullptr);
    EXPECT_EQ(DBM_GetKeysByValueType(handle, 0, 5, nullptr, slots), 0u);
}

TEST_F(KeysByValueType, NothingFoundGivesANullIterator) {
    const DBM_HANDLE handle = Create();
    DBM_KEY_SLOT slots[1];
    void* iterator = slots;
    EXPECT_EQ(DBM_GetKeysByValueType(handle, 1, 9, &iterator, slots), 0u);
    EXPECT_EQ(iterator, nullptr);
    DBM_FreeIterator(nullptr);
}

TEST_F(KeysByValueType, AWriteWithAnotherTypeMovesTheKey) {
    const DBM_HANDLE handle = Create();
    Set(handle, "k", "1", 5);
    Set(handle, "k", "2", 6);
    EXPECT_EQ(DBM_GetKeyNumByValueType(handle, 5), 0u);
    EXPECT_EQ(DBM_GetKeyNumByValueType(handle, 6), 1u);
    EXPECT_EQ(Get(handle, "k"), "2");
}

TEST_F(KeysByValueType, TypesThatDifferInOneByteAreApart) {
    const DBM_HANDLE handle = Create();
    Set(handle, "a", "", 1);
    Set(handle, "b", "", 0x101);
    Set(handle, "c", "", 0x01000000);
    EXPECT_EQ(DBM_GetKeyNumByValueType(handle, 1), 1u);
    EXPECT_EQ(DBM_GetKeyNumByValueType(handle, 0x01000000), 1u);
}

}  // namespace
