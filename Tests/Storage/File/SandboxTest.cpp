#include "Storage/File/Sandbox.h"

#include "Storage/File/CPath.h"
#include "Support/Test.h"

namespace {

namespace fs = std::filesystem;

bool CanBeRead(const std::string& path) {
    const int descriptor = Quern::Sandbox::Current().OpenToRead(path);
    if (descriptor >= 0) close(descriptor);
    return descriptor >= 0;
}

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
    fs::create_symlink(home + "/keys/K.txt", home + "/Documents/link");
    fs::create_symlink(home + "/keys", home + "/in");
    fs::create_symlink("/etc", home + "/out");
    mkfifo((home + "/keys/pipe").c_str(), 0600);
    fs::create_directories(home + "-beside");
    OrvaneTest::WriteFile(home + "-beside/K.txt", "outside");
    const auto expect = [&](bool isThere, bool isRead, std::initializer_list<const char*> paths) {
        for (const char* path : paths) {
            EXPECT_EQ(!Quern::Sandbox::Current().Resolve(home + path).empty(), isThere) << path;
            EXPECT_EQ(CanBeRead(home + path), isRead) << path;
        }
    };
    expect(true, true, {"/keys/K.txt", "/keys/.K", "/Documents/myUserDefaults.json"});
    // What a link leads to is read by that name alone.
    expect(true, false,
           {"/Library/../keys/../Documents", "/Documents/link", "/in/K.txt", "/keys/../keys/K.txt", "/keys/pipe", ""});
    expect(false, false,
           {"/Library/OrvaneCore.keychain", "/keys/K", "/keys/.K.orvane-new", "/keys/.K.orvane-new-X1",
            "/keys/K.unusable", "/Documents/hard", "/Documents/hard2", "/Documents/.orvanecore.KEYCHAIN.bak",
            "/Documents/userdefaults.JSON", "/Documents/UserDefaults.json.d/x", "/Documents/aside", "/../..",
            "/keys/K.txt/", "/out/passwd", "/../../etc/passwd", "-beside/K.txt"});
    EXPECT_FALSE(CanBeRead(home + "/keys/K.txt" + std::string("\0", 1)));
    fs::remove_all(home + "-beside");
}

TEST(SandboxTest, HidesASecretThatIsBeingReplaced) {
    const std::string home = fs::canonical(fs::path(OrvaneTest::CacheFolder()) / "../.."), secret = home + "/keys/K";
    fs::create_directories(home + "/keys");
    OrvaneTest::WriteFile(secret, "old");
    fs::create_symlink(secret, home + "/Library/UserDefaults.json");
    std::atomic<bool> isOver{false};
    std::thread writer([&] {
        while (!isOver) {
            OrvaneTest::WriteFile(home + "/keys/.K.orvane-new", "new");
            fs::rename(home + "/keys/.K.orvane-new", secret);
        }
    });
    int reads = 0;
    for (int i = 0; i < 500; ++i)
        reads += CanBeRead(secret);
    isOver = true;
    writer.join();
    EXPECT_EQ(reads, 0);
}

}  // namespace
