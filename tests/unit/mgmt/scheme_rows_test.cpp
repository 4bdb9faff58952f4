#include "unit/mgmt/rows_fixture.h"

namespace aaadom {
namespace {

constexpr uint16_t kSet = 1;
constexpr uint16_t kDelete = 0;

class SchemeRow : public RowsTest {
  protected:
    void SetUp() override {
        RowsTest::SetUp();
        Add("alpha");
    }
    uint32_t Apply(TLV_MSG* body, uint16_t op) {
        const TlvPtr msg(body);
        return DOM_ProcSchemeTable(msg.get(), op, &change_);
    }
    static TLV_MSG* Row(uint32_t status, uint32_t type, uint32_t index, uint32_t kind,
                        const char* scheme = "", const char* domain = "alpha") {
        return DOM_EncodeDomainSchemeFlag(0, domain, status, type, index, kind, scheme);
    }
    /// "kind@index" of each method of a default list.
    static std::string Stored(uint32_t type) {
        MethodList list{};
        if (DOM_GetMethodList("alpha", type, DOM_DEFAULT_SERVICE, &list, nullptr) != DOM_OK)
            return "none";
        std::string shown;
        for (const MethodEntry& entry : list.methods)
            if (entry.method_kind != METHOD_EMPTY)
                shown += std::to_string(entry.method_kind) + "@" +
                         std::to_string(entry.scheme_index) + " ";
        return shown;
    }
    /// A row with exactly these TLVs.
    template <typename Fields>
    static TLV_MSG* RowOf(Fields&& fields) {
        return MessageBuilder(DOM_MSG_SCHEME_ROW).Build(fields);
    }
    static void StoreSchemeOne() {
        MethodList list{};
        list.aaa_type = 0;
        list.service = DOM_DEFAULT_SERVICE;
        list.methods[0].method_kind = METHOD_SCHEME_1;
        ASSERT_EQ(DOM_AddMethodList("alpha", &list, nullptr), DOM_OK);
    }
};

TEST_F(SchemeRow, StatusFourAdds) {
    ASSERT_EQ(Stored(0), "4@1 ");
    EXPECT_EQ(Apply(Row(4, 0, 9, METHOD_LAST_5), kSet), 0u);
    EXPECT_EQ(Stored(0), "4@1 5@9 ");
    ExpectChange("alpha");
}

TEST_F(SchemeRow, StatusOneModifies) {
    EXPECT_EQ(Apply(Row(1, 0, 1, METHOD_SCHEME_1, "radius"), kSet), 0u);
    EXPECT_EQ(Stored(0), "1@1 ");
    ExpectChange("alpha");
}

TEST_F(SchemeRow, GoesToTheListOfItsTypeWithItsSchemeName) {
    for (uint32_t type : {0u, 4u, 5u}) {
        // A new domain's lists bear the indexes 1, 2 and 3.
        const uint32_t index = type == 0 ? 1 : type - 2;
        EXPECT_EQ(Apply(Row(1, type, index, METHOD_SCHEME_1, "radius"), kSet), 0u) << type;
        MethodList list{};
        ASSERT_EQ(DOM_GetMethodList("alpha", type, DOM_DEFAULT_SERVICE, &list, nullptr), DOM_OK);
        EXPECT_EQ(list.methods[0].method_kind, uint32_t{METHOD_SCHEME_1}) << type;
        EXPECT_EQ(list.methods[0].scheme_index, index) << type;
        EXPECT_STREQ(list.methods[0].scheme_name, "radius") << type;
    }
}

TEST_F(SchemeRow, ChangesTheCallingRoleOnly) {
    fake::InRole(fake::kWorkingRole, [] {
        Add("alpha");
        return 0;
    });
    EXPECT_EQ(Apply(Row(4, 0, 9, METHOD_LAST_5), kSet), 0u);
    EXPECT_EQ(fake::InRole(fake::kWorkingRole, [] { return Stored(0); }), "4@1 ");
}

TEST_F(SchemeRow, AnyOtherStatusIs1AndFillsTheChange) {
    for (uint32_t status : {0u, 2u, 3u, 5u, 6u, 0xFFFFFFFFu}) {
        Preset();
        EXPECT_EQ(Apply(Row(status, 0, 9, METHOD_LAST_5), kSet), 1u) << status;
        ExpectChange("alpha");
    }
    EXPECT_EQ(Stored(0), "4@1 ");
}

TEST_F(SchemeRow, MissingStatusIs1AndFillsTheChange) {
    EXPECT_EQ(Apply(RowOf([](Appender& append) {
                        append.Text(DOM_TLV_DOMAIN_NAME, "alpha")
                            .U32(DOM_TLV_SCHEME_INDEX, 9)
                            .U32(DOM_TLV_METHOD_TYPE, METHOD_LAST_5);
                    }),
                    kSet),
              1u);
    ExpectChange("alpha");
    EXPECT_EQ(Stored(0), "4@1 ");
}

TEST_F(SchemeRow, RowWithoutMethodTypeIsOfKindFour) {
    StoreSchemeOne();
    const std::string before = Stored(0);
    EXPECT_EQ(Apply(RowOf([](Appender& append) {
                        append.Text(DOM_TLV_DOMAIN_NAME, "alpha")
                            .U32(DOM_TLV_ROW_STATUS, 4)
                            .U32(DOM_TLV_SCHEME_INDEX, 9);
                    }),
                    kSet),
              0u);
    EXPECT_EQ(Stored(0), before + "4@9 ");
}

TEST_F(SchemeRow, RowWithoutIndexAndTypeIsIndexZeroOfTypeZero) {
    EXPECT_EQ(Apply(RowOf([](Appender& append) {
                        append.Text(DOM_TLV_DOMAIN_NAME, "alpha")
                            .U32(DOM_TLV_ROW_STATUS, 4)
                            .U32(DOM_TLV_METHOD_TYPE, METHOD_LAST_5);
                    }),
                    kSet),
              0u);
    EXPECT_EQ(Stored(0), "4@1 5@0 ");
}

TEST_F(SchemeRow, RowWithoutDomainNameIs1AndFillsNothing) {
    TLV_MSG* body = RowOf(
        [](Appender& append) { append.U32(DOM_TLV_ROW_STATUS, 4).U32(DOM_TLV_SCHEME_INDEX, 9); });
    EXPECT_EQ(Apply(body, kSet), 1u);
    EXPECT_TRUE(IsUntouched());
    EXPECT_EQ(DOM_ProcSchemeTable(nullptr, kSet, &change_), 1u);
    EXPECT_EQ(DOM_ProcSchemeTable(nullptr, kDelete, &change_), 1u);
    EXPECT_TRUE(IsUntouched());
}

TEST_F(SchemeRow, DeleteResetsTheListOfTheIndexWhateverTheStatus) {
    for (uint32_t status : {0u, 1u, 4u, 6u}) {
        StoreSchemeOne();
        const uint32_t index = [] {
            MethodList list{};
            EXPECT_EQ(DOM_GetMethodList("alpha", 0, DOM_DEFAULT_SERVICE, &list, nullptr), DOM_OK);
            return list.methods[0].scheme_index;
        }();
        Preset();
        EXPECT_EQ(Apply(Row(status, 0, index, METHOD_SCHEME_1), kDelete), 0u) << status;
        EXPECT_EQ(Stored(0).substr(0, 2), "4@") << status;
        ExpectChange("alpha");
    }
}

TEST_F(SchemeRow, DeleteNeedsNoStatus) {
    ASSERT_EQ(Apply(Row(4, 0, 9, METHOD_LAST_5), kSet), 0u);
    Preset();
    EXPECT_EQ(Apply(RowOf([](Appender& append) {
                        append.Text(DOM_TLV_DOMAIN_NAME, "alpha").U32(DOM_TLV_SCHEME_INDEX, 9);
                    }),
                    kDelete),
              0u);
    EXPECT_EQ(Stored(0).find("5@"), std::string::npos);
    ExpectChange("alpha");
}

TEST_F(SchemeRow, EveryOperationButOneDeletes) {
    for (uint16_t op : {0, 2, 3, 0x0101, 0xFFFF}) {
        EXPECT_EQ(Apply(Row(4, 0, 9, METHOD_LAST_5), kSet), 0u);
        EXPECT_EQ(Apply(Row(4, 0, 9, METHOD_LAST_5), op), 0u) << op;
        EXPECT_EQ(Stored(0).find("5@"), std::string::npos) << op;
    }
}

TEST_F(SchemeRow, NotFoundIs2) {
    EXPECT_EQ(Apply(Row(1, 0, 1, METHOD_SCHEME_1, "radius", "nobody"), kSet), 2u);
    ExpectChange("nobody");
}

TEST_F(SchemeRow, EveryOtherFailureIs1AndFillsTheChange) {
    EXPECT_EQ(Apply(Row(4, 0, 1, METHOD_LAST_5), kSet), 1u) << "index in use";
    ExpectChange("alpha");
    Preset();
    EXPECT_EQ(Apply(Row(1, 0, 99, METHOD_SCHEME_1), kSet), 1u) << "unknown index";
    ExpectChange("alpha");
    Preset();
    EXPECT_EQ(Apply(Row(1, 0, 99, METHOD_SCHEME_1), kDelete), 1u) << "unknown index";
    ExpectChange("alpha");
    Preset();
    EXPECT_EQ(Apply(Row(1, 0, 1, METHOD_SCHEME_1, "", "nobody"), kDelete), 1u) << "unknown domain";
    ExpectChange("nobody");
}

TEST_F(SchemeRow, TextsOfAnyLengthAreCut) {
    const std::string endless(5000, 'n');
    const auto row = [&](const char* domain) {
        return RowOf([&](Appender& append) {
            append.Text(DOM_TLV_DOMAIN_NAME, domain)
                .U32(DOM_TLV_ROW_STATUS, 1)
                .U32(DOM_TLV_SCHEME_INDEX, 1)
                .U32(DOM_TLV_METHOD_TYPE, METHOD_SCHEME_1)
                .Text(DOM_TLV_SCHEME_NAME, endless.c_str());
        });
    };
    EXPECT_EQ(Apply(row(endless.c_str()), kSet), 2u);
    ExpectChange(endless.substr(0, 255).c_str());
    EXPECT_EQ(Apply(row("alpha"), kSet), 0u);
    MethodList list{};
    ASSERT_EQ(DOM_GetMethodList("alpha", 0, DOM_DEFAULT_SERVICE, &list, nullptr), DOM_OK);
    EXPECT_EQ(std::string(list.methods[0].scheme_name), endless.substr(0, 32));
}

TEST_F(SchemeRow, NullChangeRecordIsSkipped) {
    const TlvPtr msg(Row(4, 0, 9, METHOD_LAST_5));
    EXPECT_EQ(DOM_ProcSchemeTable(msg.get(), kSet, nullptr), 0u);
    EXPECT_EQ(DOM_ProcSchemeTable(msg.get(), kDelete, nullptr), 0u);
}

}  // namespace
}  // namespace aaadom
