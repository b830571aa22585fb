#include "Storage/File/Sandbox.h"

#include "Storage/File/CPath.h"
#include "Support/Test.h"
#include "Support/TestContainer.h"

namespace {

namespace fs = std::filesystem;

TEST(SandboxTest, HidesSecretsUnderEveryName) {
    OrvaneTest::CacheFolder();
    const std::string home = fs::canonical(Quern::CPath::GetAppPath());
    for (const char* folder : {"/Library", "/Documents/UserDefaults.json.d", "/keys"})
        fs::create_directories(home + folder);
    for (const char* name :
         {"/keys/K", "/keys/.K.orvane-new", "/keys/.K.orvane-new-X1", "/keys/K.unusable", "/keys/K.txt", "/keys/.K",
          "/Library/UserDefaults.json", "/Documents/UserDefaults.json.d/x", "/Documents/.orvanecore.KEYCHAIN.bak",
          "/Documents/userdefaults.JSON", "/Documents/myUserDefaults.json", "/Documents/aside"})
        OrvaneTest::WriteFile(home + name, name);
    fs::create_symlink(home + "/keys/K", home + "/Library/OrvaneCore.keychain");
    fs::create_symlink(home + "/Documents/aside", home + "/Library/UserDefaults.json.unusable");
    fs::create_hard_link(home + "/keys/K", home + "/Documents/hard");
    fs::create_hard_link(home + "/Library/UserDefaults.json", home + "/Documents/hard2");
    const std::pair<const char*, bool> cases[] = {
        {"/Library/OrvaneCore.keychain", false},
        {"/keys/K", false},
        {"/keys/.K.orvane-new", false},
        {"/keys/.K.orvane-new-X1", false},
        {"/keys/K.unusable", false},
        {"/keys/K.txt", true},
        {"/keys/.K", true},
        {"/Documents/hard", false},
        {"/Documents/hard2", false},
        {"/Documents/.orvanecore.KEYCHAIN.bak", false},
        {"/Documents/userdefaults.JSON", false},
        {"/Documents/UserDefaults.json.d/x", false},
        {"/Documents/myUserDefaults.json", true},
        {"/Documents/aside", false},
        {"/Library/../keys/../Documents", true},
        {"/../..", false},
    };
    for (const auto& [path, isThere] : cases)
        EXPECT_EQ(!Quern::Sandbox::Current().Resolve(home + path).empty(), isThere) << path;
}

}  // namespace
