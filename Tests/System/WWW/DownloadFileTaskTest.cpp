#include "Orvane/DownloadFileTask.h"

#include <sys/resource.h>

#include "HeardAnswers.h"
#include "Support/FaultProxy.h"
#include "Support/HttpServer.h"
#include "Support/Test.h"
#include "System/WWW/Task/WWW.h"

namespace {

using namespace OrvaneTest;
using namespace Quern;
namespace fs = std::filesystem;

std::string Content(char salt) {
    std::string content(3 << 20, salt);
    for (size_t i = 0; i < content.size(); ++i)
        content[i] = static_cast<char>(content[i] + i * 31 % 251);
    return content;
}

class DownloadFileTaskTest : public testing::Test {
protected:
    DownloadFileTaskTest() {
        UseSession(5000);
        fs::create_directories(folder);
        task = WWW::DownloadFile(proxy.Url().c_str(), path.c_str());
        task->SetListener(&heard);
    }
    ~DownloadFileTaskTest() override { WWW::Destroy(task); }
    // Lets it come to `bytes` at least, then pauses.
    void PauseAt(size_t bytes) {
        proxy.Use({Fault::kHold, bytes});
        task->Resume();
        EXPECT_TRUE(HeardDownload::Run([&] { return heard.written >= static_cast<long long>(bytes) - 1000; }));
        task->Pause();
        proxy.Release();
    }
    std::string RangeOfLast() const { return server.Requests().back().Header("Range"); }

