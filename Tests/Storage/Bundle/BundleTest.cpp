#include "Storage/Bundle/Bundle.h"

#include "Base/QuernCommon.h"
#include "Storage/Bundle/BundleFactory.h"
#include "Storage/Bundle/BundleImpl.h"
#include "Storage/File/PathSource.h"
#include "Support/FakeInfoDictionary.h"
#include "Support/FakeKeychain.h"
#include "Support/Test.h"

namespace Quern {
namespace {

using namespace OrvaneTest;

std::vector<std::string> Names(const AArray& array) {
    std::vector<std::string> names;
    for (int i = 0; i < array.Count(); ++i)
        names.emplace_back(array.CStringAtIndex(i));
    return names;
}

class BundleTest : public testing::Test {
protected:
    // A bundle over a plain file of that content, as a game's developer may have left one.
    BundleImpl& Open(const std::string& content) {
        _bundle.reset();
        WriteFile(path, content);
        _bundle = std::make_unique<BundleImpl>(path.c_str());
        console.Take();
        return *_bundle;
    }

    const std::string path = CacheFolder() + "/game.config";
    CapturedConsole console;
    FakeInfoDictionary manifest;
    const std::shared_ptr<FakeKeychain> keychain = FakeKeychain::Install();

private:
    std::unique_ptr<BundleImpl> _bundle;
};

TEST_F(BundleTest, ReadsFallThroughToTheManifest) {
    for (const char* key : {"b", "missing", "empty"}) {
        manifest.Set("a", key, FakeInfoDictionary::Integer(9));
        manifest.Set("Orvane", key, FakeInfoDictionary::Integer(9));
    }
    manifest.Set("a", "text", FakeInfoDictionary::Text("shipped"));
    BundleImpl& bundle = Open("[a]\nb=7\nempty=\ncomment=#x\ntext=p#q\n[Orvane]\nb=7\n");

    EXPECT_EQ(bundle.Get("a", "b", 3), 7);
    EXPECT_EQ(bundle.Get("a", "b", 7), 9);  // equal to the default, and so not there
    EXPECT_EQ(bundle.Get("a", "b", 7LL), 7);
    EXPECT_EQ(bundle.Get("a", "empty", 3LL), 9);
    EXPECT_EQ(bundle.Get("a", "comment", 3LL), 3);
    EXPECT_EQ(bundle.Get("a", "missing", 3), 9);
    EXPECT_TRUE(bundle.Get("a", "missing", false));
    EXPECT_STREQ(bundle.Get("a", "text", "").c_str(), "p");
    EXPECT_STREQ(bundle.Get("a", "nowhere", "default").c_str(), "default");
    EXPECT_STREQ(bundle.GetMetaString("a", "text", "").c_str(), "shipped");

    // Without a section it is the project's, and an int that equals the default is there.
    EXPECT_EQ(bundle.Get("b", 7), 7);
    EXPECT_EQ(bundle.Get("missing", 3), 9);
    EXPECT_EQ(bundle.Get("missing", 3LL), 9);
    EXPECT_TRUE(bundle.Get("missing", false));
    EXPECT_STREQ(bundle.Get("b", "").c_str(), "7");
    QuernCommon::GetInstance()->SetProjectName("a");
    EXPECT_STREQ(bundle.Get("text", "").c_str(), "p");
    EXPECT_TRUE(bundle.Set("text", 5) && bundle.Set("long", 6LL) && bundle.Set("word", "w") &&
                bundle.Set("flag", true));
    EXPECT_STREQ(bundle.Get("a", "word", "").c_str(), "w");
}

TEST_F(BundleTest, TheGamesSectionHasAnotherNameInTheManifest) {
    manifest.Set("Orvane", "GameId", FakeInfoDictionary::Text("1007"));
    manifest.Set("OrvaneGame", "key", FakeInfoDictionary::Text("of the game"));
    manifest.Set("1007", "key", FakeInfoDictionary::Text("never read"));
    BundleImpl& bundle = Open("");
    EXPECT_STREQ(bundle.Get("1007", "key", "").c_str(), "of the game");
    EXPECT_STREQ(bundle.Get(nullptr, "key", "default").c_str(), "");
    QuernCommon::GetInstance()->SetProjectName("1007");
    EXPECT_STREQ(bundle.Get("key", "").c_str(), "never read");  // no such change for the project's name
}

TEST_F(BundleTest, ValuesAreFlattenedToTexts) {
    Value section;
    section["number"] = Value(12);
    section["real"] = Value(1.5);
    section["flag"] = Value(true);
    section["list"][0] = Value(1);
    section["list"][1] = Value("two");
    section["list"][2] = Value();
    section["none"] = Value(ArrayValue);
    section["comma"] = Value("x,y");
    section["inner"]["deep"] = Value(1);
    Value tree;
    tree["a"] = section;
    tree["stray"] = Value(1);
    BundleImpl& bundle = Open("");
    EXPECT_TRUE(bundle.Set(tree));
    EXPECT_THAT(console.Take(), ElementsAre("Error Bundle unsupport Object type", "Error Value is not Object type"));
    BundleImpl(path.c_str());  // leaves the text in plain form
    EXPECT_EQ(ReadFile(path), "[a]\ncomma=x,y\nflag=true\nlist=1,two,\nnone=\nnumber=12\nreal=1.500000\n");
    EXPECT_STREQ(bundle.Get("a", "none", "default").c_str(), "default");

    Value read;
    ASSERT_TRUE(bundle.Get("a", read));
    EXPECT_EQ(read["number"], Value(12LL));
    EXPECT_EQ(read["real"], Value(1.5));
    EXPECT_EQ(read["flag"], Value("true"));
    EXPECT_EQ(read["list"].Size(), 3);
    EXPECT_EQ(read["list"][1], Value("two"));
    EXPECT_EQ(read["comma"].Size(), 2);  // a text with a comma was never an array
    EXPECT_EQ(read.Size(), 5);

    Value list, number, nothing;
    ASSERT_TRUE(bundle.Get("a", "list", list));
    EXPECT_TRUE(list.isArray());
    ASSERT_TRUE(bundle.Get("a", "number", number));
    EXPECT_EQ(number["number"], Value(12LL));  // one part comes inside an object, several do not
    EXPECT_FALSE(bundle.Get("a", "none", nothing) || bundle.Get("a", nullptr, nothing) ||
                 bundle.Get(nullptr, nothing) || bundle.Get("nowhere", nothing));
    EXPECT_TRUE(nothing.isNull());

    console.Take();
    EXPECT_FALSE(bundle.Set(Value(1)));
    EXPECT_TRUE(bundle.Set("a", Value()));
    EXPECT_FALSE(bundle.Set("a", Value(ArrayValue)));
    EXPECT_THAT(console.Take(),
                ElementsAre("Error Value is not Object type", "Info value is null", "Error Value is not Object type"));
}

TEST_F(BundleTest, CacheFormsWaitForTheSave) {
    BundleImpl& bundle = Open("[a]\nb=1\n");
    EXPECT_TRUE(bundle.SetCache("a", "b", 2) && bundle.SetCache("a", "c", 3LL) && bundle.SetCache("a", "d", "four") &&
                bundle.SetCache("a", "e", false));
    EXPECT_EQ(ReadFile(path), "[a]\nb=1\n");
    EXPECT_EQ(bundle.Get("a", "b", 0), 2);
    EXPECT_TRUE(bundle.SaveCacheToFile());
    EXPECT_EQ(keychain->calls.size(), 2u);
    EXPECT_EQ(BundleImpl(path.c_str()).Get("a", "c", 0), 3);
    WriteFile(path, "");

    EXPECT_TRUE(bundle.RemoveCacheValueForKey("a", "c"));
    EXPECT_TRUE(bundle.RemoveCacheSection("a"));
    EXPECT_TRUE(bundle.RemoveCacheAll());
    EXPECT_EQ(ReadFile(path), "");
    EXPECT_TRUE(bundle.Set("a", "b", 1) && bundle.Set("a", "c", 1));
    const auto expectSaved = [this](bool removed) {
        EXPECT_TRUE(removed);
        EXPECT_NE(ReadFile(path), "");
        WriteFile(path, "");
    };
    expectSaved(bundle.RemoveValueForKey("a", "b"));
    expectSaved(bundle.RemoveSection("a"));
    expectSaved(bundle.RemoveAll());
    EXPECT_FALSE(bundle.RemoveValueForKey("a", "b") || bundle.RemoveSection("a"));
    EXPECT_FALSE(bundle.Set(nullptr, "b", 1) || bundle.SetCache("a", nullptr, "x"));
    EXPECT_EQ(ReadFile(path), "");
}

TEST_F(BundleTest, ABatchThatLeavesTheLinesAsTheyWereSavesNothing) {
    Open("[a]\nb=1\n").SetIfDifferent("a", "b", "1");
    EXPECT_EQ(keychain->calls.size(), 2u) << "the plain file is enciphered";
    BundleImpl bundle(path.c_str());
    const auto saves = [&](const char* value, const char* more) {
        const size_t calls = keychain->calls.size();
        {
            BundleImpl::Batch batch(bundle);
            bundle.RemoveAll();
            bundle.Set("a", "b", value);
            if (more) bundle.Set("a", more, 1);
        }
        return (keychain->calls.size() - calls) / 2;
    };
    EXPECT_EQ(saves("1", nullptr), 0u);
    EXPECT_EQ(saves("1", "c"), 1u);
    EXPECT_EQ(saves("1", "c"), 0u);
    EXPECT_EQ(saves("1", nullptr), 1u);
    EXPECT_EQ(saves("2", nullptr), 1u);
}

TEST_F(BundleTest, KeysComeFromOneLayer) {
    manifest.Set("a", "shipped", FakeInfoDictionary::Integer(1));
    manifest.Set("b", "shipped", FakeInfoDictionary::Integer(1));
    BundleImpl& bundle = Open("[a]\nkey=1\n");
    AArray ofBoth, ofManifest;
    bundle.GetAllKeys("a", &ofBoth);
    bundle.GetAllKeys("b", &ofManifest);
    EXPECT_THAT(Names(ofBoth), ElementsAre("key"));
    EXPECT_THAT(Names(ofManifest), ElementsAre("shipped"));
    EXPECT_TRUE(bundle.IsContainKey("a", "ke"));
    EXPECT_FALSE(bundle.IsContainKey("b", "shipped"));
}

TEST_F(BundleTest, WithoutItsLowerObjectsItReadsTheManifestAndWritesNothing) {
    manifest.Set("a", "key", FakeInfoDictionary::Integer(5));
    BundleImpl bare{std::unique_ptr<IniBundle>()};
    BundleImpl fileless{std::make_unique<IniBundle>(std::unique_ptr<IniFile>())};
    for (BundleImpl* bundle : {&bare, &fileless}) {
        EXPECT_EQ(bundle->Get("a", "key", 0), 5);
        EXPECT_FALSE(bundle->Set("a", "key", 1) || bundle->SetCache("a", "key", "1") || bundle->RemoveSection("a") ||
                     bundle->RemoveAll() || bundle->SaveCacheToFile());
        AArray keys;
        bundle->GetAllKeys("a", &keys);
        EXPECT_THAT(Names(keys), ElementsAre("key"));
    }
    EXPECT_TRUE(bare.IsContainKey("a", "key"));
    EXPECT_FALSE(fileless.IsContainKey("a", "key"));
    EXPECT_FALSE(bare.RemoveValueForKey("a", "key"));
    EXPECT_TRUE(fileless.RemoveValueForKey("a", "key"));
}

TEST(BundleDeathTest, TheDefaultBundleWantsACacheFolder) {
    class NoPaths final : public PathSource {
        std::string Home() override { return {}; }
        std::string Documents() override { return {}; }
        std::string Caches() override { return {}; }
    };
    PathSource::Use(std::make_shared<NoPaths>());
    EXPECT_DEATH(BundleFactory::GetInstance()->GetDefaultBundle(),
                 AllOf(HasSubstr("CachePath is empty, do not use bundle in JNI_ONLoad!!!"), HasSubstr("false")));
}

TEST_F(BundleTest, TheFactoryKeepsABundleAName) {
    BundleFactory* const factory = BundleFactory::GetInstance();
    Bundle* const standard = factory->GetDefaultBundle();
    EXPECT_TRUE(standard->Set("a", "b", 1));
    EXPECT_NE(ReadFile(CacheFolder() + "/Orvane.config"), "");
    console.Take();
    EXPECT_EQ(factory->GetBundle(nullptr), standard);
    EXPECT_THAT(console.Take(), ElementsAre("Error name is NULL"));

    Bundle* const game = factory->GetBundle(path.c_str());
    EXPECT_EQ(factory->GetBundle(path.c_str()), game);
    game->Set("a", "b", 2);
    factory->DestoryBundle("unknown");
    factory->DestoryBundle(nullptr);
    factory->DestoryBundle(path.c_str());
    EXPECT_EQ(ReadFile(path), "\n[a]\nb=2\n");  // a deleted bundle leaves plain text
    EXPECT_EQ(factory->GetBundle(path.c_str())->Get("a", "b", 0), 2);
    EXPECT_EQ(factory->GetBundle("Orvane")->Get("a", "b", 0), 1);  // over the default bundle's file
    BundleFactory::ReleaseInstance();
    EXPECT_EQ(BundleFactory::GetInstance()->GetDefaultBundle(), standard);
}

}  // namespace
}  // namespace Quern
