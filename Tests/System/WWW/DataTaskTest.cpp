#include "Orvane/DataTask.h"

#include <arpa/inet.h>

#include "HeardAnswers.h"
#include "Support/FaultProxy.h"
#include "Support/HttpServer.h"
#include "Support/Test.h"
#include "System/WWW/Linux/DataTransfer.h"

namespace {

using namespace OrvaneTest;
using namespace Quern;

// "packed" in gzip's format.
const std::string kPacked("\x1f\x8b\x08\0\0\0\0\0\x02\x03\x2bHL\xceNM\x01\0\x10\xb4\xf6\x21\x06\0\0\0", 26);

std::string Serve(const HttpRequest& request) {
    if (request.target == "/missing") return HttpAnswer("404 Not Found", "no such page");
    if (request.target == "/broken") return HttpAnswer("500 Broken", "sorry");
    if (request.target == "/empty") return HttpAnswer("204 Empty", "");
    if (request.target == "/away") return HttpAnswer("302 Away", "gone", "Location: /found\r\n");
    if (request.target == "/round") return HttpAnswer("302 Away", "", "Location: /round\r\n");
    if (request.target == "/ftp") return HttpAnswer("302 Away", "", "Location: ftp://127.0.0.1/\r\n");
    if (request.target == "/repeat") return HttpAnswer("307 Again", "", "Location: " + request.body + "\r\n");
    if (request.target == "/gzip") return HttpAnswer("200 OK", kPacked, "Content-Encoding: gzip\r\n");
    return HttpAnswer("200 OK", request.method + " " + request.target + " " + request.body);
}

class DataTaskTest : public testing::Test {
protected:
    DataTaskTest() { task->SetListener(&heard); }
    ~DataTaskTest() override { WWW::Destroy(task); }
    std::string Get(const std::string& url) {
        task->SetListener(&heard);  // waits until the last call has returned
        task->SetUrl(url.c_str());
        task->Get();
        return heard.Wait(++asked);
    }
    std::string Post(const std::string& url, const char* body, int length) {
        task->SetListener(&heard);
        task->SetUrl(url.c_str());
        task->Post(body, length);
        return heard.Wait(++asked);
    }

    HttpServer server{Serve};
    FaultProxy proxy{server.Port()};
    HeardAnswers heard;
    size_t asked = 0;
    DataTask* task = (UseSession(600), WWW::Request(""));
};

TEST_F(DataTaskTest, EndsWithAnErrorWhereNoThreadCanBeStarted) {
    pthread_attr_t usual, huge;
    pthread_getattr_default_np(&usual);
    pthread_getattr_default_np(&huge);
    pthread_attr_setstacksize(&huge, size_t{1} << 46);  // no thread has room for its stack
    task->SetUrl(server.Url("/").c_str());
    pthread_setattr_default_np(&huge);
    task->Get();
    pthread_setattr_default_np(&usual);
    EXPECT_EQ(heard.Count(), asked);
    MainRunLoop::Current().RunPending();
    EXPECT_EQ(heard.Wait(++asked), Failed(kWWWErrorOther));
    EXPECT_EQ(Get(server.Url("/a")), "0 200 GET /a ") << "the next one tries again";
}

TEST_F(DataTaskTest, AnswersComeAsTheServerMeantThem) {
    EXPECT_EQ(Get(server.Url("/a?b")), "0 200 GET /a?b ");
    EXPECT_EQ(Get(server.Url("/away")), "0 200 GET /found ");
    EXPECT_EQ(Get(server.Url("/gzip")), "0 200 packed");
    EXPECT_EQ(Get(server.Url("/missing")), "0 404 no such page");
    EXPECT_EQ(Get(server.Url("/broken")), "0 500 sorry");
    EXPECT_EQ(Get(server.Url("/empty")), Failed(kWWWErrorNone, 204));
    EXPECT_EQ(server.Connections(), 1);
    for (int descriptor = 0; descriptor < 256; ++descriptor) {
        sockaddr_in peer{};
        socklen_t size = sizeof peer;
        if (getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &size) != 0) continue;
        EXPECT_TRUE(ntohs(peer.sin_port) != server.Port() || (fcntl(descriptor, F_GETFD) & FD_CLOEXEC));
    }

    EXPECT_EQ(Post(server.Url("/p"), "to be cut", 5), "0 200 POST /p to be");
    EXPECT_EQ(Post(server.Url("/p"), "text", 0), "0 200 GET /p ");
    EXPECT_EQ(Post(server.Url("/p"), nullptr, 3), "0 200 GET /p ");
}