    ServedFile file{Content('a'), "\"one\""};
    std::function<std::string(size_t first)> oneRest;  // answers the next request for one
    std::mutex fileMutex;
    HttpServer server{[this](const HttpRequest& request) {
        if (request.target == "/missing") return HttpAnswer("404 Not Found", "no such page");
        if (request.target == "/empty") return HttpAnswer("200 OK", "");
        const std::lock_guard guard(fileMutex);
        const std::string range = request.Header("Range");
        if (!range.empty() && oneRest) return std::exchange(oneRest, nullptr)(strtoul(range.c_str() + 6, nullptr, 10));
        return file.Answer(request);
    }};
    FaultProxy proxy{server.Port()};
    HeardDownload heard;
    const std::string folder = CacheFolder() + "/downloads";
    const std::string path = folder + "/file";
    DownloadFileTask* task = nullptr;
};

TEST_F(DownloadFileTaskTest, AFileAppearsWhenItIsWhole) {
    WriteFile(path, "what lay there");
    task->SetHttpHeader("X-Header", "not for downloads");
    proxy.Use({Fault::kHold, 1 << 20});
    task->Resume();
    ASSERT_TRUE(HeardDownload::Run([&] { return heard.written > 1 << 19; }));
    EXPECT_EQ(ReadFile(path), "what lay there");
    EXPECT_EQ(FilesIn(folder).size(), 1u);
    proxy.Release();
    ASSERT_TRUE(heard.RunUntilFinished());
    EXPECT_EQ(ReadFile(path), file.content);
    EXPECT_EQ(heard.events, "begin 3145728 finished 0 3145728 ");
    EXPECT_EQ(heard.written, 3 << 20);
    EXPECT_TRUE(heard.isOrderly);
    EXPECT_EQ(FilesIn(folder).size(), 1u);
    const HttpRequest request = server.Requests().at(0);
    EXPECT_EQ(request.Header("Accept-Encoding"), "identity");
    EXPECT_EQ(request.Header("X-Header"), "");

    task->SetUrl(proxy.Url("/missing").c_str());
    task->Resume();
    ASSERT_TRUE(heard.RunUntilFinished(2));
    EXPECT_EQ(ReadFile(path), "no such page");
    heard.events.clear();
    task->SetUrl(proxy.Url("/empty").c_str());
    task->Resume();
    ASSERT_TRUE(heard.RunUntilFinished(3));
    EXPECT_EQ(heard.events, "finished 0 0 ");
    EXPECT_EQ(ReadFile(path), "");
}

TEST_F(DownloadFileTaskTest, APauseKeepsWhatHasCome) {
    PauseAt(1 << 20);
    const long long kept = heard.written;
    heard.isOrderly = true;
    task->Resume();
    task->Resume();  // ignored
    ASSERT_TRUE(heard.RunUntilFinished());
    EXPECT_EQ(ReadFile(path), file.content);
    EXPECT_EQ(heard.events, "begin 3145728 finished 0 3145728 ");
    ASSERT_EQ(server.Requests().size(), 2u);
    EXPECT_GE(atoll(RangeOfLast().c_str() + 6), kept);
}

TEST_F(DownloadFileTaskTest, AFileThatChangedMeanwhileIsFetchedAnew) {
    PauseAt(1 << 20);
    {
        const std::lock_guard guard(fileMutex);
        file = {Content('b'), "\"two\""};
    }
    task->Resume();
    ASSERT_TRUE(heard.RunUntilFinished());
    EXPECT_EQ(ReadFile(path), Content('b'));
    EXPECT_EQ(heard.events, "begin 3145728 finished 0 3145728 ");
}

// Servers that answer a Range with what does not fit, each for one reason, and the request after that with the file.
TEST_F(DownloadFileTaskTest, ARestThatDoesNotFitIsRefused) {
    const std::string date = "Last-Modified: Mon, 01 Jan 2024 00:00:00 GMT\r\n", close = "Connection: close\r\n";
    file.headers = "Date: Tue, 02 Jan 2024 00:00:00 GMT\r\n" + date + close;
    const std::string right = "Content-Range: bytes FIRST-LAST/3145728\r\n";
    const std::vector<std::pair<std::string, std::string>> answers = {
        {"416 No", ""},
        {"206 Part", ""},
        {"206 Part", "Content-Range: bytes 5-6/3145728\r\n"},
        {"206 Part", "Content-Range: lines FIRST-LAST/3145728\r\n"},
        {"206 Part", "Content-Range: bytes FIRST-LAST/3145729\r\n"},
        {"206 Part", right + "ETag: \"two\"\r\n"},
        {"206 Part", right + "ETag: \"one\"\r\nLast-Modified: Sun, 07 Jan 2024 00:00:00 GMT\r\n"},
        {"206 Part", right + "Content-Encoding: none\r\n"}};
    int finishes = 0;
    for (const auto& [status, headers] : answers) {
        PauseAt(1 << 20);
        {
            const std::lock_guard guard(fileMutex);
            oneRest = [&, status = status, headers = headers](size_t first) mutable {
                for (const auto& [word, value] :
                     {std::pair("FIRST", first), std::pair("LAST", file.content.size() - 1)})
                    if (const size_t at = headers.find(word); at != std::string::npos)
                        headers.replace(at, strlen(word), std::to_string(value));
                return HttpAnswer(status, std::string(file.content.size() - first, 'x'), headers + close);
            };
        }
        task->Resume();
        ASSERT_TRUE(heard.RunUntilFinished(++finishes));
        EXPECT_EQ(RangeOfLast(), "") << headers;
        EXPECT_TRUE(ReadFile(path) == file.content) << headers;
        heard.written = 0;
    }
}

TEST_F(DownloadFileTaskTest, AFinishedDownloadStartsAnewInItsListener) {
    heard.onFinished = [&](DownloadFileTask* self) {
        if (heard.finishes > 1) return;
        self->Pause();
        self->Resume();
        EXPECT_EQ(ReadFile(path), file.content);
    };
    task->Resume();
    ASSERT_TRUE(heard.RunUntilFinished(2));
    EXPECT_EQ(heard.events, "begin 3145728 finished 0 3145728 begin 3145728 finished 0 3145728 ");
    EXPECT_TRUE(ReadFile(path) == file.content);
    EXPECT_EQ(server.Requests().size(), 2u);
}

TEST_F(DownloadFileTaskTest, PauseAndCancelAreSilent) {
    heard.onProgress = [&](DownloadFileTask* self) {
        self->Pause();
        EXPECT_EQ(heard.progresses, 1);
    };
    task->Resume();
    ASSERT_TRUE(HeardDownload::Run([&] { return heard.progresses == 1; }));
    heard.onProgress = [&](DownloadFileTask* self) { self->Cancel(); };
    task->Resume();
    ASSERT_TRUE(HeardDownload::Run([&] { return heard.progresses == 2; }));
    heard.onProgress = nullptr;
    task->Resume();
    ASSERT_TRUE(heard.RunUntilFinished());
    EXPECT_EQ(heard.events, "begin 3145728 begin 3145728 finished 0 3145728 ");
    EXPECT_EQ(ReadFile(path), file.content);

    // Whole already, and not told yet: the bytes are kept, and no call comes before the next Resume.
    const size_t before = server.Requests().size();
    task->Resume();
    ASSERT_TRUE(WaitFor([&] { return server.Requests().size() > before; }));
    ASSERT_TRUE(WaitUntilAllAsleep("UrlTransport", 1));
    task->Pause();
    const int progresses = heard.progresses;
    Quern::MainRunLoop::Current().RunPending();
    EXPECT_TRUE(heard.finishes == 1 && heard.progresses == progresses);
    task->Resume();
    EXPECT_TRUE(heard.RunUntilFinished(2));
}

TEST_F(DownloadFileTaskTest, FailuresHaveTheirCodesAndLeaveNothing) {
    const auto endOf = [&](const std::string& target, const std::string& localPath) {
        HeardDownload own;
        DownloadFileTask* const failing = WWW::DownloadFile(target.c_str(), localPath.c_str());
        failing->SetListener(&own);
        failing->Resume();
        EXPECT_TRUE(own.RunUntilFinished());
        WWW::Destroy(failing);
        return own.events;
    };
    fs::create_directories(folder + "/taken/inside");
    EXPECT_EQ(endOf(server.Url(), folder + "/taken"), "begin 3145728 finished 6 3145728 ");
    EXPECT_TRUE(fs::exists(folder + "/taken/inside"));
    EXPECT_EQ(endOf(server.Url(), folder + "/no/such/folder/file"), "finished 6 0 ");
    EXPECT_EQ(endOf("not a url", path), "finished 4 0 ");
    EXPECT_EQ(endOf("http://127.0.0.1:1/", path), "finished 1 0 ");
    const std::string huge = "Content-Range: bytes 0-9223372036854775807/*\r\n";
    proxy.Use({.kind = Fault::kInstead, .bytes = HttpAnswer("206 Part", "xx", huge)});
    EXPECT_EQ(endOf(proxy.Url(), path), "begin 2 finished 0 2 ");
    fs::remove(path);
    proxy.Use({Fault::kCut, 1 << 20});
    EXPECT_EQ(endOf(proxy.Url(), path), "begin 3145728 finished 5 3145728 ");

    // As on a full disk.
    signal(SIGXFSZ, SIG_IGN);
    const rlimit small{1 << 20, 1 << 20};
    setrlimit(RLIMIT_FSIZE, &small);
    EXPECT_EQ(endOf(server.Url(), path), "begin 3145728 finished 6 3145728 ");
    EXPECT_EQ(FilesIn(folder), std::vector<std::string>{"taken"});
}

TEST_F(DownloadFileTaskTest, DownloadsMayBeDestroyedAtEveryMoment) {
    const CapturedConsole console;
    {
        const std::lock_guard guard(fileMutex);
        file.content = "small";
    }
    const int cycles = DestroyCycles();
    std::atomic<bool> isOver{false};
    std::thread destroyer([&] {
        for (int i = 0; i < cycles; ++i) {
            DownloadFileTask* const mortal = WWW::DownloadFile(server.Url().c_str(), path.c_str());
            HeardDownload own;
            mortal->SetListener(&own);
            mortal->Resume();
            std::this_thread::sleep_for(std::chrono::microseconds(i % 20 * 100));
            if (i % 4 == 0) mortal->Pause();
            if (i % 8 == 0) mortal->Resume();
            WWW::Destroy(mortal);
        }
        isOver = true;
    });
    EXPECT_TRUE(HeardDownload::Run([&] { return isOver.load(); }, kDeadline + cycles * std::chrono::milliseconds(10)));
    destroyer.join();
}

}  // namespace
