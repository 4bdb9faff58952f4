#include "unit/codec/restore_fixture.h"

namespace aaadom {
namespace {

TEST_F(RestoreTest, MessageWithoutOperationHeadIsRefused) {
    const TlvPtr bare(DOM_EncodeDomainName("alpha"));
    EXPECT_EQ(DOM_RestoreData(bare.get(), 0, 0, 0, nullptr, nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_IsDomainExist("alpha"), 0u);
}

TEST_F(RestoreTest, NullMessageIsRefused) {
    EXPECT_EQ(DOM_RestoreData(nullptr, 0, 0, 0, nullptr, nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_UpdateCfgData(nullptr, 0, 0, nullptr, nullptr), DOM_ERR_FAILED);
}

TEST_F(RestoreTest, MessageWithoutCodeIsRefused) {
    TLV_MSG* body = TLV_Create();
    AAA_AppendStrTlvData(body, DOM_TLV_DOMAIN_NAME, "alpha");
    EXPECT_EQ(Set(body), DOM_ERR_FAILED);
}

class RefusedCode : public RestoreTest, public ::testing::WithParamInterface<uint32_t> {};

TEST_P(RefusedCode, ChangesAndSavesNothing) {
    TLV_MSG* body = CodeAlone(GetParam());
    AAA_AppendStrTlvData(body, DOM_TLV_DOMAIN_NAME, "alpha");
    EXPECT_EQ(Set(body, 1), DOM_ERR_FAILED);
    EXPECT_EQ(CountOf(), 0u);
    EXPECT_EQ(Writes(), 0u);
    EXPECT_STREQ(name1_, "untouched");
}
INSTANTIATE_TEST_SUITE_P(Codes, RefusedCode,
                         ::testing::Values(2u, 5u, 6u, 12u, 13u, 29u, 58u, 74u, 92u, 159u, 160u,
                                           165u, 174u, 175u, 1000u, 0xFFFFFFFFu));

TEST_F(RestoreTest, CallersMessageStaysTheCallers) {
    const TlvPtr body(DOM_EncodeDomainName("alpha"));
    const TlvPtr msg(AAA_AddOpHead(DOM_OP_SET, body.get()));
    const std::string before = fake::ImageOf(msg.get());
    EXPECT_EQ(DOM_RestoreData(msg.get(), 0, 0, 0, nullptr, nullptr), DOM_OK);
    EXPECT_EQ(fake::ImageOf(msg.get()), before);
}

TEST_F(RestoreTest, EveryOperationButZeroDeletes) {
    for (uint32_t op : {1u, 2u, 3u, 6u, 0xFFFFFFFFu}) {
        AddDomain("alpha");
        EXPECT_EQ(Restore(DOM_EncodeDomainName("alpha"), op, 0), DOM_OK) << op;
        EXPECT_EQ(DOM_IsDomainExist("alpha"), 0u) << op;
    }
}

TEST_F(RestoreTest, OnlySaveOneSaves) {
    for (uint16_t save : {0, 2, 0x8000, 0xFFFF}) {
        EXPECT_EQ(Set(DOM_EncodeDomainName("alpha"), save), DOM_OK) << save;
        EXPECT_EQ(Writes(), 0u) << save;
    }
    EXPECT_EQ(Set(DOM_EncodeDomainName("alpha"), 1), DOM_OK);
    EXPECT_EQ(Writes(), 1u);
}

TEST_F(RestoreTest, FailedSaveIsTheResultAndTheChangeStays) {
    fake::FailAllDbmCalls(true);
    EXPECT_EQ(Set(DOM_EncodeDomainName("alpha"), 1), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_IsDomainExist("alpha"), 1u);
    EXPECT_STREQ(name1_, "alpha");
}

TEST_F(RestoreTest, FailedChangeIsNotSavedButNamed) {
    EXPECT_EQ(Set(DOM_EncodeSessionTime("nobody", 5), 1), DOM_ERR_FAILED);
    EXPECT_EQ(fake::DbmCalls().size(), 0u);
    EXPECT_STREQ(name1_, "nobody");
}

TEST_F(RestoreTest, UndecodableMessageNamesNothing) {
    EXPECT_EQ(Set(CodeAlone(DOM_MSG_DOMAIN_NAME), 1), DOM_ERR_FAILED);
    EXPECT_STREQ(name1_, "untouched");
    EXPECT_EQ(fake::DbmCalls().size(), 0u);
}

TEST_F(RestoreTest, NameIsCutToTheCapacityOfTheCaller) {
    const TlvPtr body(DOM_EncodeDomainName("alphabet"));
    const TlvPtr msg(AAA_AddOpHead(DOM_OP_SET, body.get()));
    char name[8] = "#######";
    EXPECT_EQ(DOM_RestoreData(msg.get(), 0, 6, 0, name, nullptr), DOM_OK);
    EXPECT_STREQ(name, "alpha");
    EXPECT_EQ(name[6], '#');
}

TEST_F(RestoreTest, CapacityZeroWritesNothing) {
    const TlvPtr body(DOM_EncodeDomainName("alpha"));
    const TlvPtr msg(AAA_AddOpHead(DOM_OP_SET, body.get()));
    char name = '#';
    EXPECT_EQ(DOM_RestoreData(msg.get(), 0, 0, 0, &name, &name), DOM_OK);
    EXPECT_EQ(name, '#');
}

TEST_F(RestoreTest, EmptyNamesLeaveTheOutputsUntouched) {
    EXPECT_EQ(Set(DOM_EncodeDeviceID(7)), DOM_OK);
    EXPECT_STREQ(name1_, "untouched");
    EXPECT_STREQ(name2_, "untouched");
}

TEST_F(RestoreTest, PolicyNameOutputIsUntouchedByDomains) {
    EXPECT_EQ(Set(DOM_EncodeDomainName("alpha")), DOM_OK);
    EXPECT_STREQ(name2_, "untouched");
}

TEST_F(RestoreTest, ChangesTheCallingRolesTablesOnly) {
    EXPECT_EQ(Set(DOM_EncodeDomainName("alpha")), DOM_OK);
    EXPECT_EQ(DOM_IsDomainExist("alpha"), 1u);
    EXPECT_EQ(fake::InRole(fake::kWorkingRole, [] { return DOM_IsDomainExist("alpha"); }), 0u);
}

TEST_F(RestoreTest, UpdateAppliesWithoutSaving) {
    const TlvPtr body(DOM_EncodeDomainName("alpha"));
    const TlvPtr headed(AAA_AddOpHead(DOM_OP_SET, body.get()));
    const TlvPtr msg(AAA_AddAaadHead(DOM_AAAD_HEAD_BATCH, DOM_AAAD_HEAD_SUB_TYPE, headed.get()));
    EXPECT_EQ(DOM_UpdateCfgData(msg.get(), sizeof name1_, sizeof name2_, name1_, name2_), DOM_OK);
    EXPECT_EQ(DOM_IsDomainExist("alpha"), 1u);
    EXPECT_STREQ(name1_, "alpha");
    EXPECT_EQ(fake::DbmCalls().size(), 0u);
}

TEST_F(RestoreTest, UpdateDeletesToo) {
    AddDomain("alpha");
    const TlvPtr body(DOM_EncodeDomainName("alpha"));
    const TlvPtr headed(AAA_AddOpHead(DOM_OP_DELETE, body.get()));
    const TlvPtr msg(AAA_AddAaadHead(DOM_AAAD_HEAD_BATCH, DOM_AAAD_HEAD_SUB_TYPE, headed.get()));
    EXPECT_EQ(DOM_UpdateCfgData(msg.get(), 0, 0, nullptr, nullptr), DOM_OK);
    EXPECT_EQ(DOM_IsDomainExist("alpha"), 0u);
}

TEST_F(RestoreTest, UpdateWithoutDaemonHeadIsRefused) {
    const TlvPtr body(DOM_EncodeDomainName("alpha"));
    const TlvPtr headed(AAA_AddOpHead(DOM_OP_SET, body.get()));
    EXPECT_EQ(DOM_UpdateCfgData(headed.get(), 0, 0, nullptr, nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_IsDomainExist("alpha"), 0u);
}

}  // namespace
}  // namespace aaadom