TEST_F(DataTaskTest, HeadersGoOutAsTheyWereSet) {
    const CapturedConsole console;
    const char* const kHeaders[][2] = {
        {"X-Plain", "one"},      {"X-Plain", "two"},    {"X-Empty", ""},    {"ACCEPT", "a/b"},
        {"accept", "c/d"},       {"Host", "elsewhere"}, {"X Blank", "x"},   {"X-Break", "a\r\nX-Smuggled: b"},
        {"content-length", "7"}, {nullptr, "x"},        {"X-Null", nullptr}};
    for (const auto& [name, value] : kHeaders)
        task->SetHttpHeader(name, value);
    Get(server.Url());
    const HttpRequest request = server.Requests().at(0);
    EXPECT_EQ(request.Header("X-Plain"), "two");
    EXPECT_EQ(request.Header("accept"), "c/d");
    EXPECT_EQ(request.Header("Host"), "elsewhere");
    EXPECT_THAT(request.head, HasSubstr("\r\nX-Empty:\r\n"));
    EXPECT_THAT(request.head, Not(HasSubstr("Smuggled")));
    EXPECT_THAT(request.head, Not(HasSubstr("Blank")));
    EXPECT_EQ(request.head.find("ACCEPT"), std::string::npos);
    EXPECT_EQ(request.body, "");
}

TEST_F(DataTaskTest, RefusalsAreToldInTheLogAlone) {
    CapturedConsole console;
    const auto isRefusedWith = [&](const char* url, const char* line) {
        console.Take();
        task->SetUrl(url);
        task->Get();
        EXPECT_THAT(console.Take(), Contains(line)) << url;
        EXPECT_FALSE(WWW::TryGet(task));
    };
    isRefusedWith("", "Error _url is null");
    for (const char* url : {"http://a b/", "http://a/\x01", "http://a/%4", "http://[::1/", "1http://a/"})
        isRefusedWith(url, "Error url is null");
    task->SetUrl(nullptr);
    EXPECT_STREQ(task->GetUrl(), "1http://a/");
    EXPECT_EQ(heard.Count(), 0u);

    for (const char* url : {"ftp://a/", "/relative", "http:///path"})
        EXPECT_EQ(Get(url), Failed(kWWWErrorUnsupportedURL)) << url;
    EXPECT_EQ(Get(server.Url("/ftp")), Failed(kWWWErrorUnsupportedURL, 302));
    EXPECT_EQ(Get(server.Url("/round")), Failed(kWWWErrorOther, 302));
    EXPECT_EQ(Get(server.Url("/" + std::string(1 << 20, 'u'))), Failed(kWWWErrorOther));
}

TEST_F(DataTaskTest, FaultsOfTheNetworkHaveTheirCodes) {
    const auto errorUnder = [&](Fault fault) {
        proxy.Use(fault);
        return Get(proxy.Url("/some/longer/target"));
    };
    EXPECT_EQ(errorUnder({Fault::kCut, 10}), Failed(kWWWErrorConnectionLost));
    EXPECT_EQ(errorUnder({Fault::kReset, 0}), Failed(kWWWErrorConnectionLost));
    EXPECT_EQ(errorUnder({Fault::kCut, 45}), Failed(kWWWErrorConnectionLost, 200));
    EXPECT_EQ(errorUnder({Fault::kLength, 5000}), Failed(kWWWErrorConnectionLost, 200));
    EXPECT_EQ(errorUnder({Fault::kLength, 300 << 20}), Failed(kWWWErrorOther, 200));
    EXPECT_EQ(errorUnder({.kind = Fault::kInstead, .bytes = "\x16\x03 no HTTP at all\r\n\r\n"}),
              Failed(kWWWErrorOther));
    EXPECT_EQ(errorUnder({Fault::kHold, 0}), Failed(kWWWErrorTimedOut));
    EXPECT_EQ(errorUnder({Fault::kHold, 45}), Failed(kWWWErrorTimedOut, 200));
    proxy.Use({.kind = Fault::kDrip, .pace = 1});  // takes longer than the idle clock, but is never idle
    EXPECT_EQ(Get(proxy.Url("/slow")), "0 200 GET /slow ");
    proxy.Use({.kind = Fault::kEndless});  // beyond the length that it told
    EXPECT_EQ(Get(proxy.Url("/more")), "0 200 GET /more ");

    const int port = server.Port();
    EXPECT_EQ(Get("http://127.0.0.1:1/"), Failed(kWWWErrorOther));
    EXPECT_EQ(Get("http://no-such-host.invalid:" + std::to_string(port)), Failed(kWWWErrorCannotFindHost));
}

TEST_F(DataTaskTest, ABodyWithoutEndIsGivenUp) {
    CompletionThread completions;
    DataTransfer transfer(1, UrlRequest("http://a/"), nullptr, completions);
    const std::string piece(1 << 20, 'x');
    for (int i = 0; i < 256; ++i)
        ASSERT_EQ(transfer.OnData(piece.data(), piece.size()), kUrlNoError);
    EXPECT_EQ(transfer.OnData(piece.data(), 1), kUrlDataLengthExceedsMaximum);
}

