#include "Base/QuernCommon.h"

#include "Storage/Bundle/BundleFactory.h"
#include "Support/FakeDevice.h"
#include "Support/FakeInfoDictionary.h"
#include "Support/FakeKeychain.h"
#include "Support/FakePlugins.h"
#include "Support/Test.h"

namespace {

using OrvaneTest::FakeInfoDictionary;
using Quern::BundleFactory;
using Quern::QuernCommon;

class QuernCommonTest : public testing::Test {
protected:
    size_t Saves() const { return keychain->calls.size() / 2; }

    const std::shared_ptr<OrvaneTest::FakeKeychain> keychain = OrvaneTest::FakeKeychain::Install();
    FakeInfoDictionary manifest;
    QuernCommon& common = *QuernCommon::GetInstance();
};

TEST_F(QuernCommonTest, FindsGameAndTransceiverInTheManifestWithoutBlanks) {
    const struct {
        const char *section, *key;
        const char* (QuernCommon::*get)();
    } kValues[] = {{"Orvane", "GameId", &QuernCommon::GetGameID},
                   {"OrvaneCore", "TransceiverUrl", &QuernCommon::GetTransceiverUrl}};
    for (const auto& value : kValues) {
        EXPECT_STREQ((common.*value.get)(), "");
        manifest.Set(value.section, value.key, FakeInfoDictionary::Integer(30045));
        EXPECT_STREQ((common.*value.get)(), "");
        manifest.Set(value.section, value.key, FakeInfoDictionary::Text("    "));
        EXPECT_STREQ((common.*value.get)(), "");
        // What was empty is looked up again; only blanks are cut, and not those inside.
        manifest.Set(value.section, value.key, FakeInfoDictionary::Text("  \t30 045\n  "));
        EXPECT_STREQ((common.*value.get)(), "\t30 045\n");
        manifest.Set(value.section, value.key, FakeInfoDictionary::Text("another"));
        EXPECT_STREQ((common.*value.get)(), "\t30 045\n");
    }
}

TEST_F(QuernCommonTest, KeepsTheUserForTheNextRun) {
    Quern::Bundle* bundle = BundleFactory::GetInstance()->GetDefaultBundle();
    bundle->Set("OrvaneCore", "channelid", "17");
    bundle->Set("OrvaneCore", "openid", "last user");
    EXPECT_NE(std::string(common.GetComParams()).find("\"cid\":\"\","), std::string::npos);
    EXPECT_STREQ(common.GetChannelID(), "17");
    EXPECT_STREQ(common.GetOpenID(), "last user");
    EXPECT_NE(std::string(common.GetComParams()).find("\"cid\":\"17\","), std::string::npos);

    manifest.Set("OrvaneCore", "channelid", FakeInfoDictionary::Text("18"));
    const size_t saves = Saves();
    EXPECT_TRUE(common.SetUserInfo("18", "this user"));
    EXPECT_EQ(Saves(), saves + 1);
    EXPECT_TRUE(common.SetUserInfo("18", "this user"));
    EXPECT_EQ(Saves(), saves + 1);
    EXPECT_STREQ(common.GetChannelID(), "18");
    EXPECT_STREQ(common.GetOpenID(), "this user");
    EXPECT_STREQ(bundle->Get("OrvaneCore", "channelid", "").c_str(), "18");
    EXPECT_STREQ(bundle->Get("OrvaneCore", "openid", "").c_str(), "this user");

    const char* const handedOut = common.GetOpenID();
    common.SetUserInfo("18", "another");
    common.SetUserInfo("18", "this user");
    EXPECT_EQ(common.GetOpenID(), handedOut) << "users that come back must not fill the memory";
}

TEST_F(QuernCommonTest, WritesTheCommonParametersToTheByte) {
    OrvaneTest::FakeDevice::Install();
    OrvaneTest::FakePlugin sample("Sample", "1.0.3"), pell("PELL", "3.2.0.418");
    manifest.Set("CFBundleIdentifier", FakeInfoDictionary::Text("com.example.game"));
    manifest.Set("CFBundleShortVersionString", FakeInfoDictionary::Text("1.2.3"));
    manifest.Set("CFBundleVersion", FakeInfoDictionary::Text("456"));
    manifest.Set("Orvane", "GameId", FakeInfoDictionary::Text(" 30045 "));
    common.SetUserInfo("7", "Zo\xC3\xAB \"Q\" \\ /");
    const char* kExpected =
        "{\"app_ver\":\"1.2.3.456\",\"bid\":\"com.example.game\",\"cid\":\"7\","
        "\"did\":\"320FC9484F9D0C0B45733192A5341E68\",\"gid\":\"30045\",\"mfrs\":\"Apple\",\"mtype\":\"Board9,4\","
        "\"oid\":\"Zo\\u00eb \\\"Q\\\" \\\\ /\",\"os\":\"iOS\",\"os_ver\":\"17.5\","
        "\"sdk_list\":{\"PELL\":{\"ver\":\"3.2.0.418\"},\"Sample\":{\"ver\":\"1.0.3\"}}}\n";
    EXPECT_STREQ(common.GetComParams(), kExpected);
    EXPECT_STREQ(common.GetComParams(), kExpected);
}

}  // namespace
