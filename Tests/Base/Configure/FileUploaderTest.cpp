#include "Base/Configure/FileUploader.h"

#include <minizip/unzip.h>
#include <sys/resource.h>

#include "Base/Configure/UtilsHelper.h"
#include "Base/Configure/ZipArchive.h"
#include "Storage/File/CPath.h"
#include "Storage/File/Sandbox.h"
#include "Support/FakeConfigure.h"
#include "Support/FakePlugins.h"
#include "Support/FakeReachability.h"
#include "Support/HttpServer.h"
#include "Support/Test.h"

namespace {

namespace fs = std::filesystem;
using namespace OrvaneTest;

using Names = std::vector<std::string>;

// "name=content" of every entry.
Names Unzip(const std::string& path) {
    Names entries;
    if (ReadFile(path) == std::string("PK\5\6\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 22))
        return entries;  // an empty zip
    const unzFile zip = unzOpen(path.c_str());
    for (int more = zip ? unzGoToFirstFile(zip) : -1; more == UNZ_OK; more = unzGoToNextFile(zip)) {
        char name[300];
        unz_file_info info;
        unzGetCurrentFileInfo(zip, &info, name, sizeof name, nullptr, 0, nullptr, 0);
        std::string content(1 << 20, '\0');
        unzOpenCurrentFile(zip);
        content.resize(static_cast<size_t>(unzReadCurrentFile(zip, content.data(), 1 << 20)));
        EXPECT_EQ(unzCloseCurrentFile(zip), UNZ_OK);
        entries.push_back(name + ("=" + content));
    }
    if (zip) unzClose(zip);
    return zip ? entries : Names{"no zip"};
}

class FileUploaderTest : public testing::Test {
protected:
    FileUploaderTest() {
        fs::create_directories(home + "/logs/sub.log");
        fs::create_directories(home + "/Documents");
        for (const char* name :
             {"/logs/a.log", "/logs/B.LOG", "/logs/c.txt", "/Library/OrvaneCore.keychain",
              "/Library/OrvaneCore.keychain.unusable", "/Library/.OrvaneCore.keychain.orvane-new",
              "/Library/UserDefaults.json", "/Library/.UserDefaults.json.orvane-new-X", "/Library/plain.txt"})
            WriteFile(home + name, name);
        WriteFile(outside + "/o.log", "outside");
        fs::create_symlink(outside, home + "/out");
        fs::create_symlink(outside + "/o.log", home + "/logs/o.log");
        fs::create_symlink(home + "/logs", home + "/in");
        fs::create_symlink(home + "/Library/OrvaneCore.keychain", home + "/key");
        InstallCorePlugin();
        settings.Set("OrvaneCore", "RemoteConfigUrl", server.Url(""));
        prepared = R"({"ret":0,"biz_data":{"upload_url":")" + server.Url("/part") + R"(","next_pos":0}})";
    }
    ~FileUploaderTest() override { fs::remove_all(outside); }

    std::string Answer(const HttpRequest& request) {
        const std::lock_guard guard(mutex);
        if (request.method == "PUT") return HttpAnswer("200 OK", prepared);
        const size_t begin = request.body.find("octet-stream\r\n\r\n") + 16, end = request.body.rfind("\r\n------");
        WriteFile(outside + "/sent.zip", request.body.substr(begin, end - begin));
        return HttpAnswer(status, R"({"ret":0,"biz_data":{"upload_url":"","next_pos":9999999}})");
    }
    // Gives an order, and waits for its end. What was logged.
    Names Order(const std::string& path, const std::string& pattern, const std::string& id) {
        settings.Set("Upload", "file_path", path);
        settings.Set("Upload", "file_pattern", pattern);
        settings.Set("Upload", "upload_id", id);
        settings.Set("Upload", "part_size", "1000000");
        Orvane::FileUploader::GetInstance()->OnConfigureRefreshed(nullptr);
        Names lines = console.Take();
        if (!testing::Value(lines, Contains("Info _Upload zip file.")) || isClosed) return lines;
        EXPECT_TRUE(WaitFor([&] {  // that the uploader has been told
            settings.Set("Upload", "file_path", "/none");
            Orvane::FileUploader::GetInstance()->OnConfigureRefreshed(nullptr);
            return !testing::Value(console.Take(), Contains("Warning _isUploading..."));
        }));
        return lines;
    }

    const std::string cache = CacheFolder(), home = Quern::CPath::GetAppPath(), outside = home + "-outside";
    std::mutex mutex;  // guards what the server reads
    std::string status = "200 OK";
    std::string prepared;
    bool isClosed = false;
    FakeConfigure settings;
    CapturedConsole console;
    Journal journal;
    FakePell pell{&journal};
    HttpServer server{[this](const HttpRequest& request) { return Answer(request); }};
};

TEST_F(FileUploaderTest, SendsWhatPathPatternAndIdNameAndNothingElse) {
    const std::string log = LogFolder("Orvane"), coreLog = LogFolder("OrvaneCore");
    WriteFile(log + "/g.xlog", "game");
    WriteFile(coreLog + "/c.xlog", "core");
    WriteFile(cache + "/other.zip", "another's");
    fs::create_directories(cache + "/folder.zip/inner");
    WriteFile(outside + "/victim.zip", "victim");
    fs::create_symlink(outside + "/victim.zip", cache + "/link.zip");
    const std::string a = "a.log=/logs/a.log", b = "B.LOG=/logs/B.LOG", c = "c.txt=/logs/c.txt";
    const std::string created = "Error Create Zip File Failed!", sibling = fs::path(outside).filename();
    const auto found = [](int count) { return Format("Info total match %d files.", count); };
    const auto missing = [this](const std::string& path) { return "Error search path " + path + " is not exit"; };
    struct Case {
        std::string path, pattern, id, line;
        Names entries;
    };
    const Case cases[] = {
        {"/logs", "log$", "1", found(3), {b, a}},  // the folder is counted, and left out
        {"/logs|/in", "^a|txt", "2", "Warning fileName B.LOG dismatch filePattern txt", {a, c, a, c}},
        {"/logs", "a|log", "3", "Info fileName a.log match ", {b, a, a}},
        {"ORVANE_LOG_DIR/xyz|ORVANE_CORE_LOG_DIR..", "xlog", "4", found(2), {"g.xlog=game", "c.xlog=core"}},
        {"", "^logs$", "5", found(1), {}},  // an empty zip goes too
        {"/logs/../Documents/../logs", "c", "6", found(1), {c}},
        {"/Library", "", "7", found(2), {"plain.txt=/Library/plain.txt"}},  // an empty pattern fits all
        {"/logs/a.log", "", "8", "Error search path " + home + "/logs/a.log is not a dir", {"no zip"}},
        {"/out|/../" + sibling + "|-outside", "", "9", missing(outside), {"no zip"}},
        {"/key", "", "10", missing(home + "/key"), {"no zip"}},
        {"/Library/OrvaneCore.keychain|/Library/UserDefaults.json", "", "11", found(0), {"no zip"}},
        {"/../../../../../../../etc", "passwd", "13", found(0), {"no zip"}},
        {"/logs", "[\\", "14", found(0), {"no zip"}},
        {"/logs", "(((((.*)*)*)*)*)*x", "15", found(0), {"no zip"}},
        {"/logs", std::string(4000, '('), "16", found(0), {"no zip"}},
        {"/logs", "^a", "other", "Info other.zip already exist! need to delete", {a}},
        {"/logs", "^a", "link", "Info link.zip already exist! need to delete", {a}},
        {"/logs", "^a", "folder", created, {"no zip"}},
        {"/logs", "^a", "../../logs/a.log\n/x", created, {"no zip"}},
        {"/logs", "^a", std::string(300, 'i'), created, {"no zip"}},
        {"/logs", "^a", "..", found(1), {a}},
        {"/logs", "^a", "\"quoted\"\r\nline", found(1), {a}},
        {"/logs", "^a", "", found(1), {a}},
    };
    for (const Case& order : cases) {
        fs::remove(outside + "/sent.zip");
        const Names lines = Order(order.path, order.pattern, order.id);
        EXPECT_THAT(lines, Contains(order.line)) << order.path << " " << order.pattern << " " << order.id;
        EXPECT_EQ(Unzip(outside + "/sent.zip"), order.entries) << order.path << " " << order.pattern << " " << order.id;
    }
    EXPECT_EQ(ReadFile(outside + "/victim.zip"), "victim");
    EXPECT_TRUE(fs::exists(cache + "/folder.zip/inner"));
    EXPECT_EQ(ReadFile(home + "/Library/OrvaneCore.keychain"), "/Library/OrvaneCore.keychain");
    EXPECT_THAT(FilesIn(cache), Not(Contains(HasSubstr("other"))));  // sent, and gone
}

// Somebody else's hand in the container, between a search and the opening of what it found.
class HurriedSandbox final : public Quern::Sandbox {
public:
    std::string Resolve(const std::string& path) override { return _own.Resolve(path); }
    int OpenToRead(const std::string& path) override {
        if (const auto act = std::exchange(before, nullptr)) act();
        return _own.OpenToRead(path);
    }
    std::function<void()> before;

private:
    Quern::Sandbox& _own = Quern::Sandbox::Current();
};

TEST_F(FileUploaderTest, SendsNothingThatCameBetweenTheSearchAndTheZip) {
    const auto sandbox = std::make_shared<HurriedSandbox>();
    Quern::Sandbox::Use(sandbox);
    WriteFile(outside + "/a.log", "outside");
    const std::string logs = home + "/logs", file = logs + "/a.log";
    const std::function<void()> acts[] = {
        [&] { fs::create_symlink(outside + "/a.log", file); },
        [&] { fs::create_hard_link(home + "/Library/OrvaneCore.keychain", file); },
        [&] { fs::rename(logs, home + "/moved"), fs::create_directory_symlink(outside, logs); },
    };
    for (const auto& act : acts) {
        fs::remove(file);
        WriteFile(file, "a");
        fs::remove(outside + "/sent.zip");
        sandbox->before = [&] { fs::remove(file), act(); };
        EXPECT_THAT(Order("/logs", "^a", "hurried"), Contains("Info total match 1 files."));
        EXPECT_EQ(Unzip(outside + "/sent.zip"), Names{});
    }
    Quern::Sandbox::Use(nullptr);
}

TEST_F(FileUploaderTest, TellsItsStepsInOrderAndReportsThem) {
    const Names lines = Order("/logs", "^a", "77");
    const Names steps = Quern::SplitString(
        "Info searchPaths: /logs, filePatterns: ^a, uploadid: 77, partSize: 1000000|Debug 1. search the match file|"
        "Info fileName a.log match |Info total match 1 files.|Debug 2. zip the files|"
        "Debug determine whethe the file exists|Debug add files to zip file|Info _Upload zip file.",
        '|');
    auto at = lines.begin();
    for (const std::string& step : steps) {
        at = std::find(at, lines.end(), step);
        ASSERT_NE(at, lines.end()) << step;
    }
    const Names events = Quern::SplitString(
        "create 2000 RecieveUploadTask|add 30001='77'|add 30002='^a'|add 30003='/logs'|add 30004=1000000|"
        "create 2000 UploadResult|add 30001=0|add 30003='" +
            cache + "/77.zip'|add 30004=0",
        '|');
    EXPECT_THAT(journal, IsSupersetOf(events));
}

TEST_F(FileUploaderTest, KeepsTheZipOfAFailureAndIsClosedAfterFiveAttempts) {
    const auto network = FakeReachability::Install();
    settings.Set("Upload", "manual_upload", "1");
    network->flags = FakeReachability::kCellular;
    EXPECT_THAT(Order("/logs", "^a", "id"), IsSupersetOf({"Info only upload by wifi(isManualUpload/isWifiUpload)",
                                                          "Info do not upload because not wifi"}));
    EXPECT_TRUE(journal.empty());
    network->flags = FakeReachability::kWifi;

    const std::string good = prepared;
    for (const char* answer : {"{\"ret\":1}", "{\"ret\":-1}", "no JSON", "", ""}) {
        std::unique_lock guard(mutex);
        prepared = *answer ? answer : good;
        status = "500 Broken";
        guard.unlock();
        Order("/logs", "^a", "id");
        EXPECT_EQ(fs::exists(cache + "/id.zip"), answer != std::string("{\"ret\":1}")) << answer;
    }
    const size_t asked = server.Requests().size();
    isClosed = true;
    EXPECT_THAT(Order("/logs", "^a", "id"), Contains("Info _Upload zip file."));
    EXPECT_THAT(Order("/logs", "^a", "another"), ElementsAre("Warning _isUploading..."));
    Orvane::FileUploader::GetInstance()->OnFinished(nullptr, 0);
    isClosed = false;
    settings.Set("Upload", "manual_upload", "2");  // 1 alone means Wi-Fi alone
    network->flags = FakeReachability::kCellular;
    EXPECT_THAT(Order("/logs", "^a", "another"), Contains("Info _Upload zip file."));
    const std::vector<HttpRequest> requests = server.Requests();
    ASSERT_GT(requests.size(), asked);
    for (size_t i = asked; i < requests.size(); ++i)
        EXPECT_TRUE(requests[i].method != "PUT" || requests[i].target.find("another") != std::string::npos)
            << "the closed uploader has sent " << requests[i].target;
}

TEST_F(FileUploaderTest, ZipsFilesAloneAndSaysWhenTheDiskIsFull) {
    EXPECT_THAT(Quern::SplitString("a||b|", '|'), ElementsAre("a", "", "b", ""));
    Quern::ZipArchive zip;
    EXPECT_FALSE(zip.AddFileToZip(home + "/logs/a.log", "a"));
    ASSERT_TRUE(zip.CreateZipFile(cache + "/z.zip"));
    EXPECT_FALSE(zip.AddFileToZip(home + "/logs/o.log", "a link"));
    EXPECT_TRUE(zip.AddFileToZip(home + "/logs/a.log", "a"));
    EXPECT_TRUE(zip.CloseZipFile());
    EXPECT_THAT(Unzip(cache + "/z.zip"), ElementsAre("a=/logs/a.log"));
    EXPECT_EQ(fs::status(cache + "/z.zip").permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_FALSE(zip.CreateZipFile(home + "/logs/o.log")) << "a link";
    ASSERT_TRUE(zip.CreateZipFile("/dev/full"));
    zip.AddFileToZip(home + "/logs/a.log", "a");
    EXPECT_FALSE(zip.CloseZipFile());
    std::string noise(8000, 0);  // beyond the stream's buffer, and held by zlib up to the entry's end
    std::mt19937 random(1);
    for (char& byte : noise)
        byte = static_cast<char>(random());
    WriteFile(home + "/logs/noise", noise);
    ASSERT_TRUE(zip.CreateZipFile("/dev/full"));
    EXPECT_FALSE(zip.AddFileToZip(home + "/logs/noise", "noise"));

    rlimit before;
    getrlimit(RLIMIT_FSIZE, &before);
    signal(SIGXFSZ, SIG_IGN);
    const rlimit full{4096, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full);
    EXPECT_THAT(Order("/logs", "noise", "full"), Contains("Error Close Zip File Failed!"));
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_FALSE(fs::exists(cache + "/full.zip"));
}

TEST_F(FileUploaderTest, LeavesOutWhatIsTooLarge) {
    const std::string a = home + "/logs/a.log";
    Quern::ZipArchive zip(static_cast<long long>(2 * fs::file_size(a)));
    ASSERT_TRUE(zip.CreateZipFile(cache + "/z.zip"));
    EXPECT_TRUE(zip.AddFileToZip(a, "1") && zip.AddFileToZip(a, "2") && !zip.HasLeftOut());
    EXPECT_FALSE(zip.AddFileToZip(a, "3"));
    EXPECT_TRUE(zip.HasLeftOut() && zip.CloseZipFile());
    WriteFile(home + "/logs/a.big", "");
    fs::resize_file(home + "/logs/a.big", (1ULL << 30) + 1);  // takes no room
    EXPECT_THAT(Order("/logs", "^a", "big"),
                Contains("Error files are left out of the zip: the order asks for too many bytes"));
    EXPECT_THAT(Unzip(outside + "/sent.zip"), ElementsAre("a.log=/logs/a.log"));
}

// A log that is written to faster than it is zipped comes to its end all the same: at its size when it was opened.
TEST_F(FileUploaderTest, ZipsAFileThatGrows) {
    const std::string path = home + "/logs/a.log", piece(1 << 20, '\0');
    Quern::ZipArchive zip;
    ASSERT_TRUE(zip.CreateZipFile(cache + "/z.zip"));
    std::atomic<bool> isZipped{false};
    std::thread writer([&] {
        std::ofstream file(path, std::ios::app);
        for (int megabytes = 0; !isZipped && megabytes < 1500; ++megabytes)
            file << piece << std::flush;
        EXPECT_TRUE(isZipped) << "zipped as long as it grew";
    });
    WaitFor([&] { return fs::file_size(path) > piece.size(); });
    EXPECT_TRUE(zip.AddFileToZip(path, "a"));
    isZipped = true;
    writer.join();
}

TEST_F(FileUploaderTest, EndsASearchThatCostsTooMuch) {
    const auto repeat = [](const char* text, int count) {
        std::string all;
        for (int i = 0; i < count; ++i)
            all += text;
        return all;
    };
    const std::string ended = "Error the search is ended after ";
    // Each costs too much by one thing alone: folders, what lies in them, lines.
    const std::pair<std::string, std::string> orders[] = {
        {repeat("/none|", 6000), "^a"},
        {repeat("/logs|", 3000), "^a"},
        {"/logs", repeat("^b$|", 101'000)},
    };
    for (const auto& [path, pattern] : orders) {
        const Names lines = Order(path, pattern, "bars");
        EXPECT_EQ(std::count_if(lines.begin(), lines.end(), [&](auto& line) { return line.starts_with(ended); }), 1);
        EXPECT_LE(lines.size(), 110'000u);
    }
    EXPECT_THAT(Order("/logs", repeat("|", 100'000), "bars"),
                Contains(ended + "10000 matches: the order asks for too much"));
    // A pattern that costs its whole share with one name fits others, and after ten such names is not tried again.
    WriteFile(home + "/logs/" + std::string(60, '0'), "");
    EXPECT_THAT(Order("/logs", ".*.*.*.*.*.*g$", "costly"), Contains("Info fileName a.log match "));
    Names told;
    for (const std::string& line : Order(repeat("/logs|", 600), ".*.*.*.*.*.*q|^a", "logs"))
        if (line.starts_with("Error ") || line.starts_with("Info total")) told.push_back(line);
    EXPECT_THAT(told, ElementsAre("Error filePattern .*.*.*.*.*.*q is given up: it takes too many steps",
                                  "Info total match 600 files."));
}

}  // namespace
