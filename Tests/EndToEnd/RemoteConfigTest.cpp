// The host and the server on the desk, each a process of its own.

#include "Support/Container.h"
#include "Support/Process.h"
#include "Support/Test.h"

namespace EndToEnd {
namespace {

class RemoteConfigTest : public testing::Test {
protected:
    // With the manifest of the example game.
    void StartServer(std::vector<std::string> options = {}) {
        options.insert(options.begin(), {ORVANE_DEVSERVER_PROGRAM, "--port", "0", "--strict", "--quiet"});
        options.push_back(_folder);
        _server = std::make_unique<Process>(Command{options, {}, ""});
        ASSERT_TRUE(OrvaneTest::WaitFor([this] { return _server->Output().ends_with('\n'); }));
        _address = _server->Output().substr(6);
        _address.pop_back();
    }
    Command Host() const {
        return _container.Host({"--server", _address, "--info-plist", ORVANE_GAME_MANIFEST, "--module", "Demo",
                                "--plugins", ORVANE_PLUGIN_FOLDER});
    }
    std::vector<std::string> Requests() const {
        return OrvaneTest::LinesWith("\"kind\":\"config\"", ReadFile(_folder + "/journal.jsonl"));
    }
    // How many fetches the data plugin was told of.
    size_t Reports() const {
        return OrvaneTest::LinesWith("PullConfigResult", ReadFile(_container.EventsFile())).size();
    }

    Container _container;
    const std::string _folder = _container.Outside() / "served";
    std::unique_ptr<Process> _server;
    std::string _address;
};

TEST_F(RemoteConfigTest, AnAnswerHoldsForTheNextLaunchUntilItIsCleared) {
    StartServer();
    WriteFile(_folder + "/modules/Demo.json", R"({"LogMode":0})");
    // Each launch asks by itself, once it has read what the last run left.
    const struct {
        const char* event;   // behind the answer
        const char* isRead;  // by the launch
    } kRuns[] = {{"memory-warning", "logMode 2"}, {"clear", "logMode 0"}, {"memory-warning", "logMode 2"}};
    size_t runs = 0;
    for (const auto& run : kRuns) {
        Process host(Host());
        host.Send("launch\nlog info a line\n");
        ++runs;
        EXPECT_TRUE(OrvaneTest::WaitFor([&] { return Reports() >= runs; })) << host.Error();
        host.Send(std::string(run.event) + "\n");
        host.CloseInput();
        EXPECT_EQ(host.Wait().status, 0);
        EXPECT_THAT(host.Error(), HasSubstr(std::string("log init module Demo, ") + run.isRead));
    }
    ASSERT_EQ(Requests().size(), 3u);
    for (const std::string& request : Requests())
        EXPECT_THAT(request, AllOf(HasSubstr("\"problems\":[]"), HasSubstr("will replace the file")));
}

// For the library the id ends at its NUL.
TEST_F(RemoteConfigTest, AnOrderIsCarriedOutOnce) {
    namespace fs = std::filesystem;
    StartServer();
    WriteFile(_container.Home() / "Documents/last.rep", "a replay");
    Command command = Host();
    command.words.insert(command.words.end(), {"--module", "Other", "--log-mode", "0"});
    Process host(command);
    std::string text;  // so long that its beginning goes from the block to the file
    for (int i = 0; i < 5000; ++i)
        text += "a line that is asked for, " + std::to_string(i) + "\n";
    WriteFile(_container.Outside() / "text", text);
    host.Send("launch\nlog-file " + (_container.Outside() / "text").string() + "\n");
    const auto isLogged = [](const fs::path& folder) {
        std::error_code error;
        for (const auto& file : fs::directory_iterator(folder, error))
            if (ReadFile(file.path()).find("a line that is asked for, 9\n") != std::string::npos) return true;
        return false;
    };
    ASSERT_TRUE(OrvaneTest::WaitFor([&] { return Reports() >= 1 && isLogged(_container.LogFolder("Other")); }));
    WriteFile(_folder + "/modules/Upload.json",
              R"({"upload_id":"night\u0000/../7","file_path":"/Library/Caches/OrvaneSDKLog/Other|/Documents",)"
              R"("file_pattern":"log$|rep$","part_size":4000})");
    host.Send("fetch\n");
    const auto folder = [&] {
        std::error_code error;
        for (const auto& device : fs::directory_iterator(_folder + "/uploads", error))
            return device.path() / "night";
        return fs::path();
    };
    ASSERT_TRUE(OrvaneTest::WaitFor([&] { return fs::exists(folder() / "upload.zip"); })) << _server->Error();
    EXPECT_TRUE(OrvaneTest::WaitFor([&] { return !fs::exists(_container.Caches() / "night.zip"); }));
    EXPECT_EQ(ReadFile(folder() / "files/last.rep"), "a replay");
    EXPECT_TRUE(isLogged(folder() / "files"));

    host.Send("fetch\n");
    EXPECT_TRUE(OrvaneTest::WaitFor([&] { return Reports() >= 3; }));
    EXPECT_THAT(Requests().back(), HasSubstr("\"carried_out\""));
    host.CloseInput();
    EXPECT_EQ(host.Wait().status, 0);
    const std::string journal = ReadFile(_folder + "/journal.jsonl");
    const size_t announced = journal.find("/upload/prepareFile");
    EXPECT_NE(announced, std::string::npos);
    EXPECT_EQ(journal.find("/upload/prepareFile", announced + 1), std::string::npos) << "it is announced again";
    EXPECT_EQ(journal.find("\"problems\":[\""), std::string::npos) << journal;
}

}  // namespace
}  // namespace EndToEnd
