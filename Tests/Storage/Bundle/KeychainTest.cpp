#include "Storage/Bundle/Keychain.h"

#include <sys/resource.h>

#include "Storage/Bundle/OrvaneCoreKC.h"
#include "Storage/Bundle/SecurityStore.h"
#include "Support/FakeKeychain.h"
#include "Support/OwnMounts.h"
#include "Support/Test.h"

namespace Quern {
namespace {

using namespace OrvaneTest;

// The keychain of the container, outside the cache folder.
std::string KeychainFile() {
    std::string path = CacheFolder();
    return path.substr(0, path.rfind('/')) + "/OrvaneCore.keychain";
}

std::string Get(const char* account) {
    return OrvaneCoreKC::passwordForService_account("service", account).value_or("(none)");
}

bool Set(const char* account, const char* password) {
    return OrvaneCoreKC::setPassword_forService_account(password, "service", account);
}

TEST(KeychainTest, KeepsPasswordsSealedForTheirUserAlone) {
    const std::string path = KeychainFile();
    EXPECT_TRUE(Set("a", "first"));
    EXPECT_TRUE(Set("a", "second secret"));
    EXPECT_TRUE(Set("b", "other"));
    EXPECT_TRUE(OrvaneCoreKC::setPassword_forService_account("elsewhere", "other service", "a"));
    EXPECT_EQ(Get("a"), "second secret");
    EXPECT_EQ(Get("c"), "(none)");

    struct stat state {};
    ASSERT_EQ(stat(path.c_str(), &state), 0);
    EXPECT_EQ(state.st_mode & 0777, 0600u);
    EXPECT_THAT(ReadFile(path), Not(HasSubstr("secret")));

    std::set<std::string> accounts;
    const auto items = OrvaneCoreKC::accountsForService("service");
    for (const KeychainItem& item : items.value())
        accounts.insert(item.account + "=" + item.data);
    EXPECT_THAT(accounts, ElementsAre("a=", "b="));
    EXPECT_EQ(OrvaneCoreKC::allAccounts()->size(), 3u);
    EXPECT_TRUE(OrvaneCoreKC::deletePasswordForService_account("service", "a"));
    EXPECT_EQ(Get("a"), "(none)");
    EXPECT_EQ(OrvaneCoreKC::allAccounts()->size(), 2u);
}

TEST(KeychainTest, ErrorsCarryTheStatusAndTheDomain) {
    KeychainFile();
    CapturedConsole console;
    Set("a", "");
    KCError error;
    EXPECT_FALSE(OrvaneCoreKC::passwordForService_account_error("service", "a", &error));  // empty counts as none
    EXPECT_EQ(error.code, errSecSuccess);
    EXPECT_EQ(OrvaneCoreKC::passwordDataForService_account("service", "a"), "");

    EXPECT_FALSE(OrvaneCoreKC::passwordForService_account_error("service", "b", &error));
    EXPECT_EQ(error.code, errSecItemNotFound);
    EXPECT_STREQ(error.domain, OrvaneCoreKC::kErrorDomain);
    EXPECT_FALSE(OrvaneCoreKC::accountsForService_error("nobody", &error));
    EXPECT_EQ(error.code, errSecItemNotFound);

    const std::array<const char*, 3> kIncomplete[] = {{nullptr, "s", "a"}, {"p", nullptr, "a"}, {"p", "s", nullptr}};
    for (const auto& [password, service, account] : kIncomplete) {
        error = {};
        EXPECT_FALSE(OrvaneCoreKC::setPassword_forService_account_error(password, service, account, &error));
        EXPECT_EQ(error.code, -1001);
    }
    EXPECT_FALSE(OrvaneCoreKC::deletePasswordForService_account_error("s", nullptr, &error));
    EXPECT_EQ(error.code, -1001);
}

TEST(KeychainTest, AKeychainThatCannotBeTrustedIsNotUsedAndSetAsideAtTheNextWrite) {
    const std::string path = KeychainFile();
    CapturedConsole console;
    EXPECT_EQ(Get("a"), "(none)");
    EXPECT_THAT(console.Take(), ElementsAre(Format("Info keychain %s does not exist", path.c_str())));

    const std::pair<const char*, std::function<void()>> kCases[] = {
        {"is damaged", [&] { WriteFile(path, ReadFile(path).substr(0, 60)); }},
        {"is damaged", [&] { WriteFile(path, R"({"version":1,"salt":"AAAA","items":[]})"); }},
        {"is damaged", [&] { WriteFile(path, std::string(100000, '[')); }},
        {"is open to other users and is not used", [&] { chmod(path.c_str(), 0644); }},
        {"is no file and is not used",
         [&] {
             unlink(path.c_str());
             mkdir(path.c_str(), 0700);
         }},
        {"is a link and is not used",
         [&] {
             rename(path.c_str(), (path + ".elsewhere").c_str());
             EXPECT_EQ(symlink((path + ".elsewhere").c_str(), path.c_str()), 0);
         }},
        {"belongs to another user and is not used", [&] { EXPECT_EQ(chown(path.c_str(), 12345, 12345), 0); }},
    };
    for (const auto& [what, spoil] : kCases) {
        if (geteuid() != 0 && std::string_view(what).starts_with("belongs")) break;  // only root may give it away
        ASSERT_TRUE(Set("a", "password"));
        ASSERT_EQ(Get("a"), "password");
        spoil();
        console.Take();
        EXPECT_EQ(Get("a"), "(none)");
        EXPECT_THAT(console.Take(), ElementsAre(Format("Error keychain %s %s", path.c_str(), what)));
        rmdir((path + ".unusable").c_str());
    }
    chmod(path.c_str(), 0644);
    EXPECT_TRUE(Set("b", "anew"));
    EXPECT_EQ(Get("b"), "anew");
    EXPECT_EQ(Get("a"), "(none)");
    EXPECT_NE(ReadFile(path + ".unusable"), "");
}

TEST(KeychainTest, AValueOpensUnderItsOwnNameAlone) {
    const std::string path = KeychainFile();
    CapturedConsole console;
    Set("a", "password");
    std::string text = ReadFile(path);
    const size_t name = text.find("\"YQ==\"");  // the account
    ASSERT_NE(name, std::string::npos);
    WriteFile(path, text.replace(name, 6, "\"Yg==\""));
    EXPECT_EQ(Get("b"), "(none)");
    EXPECT_THAT(console.Take(), Contains("Error keychain item b was not sealed here"));
}

TEST(KeychainTest, ProcessesThatWriteAtOnceLoseNothing) {
    constexpr int kProcesses = 4;
    constexpr int kAccounts = 8;
    CapturedConsole console;
    KeychainFile();
    std::vector<pid_t> children;
    for (int process = 0; process < kProcesses; ++process)
        children.push_back(Fork([process] {
            bool done = true;
            for (int i = 0; i < kAccounts; ++i)
                done &= Set(Format("%d.%d", process, i).c_str(), "password");
            return done ? 0 : 1;
        }));
    for (const pid_t child : children)
        EXPECT_EQ(Wait(child), 0);
    EXPECT_EQ(OrvaneCoreKC::allAccounts()->size(), static_cast<size_t>(kProcesses * kAccounts));
}

TEST(KeychainTest, AProcessForkedDuringAWriteHoldsUpNobody) {
    KeychainFile();
    Keychain::Current().Begin();
    const pid_t forked = Fork(pause);
    Keychain::Current().Commit();
    EXPECT_EQ(Wait(Fork([] { return Set("a", "password") ? 0 : 1; })), 0);
    kill(forked, SIGKILL);
    Wait(forked);
}

TEST(KeychainTest, AProcessStoppedInsideAWriteHoldsUpNobodyAndUndoesNothing) {
    const std::string path = KeychainFile();
    CapturedConsole console;
    ASSERT_TRUE(Set("a", "password"));
    const pid_t stopped = Fork([] {
        Keychain& keychain = Keychain::Current();
        keychain.Begin();
        keychain.SecItemAdd({"service", "b", "stale", {}});
        raise(SIGSTOP);
        return keychain.Commit() == errSecIO ? 0 : 1;
    });
    waitpid(stopped, nullptr, WUNTRACED);
    alarm(60);
    EXPECT_TRUE(Set("c", "meanwhile"));
    kill(stopped, SIGCONT);
    EXPECT_EQ(Wait(stopped), 0);
    EXPECT_EQ(Get("c"), "meanwhile");
    EXPECT_EQ(Get("b"), "(none)");
    EXPECT_THAT(FilesIn(path.substr(0, path.rfind('/'))), ElementsAre("Caches", "OrvaneCore.keychain"));
}

TEST(KeychainTest, AnAdditionThatFailsUndoesTheDeletionBeforeIt) {
    KeychainFile();
    Set("a", "password");
    Set("b", "password");
    Keychain& keychain = Keychain::Current();
    keychain.Begin();
    EXPECT_EQ(keychain.SecItemDelete({"service", "a"}), errSecSuccess);
    EXPECT_EQ(keychain.SecItemAdd({"service", "b", "twice", {}}), errSecDuplicateItem);
    keychain.Commit();
    EXPECT_EQ(Get("a"), "password");
}

TEST(KeychainTest, OneThatCannotBeReplacedIsWrittenInPlaceAndSurvivesBeingCutShort) {
    const std::string path = KeychainFile();
    Set("a", "password");
    ORVANE_OWN_MOUNTS();
    ASSERT_EQ(mount(path.c_str(), path.c_str(), nullptr, MS_BIND, nullptr), 0);
    EXPECT_TRUE(Set("b", "secret"));
    EXPECT_EQ(Get("b"), "secret");
    const std::string next = path.substr(0, path.rfind('/')) + "/.OrvaneCore.keychain.orvane-new";
    WriteFile(next, ReadFile(path));
    chmod(next.c_str(), 0600);
    WriteFile(path, ReadFile(path).substr(100));
    EXPECT_EQ(Get("b"), "secret");
    EXPECT_FALSE(OrvaneCoreKC::deletePasswordForService_account("service", "unknown"));  // changes nothing
    EXPECT_TRUE(Set("c", "more"));
    EXPECT_EQ(Get("b"), "secret");
}

TEST(KeychainTest, AMachineWithoutAnIdIsToldOnce) {
    KeychainFile();
    ORVANE_OWN_MOUNTS();
    for (const char* id : {"/etc/machine-id", "/var/lib/dbus/machine-id"})
        mount("/dev/null", id, nullptr, MS_BIND, nullptr);  // fails where there is none
    CapturedConsole console;
    EXPECT_TRUE(Set("a", "password"));
    EXPECT_TRUE(Set("a", "password"));
    EXPECT_EQ(Get("a"), "password");
    EXPECT_THAT(console.Take(), ElementsAre(testing::_, StartsWith("Warning this machine has no id")));
}

TEST(KeychainTest, AFullDiskLeavesTheOldOne) {
    const std::string path = KeychainFile();
    ASSERT_TRUE(Set("a", "password"));
    const std::string before = ReadFile(path);
    const std::vector<std::string> files = FilesIn(path.substr(0, path.rfind('/')));
    CapturedConsole console;
    signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
    const rlimit small{before.size(), limit.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    KCError error;
    EXPECT_FALSE(OrvaneCoreKC::setPassword_forService_account_error("more", "service", "b", &error));
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    EXPECT_EQ(error.code, errSecIO);
    EXPECT_THAT(console.Take(), ElementsAre(Format("Error keychain %s File too large", path.c_str())));
    EXPECT_EQ(ReadFile(path), before);
    EXPECT_EQ(FilesIn(path.substr(0, path.rfind('/'))), files);
    EXPECT_EQ(Get("a"), "password");
    EXPECT_EQ(Get("b"), "(none)");
}

TEST(SecurityStoreTest, StoresUnderOneServiceByDeleteAndAdd) {
    const auto keychain = FakeKeychain::Install();
    SecurityStore* const store = SecurityStore::GetInstance();
    EXPECT_STREQ(store->GetString("key", "default").c_str(), "default");
    store->SetString("key", "one");
    OrvaneCoreKC::setAccessibilityType("afterFirstUnlock");
    EXPECT_STREQ(OrvaneCoreKC::accessibilityType(), "afterFirstUnlock");
    store->SetString("key", "two");
    EXPECT_STREQ(store->GetString("key", "default").c_str(), "two");
    EXPECT_EQ((keychain->items[{"OrvaneCoreService", "key"}]), "two");
    EXPECT_THAT(keychain->calls, ElementsAre("delete key", "add key", "delete key", "add key afterFirstUnlock"));
    store->SetString("key", "");
    EXPECT_STREQ(store->GetString("key", "default").c_str(), "default");
    keychain->failure = errSecNotAvailable;
    store->SetString("key", "three");  // fails without a word
    EXPECT_STREQ(store->GetString("key", nullptr).c_str(), "");
    SecurityStore::ReleaseInstance();
}

}  // namespace
}  // namespace Quern
