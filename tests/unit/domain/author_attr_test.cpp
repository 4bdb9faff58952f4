#include <cstddef>
#include <cstring>
#include <set>
#include <string>

#include "unit/domain/tables_fixture.h"

namespace aaadom {
namespace {

/// Where each kind writes: written out from the layout of the block, independently of the code.
struct Place {
    uint32_t kind;
    size_t offset;
    size_t size;
};
constexpr Place kNumbers[] = {{0, 0, 8},   {11, 8, 4},   {9, 12, 4},  {10, 16, 4},   {13, 20, 4},
                              {14, 24, 8}, {15, 32, 4},  {3, 36, 20}, {21, 652, 16}, {19, 668, 4},
                              {0, 704, 4}, {23, 708, 4}, {24, 744, 4}};
constexpr Place kAddresses[] = {{5, 56, 20}, {6, 76, 20}, {16, 96, 20}, {17, 116, 20}};
constexpr Place kTexts[] = {{4, 136, 64},  {8, 200, 32},  {7, 232, 256}, {1, 488, 32},
                            {2, 520, 64},  {12, 584, 32}, {18, 616, 32}, {20, 672, 32},
                            {22, 712, 32}, {25, 748, 32}, {26, 780, 256}};

class AuthorAttrTest : public TablesTest {
  protected:
    AuthorAttrTest() { Add("a"); }

