#include "Log/KeyFile.h"

#include "Support/Test.h"

namespace OrvaneLog {
namespace {

using OrvaneTest::TemporaryFolder;

TEST(KeyFile, TakesExactlyOneKey) {
    Quern::CurvePrivateKey key;
    std::string error;
    const std::string digits = "00112233445566778899aabbccddeeff00112233445566778899AABBCCDDEEFF";
    for (const std::string& good : {digits, digits + "\n", digits + "\r\n"})
        EXPECT_TRUE(ParseKey(good, key, error)) << error;
    EXPECT_EQ(ToHex(key.data(), 4), "00112233");
    EXPECT_EQ(key[31], 0xFF);

    const std::pair<std::string, const char*> wrong[] = {
        {"", "holds 0 characters"},
        {digits.substr(1), "holds 63 characters"},
        {digits + "0", "holds 65 characters"},
        {digits + "\n\n", "holds 65 characters"},
        {" " + digits.substr(1), "character 1 is no"},
        {digits.substr(0, 63) + "g", "character 64 is no"},
        {digits + digits, "public key"},
        {std::string(64, '0'), "no private key"},
        {std::string(64, 'f'), "no private key"},
    };
    for (const auto& [content, problem] : wrong) {
        error.clear();
        EXPECT_FALSE(ParseKey(content, key, error)) << content;
        EXPECT_THAT(error, HasSubstr(problem));
    }
}

TEST(KeyFile, MadeKeyIsPrivateAndNeverReplaced) {
    const TemporaryFolder folder;
    const std::string path = folder / "a.key";
    Quern::CurvePublicKey publicKey;
    Quern::CurvePrivateKey key;
    std::string error, warning;
    ASSERT_TRUE(MakeKeyFile(path, publicKey, error)) << error;
    const std::string content = OrvaneTest::ReadFile(path);
    EXPECT_EQ(content.size(), 65u);
    EXPECT_TRUE(ReadKeyFile(path, key, error, warning) && warning.empty()) << error << warning;
    EXPECT_FALSE(MakeKeyFile(path, publicKey, error));
    EXPECT_THAT(error, HasSubstr("File exists"));
    EXPECT_EQ(OrvaneTest::ReadFile(path), content);
    EXPECT_FALSE(MakeKeyFile(folder / "no/such/folder.key", publicKey, error));
    EXPECT_THAT(OrvaneTest::FilesIn(folder.Path()), ElementsAre("a.key")) << "nothing is left aside";

    chmod(path.c_str(), 0644);
    EXPECT_TRUE(ReadKeyFile(path, key, error, warning));
    EXPECT_FALSE(warning.empty());
    EXPECT_FALSE(ReadKeyFile(folder.Path(), key, error, warning)) << "a folder";
    EXPECT_FALSE(ReadKeyFile(folder.Write("large", std::string(100000, '0')), key, error, warning));
    EXPECT_THAT(error, HasSubstr("too large"));
}

}  // namespace
}  // namespace OrvaneLog
