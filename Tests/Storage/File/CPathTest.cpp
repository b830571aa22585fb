#include "Storage/File/CPath.h"

#include "Base/QuernCommon.h"
#include "Storage/File/CFile.h"
#include "Storage/File/PathSource.h"
#include "Support/Test.h"

namespace {

using namespace OrvaneTest;
using Quern::AArray;
using Quern::AString;
using Quern::CFile;
using Quern::CPath;
using Quern::PathSource;

TEST(CPath, GivesTheContainerAndKeepsIt) {
    const std::string& cache = CacheFolder();
    EXPECT_STREQ(CPath::GetCachePath(), cache.c_str());
    const std::string home = CPath::GetAppPath();
    EXPECT_EQ(home + "/Library/Caches", cache);
    EXPECT_EQ(CPath::GetDocPath(), home + "/Documents");
    EXPECT_TRUE(CFile::IsDir(CPath::GetDocPath()));
    const char* kept = CPath::GetAppPath();
    setenv("ORVANE_HOME", "/elsewhere", 1);
    EXPECT_EQ(CPath::GetAppPath(), kept);
    EXPECT_EQ(home, kept);

    Quern::QuernCommon::GetInstance()->SetProjectName("Project");
    EXPECT_EQ(CPath::GetDefaultConfigFile(), cache + "/Project.ini");
    Quern::QuernCommon::GetInstance()->SetProjectName("Another");
    EXPECT_EQ(CPath::GetDefaultConfigFile(), cache + "/Project.ini");
}

TEST(PathSource, FindsTheContainerAndMakesItPrivate) {
    const std::string root = CacheFolder();
    PathSource& source = PathSource::Current();
    setenv("ORVANE_HOME", (root + "/a/b//").c_str(), 1);
    umask(0);
    EXPECT_EQ(source.Caches(), root + "/a/b/Library/Caches");
    struct stat status;
    for (const char* made : {"/a", "/a/b", "/a/b/Library", "/a/b/Library/Caches"}) {
        ASSERT_EQ(stat((root + made).c_str(), &status), 0) << made;
        EXPECT_EQ(status.st_mode & 0777, 0700U) << made;
    }
    EXPECT_FALSE(CFile::Exist((root + "/a/b/Documents").c_str()));

    char executable[4096];
    const ssize_t length = readlink("/proc/self/exe", executable, sizeof executable);
    AString name;
    CPath::GetFileName(std::string(executable, static_cast<size_t>(length)).c_str(), name);
    unsetenv("ORVANE_HOME");
    setenv("XDG_DATA_HOME", (root + "/data").c_str(), 1);
    EXPECT_EQ(source.Home(), root + "/data/" + name.c_str());
    setenv("XDG_DATA_HOME", "relative", 1);
    setenv("HOME", root.c_str(), 1);
    EXPECT_EQ(source.Documents(), root + "/.local/share/" + name.c_str() + "/Documents");
    EXPECT_TRUE(CFile::IsDir(source.Documents().c_str()));
}

TEST(CPath, MakesAndRemovesTrees) {
    const std::string top = CacheFolder() + "/top";
    const std::string deep = top + "/x/y/";
    EXPECT_FALSE(CPath::CreatePath(nullptr));
    EXPECT_TRUE(CPath::CreatePath(deep.c_str()));
    EXPECT_TRUE(CFile::IsDir(deep.c_str()));
    EXPECT_FALSE(CPath::CreatePath(top.c_str()));
    WriteFile(top + "/x/file", "1");
    EXPECT_FALSE(CPath::CreatePath((top + "/x/file/below").c_str()));
    WriteFile(CacheFolder() + "/outside/kept", "1");
    ASSERT_EQ(symlink((CacheFolder() + "/outside").c_str(), (top + "/link").c_str()), 0);
    EXPECT_TRUE(CPath::RemovePath(top.c_str()));
    EXPECT_FALSE(CFile::Exist(top.c_str()));
    EXPECT_TRUE(CFile::Exist((CacheFolder() + "/outside/kept").c_str()));
    EXPECT_FALSE(CPath::RemovePath(top.c_str()));
    EXPECT_FALSE(CPath::RemovePath(nullptr));
}

TEST(CPath, JoinsAndCutsPaths) {
    std::string joined, names;
    for (const auto& [base, sub] : std::vector<std::pair<const char*, const char*>>{
             {"a", "b"}, {"a/", "b"}, {"a\\", "b"}, {"", "b"}, {"a", ""}, {"", ""}, {nullptr, "b"}, {"a", nullptr}}) {
        AString path("before");
        CPath::GetSubPath(path, base, sub);
        joined += std::string(path.c_str()) + " ";
    }
    EXPECT_EQ(joined, "a/b a/b a\\b b a/  before before ");
    AString path("root");
    EXPECT_EQ(&CPath::AppendSubPath(path, "sub"), &path);
    CPath::AppendSubPath(path, path.c_str());
    EXPECT_STREQ(path.c_str(), "root/sub/root/sub");

    for (const char* from : {"/a/b.txt", "a\\b/c", "plain", "dir/"}) {
        AString out("before");
        CPath::GetFileName(from, out);
        names += std::string(out.c_str()) + " ";
    }
    EXPECT_EQ(names, "b.txt b/c plain  ");
    CPath::GetFileName(path.c_str(), path);
    EXPECT_STREQ(path.c_str(), "sub");
}

TEST(CPath, ListsFilesAndDirectories) {
    CapturedConsole console;
    const std::string folder = CacheFolder() + "/listed";
    WriteFile(folder + "/file", "1");
    WriteFile(folder + "/.hidden", "1");
    WriteFile(folder + "/sub/inner", "1");
    ASSERT_EQ(symlink("file", (folder + "/link").c_str()), 0);
    ASSERT_EQ(mkfifo((folder + "/pipe").c_str(), 0600), 0);
    AArray files;
    EXPECT_TRUE(CPath::GetFiles(folder.c_str(), &files));
    std::set<std::string> names;
    for (int i = 0; i < files.Count(); ++i)
        names.insert(files.CStringAtIndex(i));
    EXPECT_EQ(names, (std::set<std::string>{"file", ".hidden", "sub"}));
    EXPECT_EQ(files.Count(), 3);

    EXPECT_FALSE(CPath::GetFiles((folder + "/file").c_str(), &files));
    EXPECT_EQ(console.Take(), std::vector<std::string>{"Error Open dir error..."});
    EXPECT_FALSE(CPath::GetFiles(nullptr, &files));
    EXPECT_FALSE(CPath::GetFiles(folder.c_str(), nullptr));
    EXPECT_EQ(console.Take(), std::vector<std::string>(2, "Error pszPath or files is NULL!"));
    EXPECT_EQ(files.Count(), 3);
}

}  // namespace
