// NAS-ID profiles and bindings in messages.
#include <aaadom/nas_id_codec.h>

#include "unit/codec/codec_test_support.h"

namespace {

using namespace codec_test;

class NasIdCodec : public CodecTest {};

TEST_F(NasIdCodec, ProfileIsItsName) {
    const TlvPtr msg(DOM_EncodeNasIdProfile("office"));
    EXPECT_EQ(TypesOf(msg.get()), (std::vector<uint32_t>{0, 34}));
    EXPECT_EQ(NumberOf(msg.get(), 0), 16u);
    char name[DOM_NASID_NAME_SIZE] = "?";
    EXPECT_EQ(DOM_DecodeNasIdProfile(msg.get(), name), DOM_OK);
    EXPECT_STREQ(name, "office");
}

TEST_F(NasIdCodec, ProfileThatCannotBeEncodedIsNull) {
    EXPECT_EQ(DOM_EncodeNasIdProfile(nullptr), nullptr);
    ExpectEveryFailureGivesNull([] { return DOM_EncodeNasIdProfile("office"); });
}

TEST_F(NasIdCodec, ProfileNameIsCutTo31Characters) {
    for (const size_t length : {31u, 32u, 300u}) {
        const TlvPtr msg(DOM_EncodeNasIdProfile(std::string(length, 'p').c_str()));
        char name[DOM_NASID_NAME_SIZE];
        EXPECT_EQ(DOM_DecodeNasIdProfile(msg.get(), name), DOM_OK);
        EXPECT_EQ(name, std::string(31, 'p'));
    }
}

TEST_F(NasIdCodec, ProfileWithoutNameFailsAndANullOutputIsSkipped) {
    char name[DOM_NASID_NAME_SIZE] = "?";
    EXPECT_EQ(DOM_DecodeNasIdProfile(Message(16).get(), name), DOM_ERR_FAILED);
    EXPECT_STREQ(name, "");
    EXPECT_EQ(DOM_DecodeNasIdProfile(nullptr, name), DOM_ERR_FAILED);
    Message msg(16);
    msg.Text(34, "office");
    EXPECT_EQ(DOM_DecodeNasIdProfile(msg.get(), nullptr), DOM_OK);
}

TEST_F(NasIdCodec, BindingIsItsNamesAndA16BitVlan) {
    const TlvPtr msg(DOM_EncodeNasidBindVlanId("office", "nas-1", 0xABCD));
    EXPECT_EQ(TypesOf(msg.get()), (std::vector<uint32_t>{0, 34, 35, 36}));
    EXPECT_EQ(NumberOf(msg.get(), 0), 17u);
    EXPECT_EQ(aaadom::FindTlv(msg.get(), 36).Length(), 2u);
    char profile[DOM_NASID_NAME_SIZE] = "?";
    char nas_id[DOM_NASID_NAME_SIZE] = "?";
    uint16_t vlan = 0;
    EXPECT_EQ(DOM_DecodeNasIdBindVlanId(msg.get(), profile, nas_id, &vlan), DOM_OK);
    EXPECT_STREQ(profile, "office");
    EXPECT_STREQ(nas_id, "nas-1");
    EXPECT_EQ(vlan, 0xABCD);
}

TEST_F(NasIdCodec, BindingThatCannotBeEncodedIsNull) {
    EXPECT_EQ(DOM_EncodeNasidBindVlanId(nullptr, "n", 1), nullptr);
    EXPECT_EQ(DOM_EncodeNasidBindVlanId("p", nullptr, 1), nullptr);
    ExpectEveryFailureGivesNull([] { return DOM_EncodeNasidBindVlanId("p", "n", 1); });
}

TEST_F(NasIdCodec, BindingNamesAreCutTo31Characters) {
    const TlvPtr msg(
        DOM_EncodeNasidBindVlanId(std::string(40, 'p').c_str(), std::string(40, 'n').c_str(), 1));
    char profile[DOM_NASID_NAME_SIZE];
    char nas_id[DOM_NASID_NAME_SIZE];
    EXPECT_EQ(DOM_DecodeNasIdBindVlanId(msg.get(), profile, nas_id, nullptr), DOM_OK);
    EXPECT_EQ(profile, std::string(31, 'p'));
    EXPECT_EQ(nas_id, std::string(31, 'n'));
}

TEST_F(NasIdCodec, BindingWithoutAnyOfItsTlvsFails) {
    const Message code_only(17);
    Message strange(17);
    strange.Text(37, "x");
    for (TLV_MSG* msg : {code_only.get(), strange.get(), static_cast<TLV_MSG*>(nullptr)}) {
        EXPECT_EQ(DOM_DecodeNasIdBindVlanId(msg, nullptr, nullptr, nullptr), DOM_ERR_FAILED);
    }
}

// The last read decides alone: one TLV is enough, and the other outputs stay.
TEST_F(NasIdCodec, OneTlvOfABindingIsEnough) {
    Message msg(17);
    ASSERT_EQ(AAA_AppendUSHORTTlvData(msg.get(), 36, 7), 0u);
    char profile[DOM_NASID_NAME_SIZE] = "?";
    char nas_id[DOM_NASID_NAME_SIZE] = "?";
    uint16_t vlan = 0;
    EXPECT_EQ(DOM_DecodeNasIdBindVlanId(msg.get(), profile, nas_id, &vlan), DOM_OK);
    EXPECT_STREQ(profile, "?");
    EXPECT_STREQ(nas_id, "?");
    EXPECT_EQ(vlan, 7);
}

TEST_F(NasIdCodec, LastReadOfABindingDecides) {
    Message good_last(17);
    good_last.Raw(36, "\x01").Text(34, "office");  // the VLAN is too short
    Message bad_last(17);
    bad_last.Text(34, "office").Raw(36, "\x01");
    char profile[DOM_NASID_NAME_SIZE] = "?";
    uint16_t vlan = 9;
    EXPECT_EQ(DOM_DecodeNasIdBindVlanId(good_last.get(), profile, nullptr, &vlan), DOM_OK);
    EXPECT_EQ(vlan, 9);
    EXPECT_EQ(DOM_DecodeNasIdBindVlanId(bad_last.get(), profile, nullptr, &vlan), DOM_ERR_FAILED);
    EXPECT_EQ(vlan, 9);
    EXPECT_EQ(DOM_DecodeNasIdBindVlanId(bad_last.get(), nullptr, nullptr, nullptr), DOM_ERR_FAILED)
        << "also without an output";
}

TEST_F(NasIdCodec, DamagedMessagesStayInsideTheirOutputs) {
    const TlvPtr msg(DOM_EncodeNasidBindVlanId(std::string(31, 'p').c_str(),
                                               std::string(31, 'n').c_str(), 0xFFFF));
    ForEveryDamage(msg.get(), [](TLV_MSG* damaged) {
        struct {
            char profile[DOM_NASID_NAME_SIZE];
            char nas_id[DOM_NASID_NAME_SIZE];
            uint32_t guard;
        } out{};
        out.guard = 0x5AA5;
        uint16_t vlan;
        (void)DOM_DecodeNasIdBindVlanId(damaged, out.profile, out.nas_id, &vlan);
        EXPECT_LT(strnlen(out.profile, sizeof out.profile), sizeof out.profile);
        EXPECT_LT(strnlen(out.nas_id, sizeof out.nas_id), sizeof out.nas_id);
        (void)DOM_DecodeNasIdProfile(damaged, out.nas_id);
        EXPECT_EQ(out.guard, 0x5AA5u);
    });
}

}  // namespace
