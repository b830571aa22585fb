#include "Log/KeyFile.h"

#include <sys/stat.h>

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

    const struct {
        std::string content;
        const char* problem;
    } wrong[] = {
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
    for (const auto& one : wrong) {
        error.clear();
        EXPECT_FALSE(ParseKey(one.content, key, error)) << one.content;
        EXPECT_NE(error.find(one.problem), std::string::npos) << error;
    }
}

TEST(KeyFile, MadeKeyIsPrivateAndNeverReplaced) {
    const TemporaryFolder folder;
    const std::string path = folder / "a.key";
    Quern::CurvePublicKey publicKey, again;
    std::string error, warning;
    ASSERT_TRUE(MakeKeyFile(path, publicKey, error)) << error;
    struct stat facts;
    ASSERT_EQ(stat(path.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 07777, 0600u);
    EXPECT_EQ(facts.st_size, 65);

    Quern::CurvePrivateKey key, unchanged;
    ASSERT_TRUE(ReadKeyFile(path, key, error, warning)) << error;
    EXPECT_TRUE(warning.empty());
    ASSERT_TRUE(Quern::CurvePublicFromPrivate(key, again));
    EXPECT_EQ(publicKey, again);

    EXPECT_FALSE(MakeKeyFile(path, again, error));
    EXPECT_NE(error.find("File exists"), std::string::npos) << error;
    EXPECT_TRUE(ReadKeyFile(path, unchanged, error, warning));
    EXPECT_EQ(unchanged, key);
    EXPECT_FALSE(MakeKeyFile(folder / "no/such/folder.key", again, error));
    size_t files = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder.Path()))
        ++files;
    EXPECT_EQ(files, 1u) << "nothing is left aside";

    chmod(path.c_str(), 0644);
    EXPECT_TRUE(ReadKeyFile(path, key, error, warning));
    EXPECT_FALSE(warning.empty());
    EXPECT_FALSE(ReadKeyFile(folder.Path(), key, error, warning)) << "a folder";
    EXPECT_FALSE(ReadKeyFile(folder.Write("large", std::string(100000, '0')), key, error, warning));
    EXPECT_NE(error.find("too large"), std::string::npos) << error;
}

}  // namespace
}  // namespace OrvaneLog