    static AuthorAttr Filled(int byte) {
        AuthorAttr block;
        memset(&block, byte, sizeof block);
        return block;
    }
    static AuthorAttr Stored() {
        AuthorAttr block;
        EXPECT_EQ(DOM_GetDomainAuthorAttrByName("a", &block), DOM_OK);
        return block;
    }
    static AuthorAttr Initial() {
        AuthorAttr block = Filled(0x5A);
        DOM_InitAuthorAttr(&block);
        return block;
    }
    /// Offsets at which two blocks differ.
    static std::set<size_t> Differences(const AuthorAttr& a, const AuthorAttr& b) {
        std::set<size_t> offsets;
        for (size_t i = 0; i < sizeof(AuthorAttr); ++i) {
            if (reinterpret_cast<const char*>(&a)[i] != reinterpret_cast<const char*>(&b)[i]) {
                offsets.insert(i);
            }
        }
        return offsets;
    }
    static void Insert(std::set<size_t>& offsets, size_t offset, size_t size) {
        for (size_t i = 0; i < size; ++i) offsets.insert(offset + i);
    }
    static uint32_t AddAttr(const AuthorAttr& block, uint32_t kind) {
        return DOM_AddAuthorAttr("a", &block, kind);
    }
};

TEST_F(AuthorAttrTest, InitialBlockIsZeroButForSevenWords) {
    AuthorAttr expected{};
    expected.kind0_word2 = 10240;
    expected.kind9_word = 4;
    expected.kind10_word = 4;
    expected.kind14_word2 = 1;
    expected.kind15_word = 1;
    expected.kind19_word = -1;
    expected.kind23_word = 65535;
    EXPECT_TRUE(Differences(Initial(), expected).empty());
    DOM_InitAuthorAttr(nullptr);
}

TEST_F(AuthorAttrTest, EachKindWritesItsFieldsAndNoOthers) {
    for (uint32_t kind = 0; kind <= 26; ++kind) {
        DOM_DeleteDomainAndDBByName("a", 0);
        Add("a");
        // Every byte differs from every initial byte and no text has a terminator.
        AuthorAttr block = Filled(0x7B);
        ASSERT_EQ(AddAttr(block, kind), DOM_OK) << kind;
        std::set<size_t> expected;
        for (const Place& p : kNumbers) {
            if (p.kind == kind) Insert(expected, p.offset, p.size);
        }
        for (const Place& p : kAddresses) {
            if (p.kind != kind) continue;
            Insert(expected, p.offset, 2);       // family
            Insert(expected, p.offset + 4, 16);  // not the reserved bytes
        }
        bool whole = kind == 1 || kind == 2 || kind == 18;
        for (const Place& p : kTexts) {
            if (p.kind == kind) Insert(expected, p.offset, whole ? p.size : p.size - 1);
        }
        if (kind == 18) Insert(expected, 648, 1);
        if (kind == 26) Insert(expected, 1036, 2);
        EXPECT_EQ(Differences(Stored(), Initial()), expected) << kind;
    }
}

TEST_F(AuthorAttrTest, DeletionOfEachKindGivesTheInitialValues) {
    for (uint32_t kind = 0; kind <= 26; ++kind) {
        for (uint32_t k = 0; k <= 26; ++k) AddAttr(Filled(0x7B), k);
        AuthorAttr before = Stored();
        ASSERT_EQ(DOM_DelAuthorAttr("a", kind), DOM_OK) << kind;
        AuthorAttr expected = before;
        AuthorAttr initial = Initial();
        auto reset = [&](size_t offset, size_t size) {
            memcpy(reinterpret_cast<char*>(&expected) + offset,
                   reinterpret_cast<const char*>(&initial) + offset, size);
        };
        for (const Place& p : kNumbers) {
            if (p.kind == kind) reset(p.offset, p.size);
        }
        for (const Place& p : kAddresses) {
            if (p.kind == kind) reset(p.offset, p.size);
        }
        for (const Place& p : kTexts) {
            if (p.kind == kind) reset(p.offset, 1);  // only the first byte
        }
        // the numbers beside the texts of kinds 18 and 26 stay
        EXPECT_TRUE(Differences(Stored(), expected).empty()) << kind;
    }
}

TEST_F(AuthorAttrTest, DeletionGivesTheWordsThatAreNotZero) {
    for (uint32_t k = 0; k <= 26; ++k) AddAttr(Filled(0x7B), k);
    for (uint32_t k : {0u, 9u, 10u, 14u, 15u, 19u, 23u}) DOM_DelAuthorAttr("a", k);
    AuthorAttr stored = Stored();
    EXPECT_EQ(stored.kind0_word2, 10240u);
    EXPECT_EQ(stored.kind9_word, 4u);
    EXPECT_EQ(stored.kind10_word, 4u);
    EXPECT_EQ(stored.kind14_word2, 1u);
    EXPECT_EQ(stored.kind15_word, 1u);
    EXPECT_EQ(stored.kind19_word, -1);
    EXPECT_EQ(stored.kind23_word, 65535u);
}

TEST_F(AuthorAttrTest, DeletionKeepsTheNumbersBesideTheTexts) {
    AddAttr(Filled(0x7B), 18);
    AddAttr(Filled(0x7B), 26);
    DOM_DelAuthorAttr("a", 18);
    DOM_DelAuthorAttr("a", 26);
    EXPECT_EQ(Stored().kind18_byte, 0x7B);
    EXPECT_EQ(Stored().kind26_selector, 0x7B7B);
    EXPECT_STREQ(Stored().kind18_text, "");
    EXPECT_STREQ(Stored().kind26_text, "");
}

TEST_F(AuthorAttrTest, AddressOfFamilyTwoCopiesFourBytes) {
    for (auto [kind, member] :
         {std::pair{5u, &AuthorAttr::kind5_addr}, std::pair{6u, &AuthorAttr::kind6_addr},
          std::pair{16u, &AuthorAttr::kind16_addr}, std::pair{17u, &AuthorAttr::kind17_addr}}) {
        AuthorAttr block = Filled(0x11);
        (block.*member).family = 10;
        AddAttr(block, kind);
        EXPECT_EQ((Stored().*member).family, 10);
        EXPECT_EQ((Stored().*member).address[15], 0x11);
        block = Filled(0x22);
        (block.*member).family = 2;
        AddAttr(block, kind);
        AttrAddress stored = Stored().*member;
        EXPECT_EQ(stored.family, 2);
        EXPECT_EQ(stored.address[0], 0x22);
        EXPECT_EQ(stored.address[3], 0x22);
        EXPECT_EQ(stored.address[4], 0x11);  // the old bytes stay
        EXPECT_EQ(stored.address[15], 0x11);
    }
}

TEST_F(AuthorAttrTest, KindsTwoAndFourKeepTheSpellingThatDiffersOnlyInCase) {
    AuthorAttr block{};
    strcpy(block.kind2_text, "Text");
    strcpy(block.kind4_text, "Text");
    AddAttr(block, 2);
    AddAttr(block, 4);
    strcpy(block.kind2_text, "tEXT");
    strcpy(block.kind4_text, "tEXT");
    block.kind2_text[40] = 'x';
    AddAttr(block, 2);
    AddAttr(block, 4);
    EXPECT_STREQ(Stored().kind2_text, "Text");
    EXPECT_EQ(Stored().kind2_text[40], '\0');
    EXPECT_STREQ(Stored().kind4_text, "Text");
    strcpy(block.kind2_text, "other");
    strcpy(block.kind4_text, "other");
    AddAttr(block, 2);
    AddAttr(block, 4);
    EXPECT_STREQ(Stored().kind2_text, "other");
    EXPECT_EQ(Stored().kind2_text[40], 'x');  // whole copy
    EXPECT_STREQ(Stored().kind4_text, "other");
}

TEST_F(AuthorAttrTest, OtherTextsTakeAChangeOfCase) {
    AuthorAttr block{};
    strcpy(block.ita_policy_name, "Text");
    AddAttr(block, 12);
    strcpy(block.ita_policy_name, "text");
    AddAttr(block, 12);
    EXPECT_STREQ(Stored().ita_policy_name, "text");
}

TEST_F(AuthorAttrTest, BoundedCopiesLeaveTheBytesBehindTheTerminator) {
    AuthorAttr block{};
    strcpy(block.kind7_text, "abcdef");
    AddAttr(block, 7);
    strcpy(block.kind7_text, "x");
    AddAttr(block, 7);
    EXPECT_STREQ(Stored().kind7_text, "x");
    EXPECT_EQ(Stored().kind7_text[2], 'c');
}

TEST_F(AuthorAttrTest, KindEighteenCopiesTextAndByte) {
    AuthorAttr block = Filled(0x41);
    AddAttr(block, 18);
    EXPECT_EQ(std::string(Stored().kind18_text, 32), std::string(32, 'A'));
    EXPECT_EQ(Stored().kind18_byte, 0x41);
    EXPECT_EQ(Stored().kind18_reserved[0], 0);
}

TEST_F(AuthorAttrTest, UnknownKindFails) {
    AuthorAttr block = Filled(1);
    EXPECT_EQ(AddAttr(block, 27), DOM_ERR_FAILED);
    EXPECT_EQ(AddAttr(block, 0xFFFFFFFF), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DelAuthorAttr("a", 27), DOM_ERR_FAILED);
    EXPECT_TRUE(Differences(Stored(), Initial()).empty());
}

TEST_F(AuthorAttrTest, UnknownDomainFails) {
    AuthorAttr block = Filled(1);
    EXPECT_EQ(DOM_AddAuthorAttr("nobody", &block, 0), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DelAuthorAttr("nobody", 0), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_GetDomainAuthorAttrByName("nobody", &block), DOM_ERR_FAILED);
    EXPECT_EQ(block.kind0_word1, 0x01010101u);
}

TEST_F(AuthorAttrTest, NullBlocksDoNotCrash) {
    EXPECT_EQ(DOM_AddAuthorAttr("a", nullptr, 0), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_GetDomainAuthorAttrByName("a", nullptr), DOM_OK);
}

}  // namespace
}  // namespace aaadom
