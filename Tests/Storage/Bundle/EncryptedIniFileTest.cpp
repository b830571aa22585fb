#include <pthread.h>
#include <sys/syscall.h>

#include "Serializer/Codec/Base64.h"
#include "Serializer/Codec/EllipticCurve.h"
#include "Serializer/Codec/Hex.h"
#include "Serializer/Codec/KxSymmetry.h"
#include "Serializer/Codec/Md5.h"
#include "Serializer/Codec/PeerKey.h"
#include "Storage/Bundle/BundleImpl.h"
#include "Storage/Bundle/EncryptedIniFormat.h"
#include "Storage/Bundle/IniFile.h"
#include "Support/FakeKeychain.h"
#include "Support/LogRecords.h"
#include "Support/OwnMounts.h"
#include "Support/Test.h"

namespace {

std::function<void(const std::string&)> onDisk;  // told what the disk is asked for, before it is done

}  // namespace

// In the place of those of the C library, for the whole program.
int fsync(int descriptor) {
    if (onDisk) onDisk("sync");
    return static_cast<int>(syscall(SYS_fsync, descriptor));
}

int renameat(int from, const char* name, int to, const char* newName) noexcept {
    if (onDisk) onDisk("rename");
    return static_cast<int>(syscall(SYS_renameat2, from, name, to, newName, 0));
}

namespace Quern {
namespace {

using namespace OrvaneTest;

std::string FromHex(const std::string& digits) {
    std::string bytes(digits.size() / 2, '\0');
    EXPECT_TRUE(HexToBuffer(digits.c_str(), reinterpret_cast<uint8_t*>(bytes.data()), bytes.size()));
    return bytes;
}

// A file made by another program, in another language, from the layout alone: the lines "", "[Orvane]",
// "name=Sun Wukong # the king", "count=-17", for the development peer, and the key that opens it.
const char kVectorKey[] = "5e09d58c526a9bcfbb9902d162fa8856";
const char kVector[] =
    "e40802006200000038000000010040007e6ce68b62540975c525465cc74f404cd69dd57678184f7c8fb5f699f76edb2ed9cbe116"
    "18c25afd1167809f35217336441733c2d1348b4f46b14efbd83b4ee81000b95d6e70fed8a96ced6d2fcc2f12cae51b2f8ecfae41"
    "5cfb79eab73dece28006425a6c5c72f8c31911f9486ce114d6c1d9f4123ad1426af25fdbbdfaebcb46e8f78222c4230ed8c9";

class EncryptedIniFileTest : public testing::Test {
protected:
    std::unique_ptr<IniFile> Open() {
        std::unique_ptr<IniFile> file(IniFile::CreateEncrptedFile(path.c_str()));
        loaded = file->Load();
        return file;
    }
    // Saves a value of "a" in the section "s".
    static bool Save(IniFile& file, const std::string& value) {
        return file.WriteString("s", "a", value.c_str()) && file.Save();
    }
    std::string& StoredKey() { return keychain->items[{"OrvaneCoreService", "store.config"}]; }
    void StoreVector() {
        const std::string key = FromHex(kVectorKey);
        StoredKey() = base64_encode(reinterpret_cast<const unsigned char*>(key.data()), 16);
        WriteFile(path, FromHex(kVector));
    }