TEST_F(DataTaskTest, OnADyingKeptConnectionAPostArrivesOnce) {
    EXPECT_EQ(Get(proxy.Url("/first")), "0 200 GET /first ");
    EXPECT_EQ(Get(proxy.Url("/kept")), "0 200 GET /kept ");
    EXPECT_EQ(proxy.Connections(), 1);
    proxy.Use({.kind = Fault::kDieKept});
    EXPECT_EQ(Post(proxy.Url("/post"), "body", 4), "0 200 POST /post body");
    const auto posts = [&](const std::string& target) {
        int count = 0;
        for (const HttpRequest& request : server.Requests())
            count += request.method == "POST" && request.target == target;
        return count;
    };
    EXPECT_EQ(posts("/post"), 1);
    EXPECT_EQ(Get(proxy.Url("/again")), "0 200 GET /again ");  // a GET may be sent twice

    // Sent on by another server, over a connection that was kept.
    const std::string onward = proxy.Url("/onward");
    const int length = static_cast<int>(onward.size());
    EXPECT_EQ(Post(server.Url("/repeat"), onward.c_str(), length), Failed(kWWWErrorConnectionLost, 307));
    EXPECT_EQ(posts("/onward"), 1);
    proxy.Release();
    EXPECT_EQ(Post(server.Url("/repeat"), onward.c_str(), length), "0 200 POST /onward " + onward);
}

TEST_F(DataTaskTest, ARequestInFlightIsTheOnlyOne) {
    CapturedConsole console;
    proxy.Use({Fault::kHold, 0});
    task->SetUrl(proxy.Url("/first").c_str());
    task->Get();
    task->SetUrl(proxy.Url("/second").c_str());
    task->Get();
    EXPECT_FALSE(WWW::TryGet(task));
    EXPECT_THAT(console.Take(), Contains("Info DataTask is Requesting"));
    proxy.Release();
    EXPECT_EQ(heard.Wait(), "0 200 GET /first ");

    proxy.Use({Fault::kHold, 0});
    asked = 1;
    task->SetListener(&heard);
    task->Get();
    ASSERT_TRUE(WaitFor([&] { return server.Requests().size() == 2; }));
    task->Cancel();
    task->Cancel();
    EXPECT_EQ(heard.Wait(++asked), Failed(kWWWErrorOther));
}

TEST_F(DataTaskTest, InsideTheListenerOneRequestIsKeptForTheLibrarysOwn) {
    std::vector<bool> taken;
    heard.onAnswer = [&](DataTask* self) {
        if (heard.Count() > 0) return;
        self->Get();  // dropped
        self->SetUrl(server.Url("/kept").c_str());
        taken = {WWW::TryGet(self), WWW::TryGet(self)};
    };
    Get(server.Url("/first"));
    EXPECT_EQ(heard.Wait(2), "0 200 GET /kept ");
    EXPECT_THAT(taken, ElementsAre(true, false));

    heard.onAnswer = [&](DataTask* self) {
        if (heard.Count() > 2) return;
        taken = {WWW::TryGet(self)};
        self->Cancel();
    };
    asked = 2;
    Get(server.Url("/first"));
    EXPECT_EQ(heard.Wait(4), Failed(kWWWErrorOther));
}

TEST_F(DataTaskTest, AListenerHoldsUpNoRequestButWhoDestroys) {
    std::atomic<bool> isInside{false}, isOver{false};
    heard.onAnswer = [&](DataTask*) {
        isInside = true;
        isOver = WaitFor([&] { return server.Requests().size() == 2; });
    };
    task->SetUrl(server.Url().c_str());
    task->Get();
    ASSERT_TRUE(WaitFor([&] { return isInside.load(); }));
    HeardAnswers unheard;
    WWW::Destroy(Begin(server.Url("/beside"), &unheard));  // in flight
    EXPECT_TRUE(isOver);
}

TEST_F(DataTaskTest, TasksMayBeDestroyedAtEveryMoment) {
    const CapturedConsole console;
    std::atomic<int> lateCalls{0};
    struct Mortal final : DataTask::Listener {
        void OnDataTaskFinished(DataTask*, WWWErrorCode, int, const char*, long long) override {
            if (isDead) ++*late;
        }
        std::atomic<bool> isDead{false};
        std::atomic<int>* late = nullptr;
    };
    const int cycles = DestroyCycles();
    std::vector<Mortal> listeners(static_cast<size_t>(cycles));
    std::atomic<int> next{0};
    const auto destroyMany = [&] {
        for (int i; (i = next++) < cycles;) {
            Mortal& listener = listeners[static_cast<size_t>(i)];
            listener.late = &lateCalls;
            DataTask* const mortal = Begin(server.Url(), &listener);
            std::this_thread::sleep_for(std::chrono::microseconds(i % 20 * 100));
            if (i % 3 == 0) mortal->Cancel();
            std::thread([mortal] { WWW::Destroy(mortal); }).join();
            listener.isDead = true;
        }
    };
    std::thread beside(destroyMany);
    destroyMany();
    beside.join();
    EXPECT_EQ(lateCalls, 0);
    EXPECT_EQ(Get(server.Url("/alive")), "0 200 GET /alive ");
}

}  // namespace