    const std::string path = CacheFolder() + "/store.config";
    const std::shared_ptr<FakeKeychain> keychain = FakeKeychain::Install();
    CapturedConsole console;
    bool loaded = false;
};

TEST_F(EncryptedIniFileTest, ReadsAFileThatAnotherProgramMade) {
    StoreVector();
    const auto file = Open();
    ASSERT_TRUE(loaded);
    EXPECT_STREQ(file->ReadString("Orvane", "name", "").c_str(), "Sun Wukong");
    EXPECT_EQ(file->ReadInt("Orvane", "count", 0), -17);
}

TEST_F(EncryptedIniFileTest, WritesHeadKeyAndBodyForThePeer) {
    const auto file = Open();
    file->WriteString("s", "a", "one");
    file->WriteString("s", "b", "two");
    ASSERT_TRUE(file->Save());
    const std::string bytes = ReadFile(path);
    const std::string text = "\n[s]\na=one\nb=two";
    const std::string body = bytes.substr(98);
    ASSERT_EQ(static_cast<int>(body.size()), Orvane::Quern::kx_symmetry_encrypt2_len(static_cast<int>(text.size())));
    EXPECT_EQ(bytes.substr(0, 16), FromHex("e4080200620000002000000001004000"));
    EXPECT_EQ(bytes.substr(80, 2), FromHex("1000"));
    char digest[16];
    Md5HashBuffer(digest, body.data(), static_cast<int>(body.size()));
    EXPECT_EQ(bytes.substr(82, 16), std::string(digest, 16));

    // The keychain's key is the one that the holder of the peer's private key computes from the head.
    CurvePublicKey publicKey;
    std::copy_n(bytes.begin() + 16, 64, publicKey.begin());
    CurveSecret secret;
    ASSERT_TRUE(CurveSharedSecret(publicKey, DevelopmentKey(), secret));
    EXPECT_EQ(base64_decode(StoredKey()), std::string(secret.begin(), secret.begin() + 16));
    std::string plain(body.size(), '\0');
    int length = static_cast<int>(plain.size());
    ASSERT_TRUE(Orvane::Quern::kx_symmetry_decrypt2(body.data(), length, base64_decode(StoredKey()).data(),
                                                    plain.data(), &length));
    EXPECT_EQ(plain.substr(0, static_cast<size_t>(length)), text);

    const std::string firstKey = StoredKey();
    file->Save();
    EXPECT_NE(StoredKey(), firstKey);
    EXPECT_NE(ReadFile(path).substr(98), body);
    EXPECT_THAT(keychain->calls,
                ElementsAre("delete store.config", "add store.config", "delete store.config", "add store.config"));
}

TEST_F(EncryptedIniFileTest, SaysTheFirstThingThatIsWrong) {
    constexpr size_t kWhole = 154;
    // A change at a place, in hexadecimal, the length of the whole file, and the line.
    const std::tuple<size_t, const char*, size_t, const char*> kCases[] = {
        {0, "", 11, "Error config file read headbase failed"},
        {0, "e308", 12, "Error config file magic not match file magic is 2275, program magic is 2276"},
        {0, "ffff", kWhole, "Error config file magic not match file magic is 65535, program magic is 2276"},
        {2, "0100", kWhole, "Error config file version not match, file version is 1, program version is 2"},
        {4, "61", kWhole, "Error config file read headext failed"},
        {0, "", 97, "Error config file read headext failed"},
        {12, "0200", kWhole, "Error config file Encytion is not TEA, encyption is 2"},
        {14, "4100", kWhole, "Error config file PubKeyLen is not 64, PubKeyLen is 65"},
        {80, "1100", kWhole, "Error config file Md5Len is not 16, Md5Len is 17"},
        {0, "", kWhole - 1, "Error config file read body failed!"},
        {8, "ffffff7f", kWhole, "Error config file read body failed!"},
        {8, "ffffffff", kWhole, "Error config file read body failed!"},
        {120, "00", kWhole, "Error config file md5 check failed!"},
        {8, "00000000", kWhole, "Error config file md5 check failed!"},
    };
    StoreVector();
    const auto file = Open();
    for (const auto& [at, change, length, line] : kCases) {
        std::string bytes = FromHex(kVector).substr(0, length);
        bytes.replace(at, strlen(change) / 2, FromHex(change));
        WriteFile(path, bytes);
        console.Take();
        EXPECT_FALSE(file->Load()) << line;
        EXPECT_THAT(console.Take(), ElementsAre(line));
        EXPECT_EQ(file->ReadInt("Orvane", "count", 0), -17);  // what was in memory stays
    }

    std::string newer = FromHex(kVector);
    newer[2] = 3;
    WriteFile(path, newer + "what follows the body is ignored");
    EXPECT_TRUE(file->Load());

    for (const char* key : {"", "AAAA", "XgnVjFJqm8+7mQLRYvqIVw=="}) {  // none, too short, another
        StoredKey() = key;
        console.Take();
        EXPECT_FALSE(file->Load());
        EXPECT_THAT(console.Take(), ElementsAre("Error config file kx_symmetry_decrypt2 failed!"));
    }
    unlink(path.c_str());
    EXPECT_FALSE(file->Load());
    EXPECT_THAT(console.Take(), ElementsAre(Format("Info config file %s is not exist", path.c_str())));
}

TEST_F(EncryptedIniFileTest, AFileThatDoesNotOpenIsKeptAsRawLines) {
    StoreVector();
    StoredKey().clear();
    const auto file = Open();
    EXPECT_STREQ(file->ReadString("Orvane", "name", "nothing").c_str(), "nothing");
    EXPECT_TRUE(Save(*file, "1"));
    ASSERT_TRUE(file->Load());
    EXPECT_EQ(file->ReadInt("s", "a", 0), 1);
}

TEST_F(EncryptedIniFileTest, AKeychainThatFailsLeavesTheOldFileAndNoFileIsBetterThanNone) {
    keychain->failure = errSecNotAvailable;
    const auto file = Open();
    EXPECT_TRUE(Save(*file, "1"));
    EXPECT_EQ(ReadFile(path).size(), 98u + 24u);  // for the holder of the peer's private key
    keychain->failure = errSecSuccess;
    file->Save();
    const std::string old = ReadFile(path);
    keychain->failure = errSecNotAvailable;
    EXPECT_TRUE(Save(*file, "2"));
    EXPECT_EQ(ReadFile(path), old);
    EXPECT_EQ(Open()->ReadInt("s", "a", 0), 1);
}

TEST_F(EncryptedIniFileTest, ASaveCutShortBehindItsKeyIsFinishedByTheNextLoadOrSave) {
    const std::string next = CacheFolder() + "/.store.config.orvane-new";
    const auto file = Open();
    EXPECT_TRUE(Save(*file, "1"));
    const std::string old = ReadFile(path);
    EXPECT_TRUE(Save(*file, "2"));
    const std::string whole = ReadFile(path);
    const auto cutShort = [&](const std::string& content) {
        unlink(path.c_str());
        if (!content.empty()) WriteFile(path, content);
        WriteFile(next, whole);
        ASSERT_EQ(chmod(next.c_str(), 0600), 0);
    };
    for (const std::string& content : {old, std::string(), old.substr(0, 100)}) {
        cutShort(content);
        console.Take();
        const auto found = Open();
        EXPECT_TRUE(loaded);
        EXPECT_EQ(found->ReadInt("s", "a", 0), 2);
        EXPECT_THAT(console.Take(), Each(StartsWith("Info load config file cost")));
        EXPECT_EQ(ReadFile(path), whole);
        EXPECT_THAT(FilesIn(CacheFolder()), ElementsAre("store.config"));
    }
    cutShort(old);
    keychain->failure = errSecNotAvailable;  // this save comes to nothing; the one before it must not suffer
    file->Save();
    EXPECT_EQ(ReadFile(path), whole);

    keychain->failure = errSecSuccess;
    file->Save();
    WriteFile(next, whole);  // of a save that did not come as far as its key: dropped
    EXPECT_NE(ReadFile(path), whole);
    ASSERT_TRUE(file->Load());
    file->Save();
    EXPECT_THAT(FilesIn(CacheFolder()), ElementsAre("store.config"));
}

TEST_F(EncryptedIniFileTest, ASaveSyncsThenMovesTheKeyThenTheNameAndLooksAgain) {
    const auto file = Open();
    onDisk = [this](const std::string& what) {
        keychain->calls.push_back(what);
        if (what == "rename") StoredKey() = "of one who went past";
    };
    file->Save();
    onDisk = nullptr;
    EXPECT_THAT(keychain->calls, ElementsAre("sync", "delete store.config", "add store.config", "rename",
                                             "delete store.config", "add store.config"));
    EXPECT_TRUE(file->Load());
}

TEST_F(EncryptedIniFileTest, ABatchIsOneSaveOfWhatTheCallsAloneSave) {
    Keychain::Use(nullptr);  // the one with a file
    Value configuration;
    for (int i = 0; i < 100; ++i)
        configuration[("module" + std::to_string(i % 7)).c_str()][("key" + std::to_string(i)).c_str()] = Value(i);
    const auto store = [&configuration](BundleImpl& bundle) {
        bundle.RemoveAll();
        bundle.Set("OrvaneCore", "RemoteConfigUrl", "http://server");
        bundle.Set(configuration);
        bundle.RemoveValueForKey("module3", "key1");
    };
    std::map<std::string, int> asked;
    onDisk = [&asked](const std::string& what) { ++asked[what]; };
    const auto bundle = std::make_unique<BundleImpl>(path.c_str());
    bundle->SetCache("before", "key", 1);  // which nobody has read yet
    BundleImpl::Batch batch(*bundle);
    {
        const BundleImpl::Batch inner(*bundle);
        store(*bundle);
        EXPECT_EQ(bundle->Get("module3", "key3", 0), 3);
    }
    std::thread([&bundle] {
        EXPECT_EQ(bundle->Get("before", "key", 0), 1) << "the others read what was before";
        EXPECT_EQ(bundle->Get("module3", "key3", 0), 0);
        EXPECT_TRUE(bundle->Set("other", "key", 1) && bundle->SaveCacheToFile());
        EXPECT_EQ(bundle->Get("other", "key", 0), 1);
        EXPECT_TRUE(bundle->RemoveSection("other"));
    }).join();
    EXPECT_EQ(asked.size(), 0u);
    EXPECT_TRUE(batch.Commit() && batch.Commit());
    EXPECT_EQ(asked["sync"], 2);
    EXPECT_EQ(asked["rename"], 2);
    {
        const BundleImpl::Batch idle(*bundle);
        EXPECT_TRUE(bundle->SetIfDifferent("OrvaneCore", "RemoteConfigUrl", "http://server"));
        EXPECT_FALSE(bundle->RemoveSection("missing") || bundle->Set("s", nullptr, 1));
    }
    EXPECT_EQ(asked["sync"], 2);
    EXPECT_TRUE(bundle->SetIfDifferent("OrvaneCore", "none", ""));
    EXPECT_TRUE(bundle->SetIfDifferent("OrvaneCore", "none", ""));
    EXPECT_EQ(asked["sync"], 4);
    EXPECT_TRUE(bundle->RemoveValueForKey("OrvaneCore", "none"));
    onDisk = nullptr;
}

TEST_F(EncryptedIniFileTest, ABatchOfAnyDocumentIsWhatTheCallsAloneSave) {
    std::mt19937 random(11);
    const auto name = [&random] {
        static const char* const kPieces[] = {"[", "]", "[a]", "=", "#", " ", "\n", ",", "a", "b", "key", ""};
        std::string text;
        for (size_t pieces = 1 + random() % 3; pieces > 0; --pieces)
            text += kPieces[random() % std::size(kPieces)];
        return text;
    };
    for (int round = 0; round < 30; ++round) {
        std::string saved[2];
        Value documents[2];
        for (Value& document : documents)
            for (int member = 0; member < 25; ++member)
                document[name().c_str()][name().c_str()] = Value(name().c_str());
        const auto store = [](BundleImpl& bundle, const Value& document) {
            bundle.RemoveAll();
            bundle.Set("OrvaneCore", "RemoteConfigUrl", "http://server");
            bundle.Set(document);
        };
        for (const bool isBatched : {false, true}) {
            const auto bundle = std::make_unique<BundleImpl>(path.c_str());
            for (const Value& document : documents) {
                std::optional<BundleImpl::Batch> batch;
                if (isBatched) batch.emplace(*bundle);
                store(*bundle, document);
            }
            const size_t calls = keychain->calls.size();
            {
                const BundleImpl::Batch again(*bundle);
                store(*bundle, documents[1]);
            }
            EXPECT_EQ(keychain->calls.size(), calls) << "the same lines are not saved again";
            BundleImpl(path.c_str());  // deciphers what lies there, and leaves it as plain text
            saved[isBatched] = ReadFile(path);
        }
        EXPECT_EQ(saved[0], saved[1]) << round;
        EXPECT_NE(saved[0], "");
    }
}

TEST_F(EncryptedIniFileTest, ASaveThatTheDiskRefusedIsMadeUpFor) {
    ORVANE_OWN_MOUNTS();
    ASSERT_EQ(mount("", CacheFolder().c_str(), "tmpfs", 0, "size=64k"), 0);
    const auto bundle = std::make_unique<BundleImpl>(path.c_str());
    bundle->Set("s", "a", std::string(20000, '1').c_str());
    const std::string value(40000, '2'), before = ReadFile(path), filler = CacheFolder() + "/filler";
    const auto setInBatch = [&] {
        const BundleImpl::Batch batch(*bundle);
        bundle->RemoveAll();
        bundle->Set("s", "a", value.c_str());
    };
    WriteFile(filler, std::string(30000, 'x'));
    EXPECT_TRUE(bundle->SetIfDifferent("s", "a", value.c_str()));
    setInBatch();
    EXPECT_EQ(ReadFile(path), before);
    unlink(filler.c_str());
    EXPECT_TRUE(bundle->SetIfDifferent("s", "a", value.c_str()));
    const std::string after = ReadFile(path);
    EXPECT_GT(after.size(), 40000u);
    setInBatch();
    EXPECT_TRUE(bundle->SetIfDifferent("s", "a", value.c_str()));
    EXPECT_EQ(ReadFile(path), after) << "there was nothing to save";
    bundle->SetCache("s", "b", 1);
    EXPECT_TRUE(bundle->SetIfDifferent("s", "a", value.c_str()));
    EXPECT_NE(ReadFile(path), after);
}

TEST_F(EncryptedIniFileTest, NoRoomForASaveMovesNoKey) {
    ORVANE_OWN_MOUNTS();
    ASSERT_EQ(mount("", CacheFolder().c_str(), "tmpfs", 0, "size=64k"), 0);
    const auto file = Open();
    EXPECT_TRUE(Save(*file, std::string(20000, '1')));
    EXPECT_TRUE(Save(*file, std::string(100000, '2')));
    ASSERT_TRUE(file->Load());
    EXPECT_EQ(file->ReadString("s", "a", "").length(), 20000);
    EXPECT_TRUE(Save(*file, std::string(40000, '3')));  // not beside the old one, but in its place
    ASSERT_EQ(mount(path.c_str(), path.c_str(), nullptr, MS_BIND, nullptr), 0);
    ASSERT_TRUE(file->Load());
    EXPECT_EQ(file->ReadString("s", "a", "").length(), 40000);
    EXPECT_TRUE(Save(*file, "4"));
    ASSERT_TRUE(file->Load());
    EXPECT_EQ(file->ReadInt("s", "a", 0), 4);
}

TEST_F(EncryptedIniFileTest, NoKeyIsLeftOnTheStack) {
    const auto file = Open();
    std::vector<char> stack(1 << 20);
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstack(&attributes, stack.data(), stack.size()), 0);
    const auto save = [](void* of) -> void* { return static_cast<IniFile*>(of)->Save() ? of : nullptr; };
    const auto load = [](void* of) -> void* { return static_cast<IniFile*>(of)->Load() ? of : nullptr; };
    for (void* (*work)(void*) : {+save, +load}) {
        pthread_t thread;
        ASSERT_EQ(pthread_create(&thread, &attributes, work, file.get()), 0);
        void* done = nullptr;
        pthread_join(thread, &done);
        EXPECT_EQ(done, file.get());
        const std::string key = base64_decode(StoredKey());
        EXPECT_EQ(std::search(stack.begin(), stack.end(), key.begin(), key.end()), stack.end());
    }
    pthread_attr_destroy(&attributes);
}

TEST_F(EncryptedIniFileTest, LinesEndAtLineFeedsAlone) {
    {
        const auto file = Open();
        Save(*file, "1\r2");
        ASSERT_TRUE(file->Load());
        EXPECT_STREQ(file->ReadString("s", "a", "").c_str(), "1\r2");
    }
    EXPECT_STREQ(Open()->ReadString("s", "a", "").c_str(), "1");  // those of the plain text that is left at returns too
}

TEST_F(EncryptedIniFileTest, WithoutASoundPeerNothingIsMade) {
    const std::string peer = PeerPublicKey();
    EncryptedIni::TeaKey key{};
    CurvePublicKey publicKey{};
    for (const std::string& unsound :
         {std::string(), peer.substr(1), peer + "0", "g" + peer.substr(1), std::string(128, '0')}) {
        EXPECT_FALSE(EncryptedIni::MakeKey(unsound.c_str(), key, publicKey)) << unsound;
        EXPECT_EQ(key, EncryptedIni::TeaKey{});
        EXPECT_EQ(publicKey, CurvePublicKey{});
    }
    EXPECT_TRUE(EncryptedIni::MakeKey(peer.c_str(), key, publicKey));
    EXPECT_NE(key, EncryptedIni::TeaKey{});
}

}  // namespace
}  // namespace Quern
