// What the transport does with certificates, with name servers that are silent, and at the process's end.
#include <arpa/inet.h>
#include <sys/mount.h>

#include "HeardAnswers.h"
#include "Orvane/IBase.h"
#include "Orvane/INetworkChecker.h"
#include "Support/FaultProxy.h"
#include "Support/HttpServer.h"
#include "Support/NetworkPath.h"
#include "Support/Test.h"
#include "Support/TlsServer.h"

namespace {

using namespace OrvaneTest;
using namespace Quern;

// What comes of a request, straight from the session.
UrlResult ResultOf(const UrlRequest& request) {
    UrlResult result;
    std::atomic<bool> isOver{false};
    UrlSession& session = UrlSession::Current();
    session.Resume(session.MakeDataTransfer(request, [&](UrlSession::TransferId, const UrlResult& heard) {
        result = heard;
        isOver = true;
    }));
    EXPECT_TRUE(WaitFor([&] { return isOver.load(); }));
    return result;
}

int ErrorOf(const std::string& url) {
    return ResultOf(UrlRequest(url)).error;
}

TEST(TransportTest, CertificatesAreChecked) {
    const TlsServer good("127.0.0.1", "20480101000000Z"), other("127.0.0.2", "20480101000000Z"),
        expired("127.0.0.1", "20200201000000Z");
    UseSession(5000);
    EXPECT_EQ(ErrorOf(good.url), kUrlCertificateHasUnknownRoot);
    UseSession(5000, good.certificate);
    EXPECT_EQ(ErrorOf(good.url), kUrlNoError);
    UseSession(5000, other.certificate);
    EXPECT_EQ(ErrorOf(other.url), kUrlCertificateUntrusted);
    UseSession(5000, expired.certificate);
    EXPECT_EQ(ErrorOf(expired.url), kUrlCertificateHasBadDate);
    const TcpService plain([](int connection) { SendAll(connection, "this is no TLS\r\n"); });
    EXPECT_EQ(ErrorOf("https://127.0.0.1:" + std::to_string(plain.Port())), kUrlSecureConnectionFailed);
}

// A name server that takes every question and answers none, in namespaces of the process's own. One host has two
// addresses all the same.
bool BecomeMute() {
    if (!NetworkPath::Enter()) return false;
    MuteNameServer();
    WriteFile(CacheFolder() + "/hosts", "127.0.0.1 two.test\n127.0.0.2 two.test\n");
    return mount((CacheFolder() + "/hosts").c_str(), "/etc/hosts", nullptr, MS_BIND, nullptr) == 0;
}

sockaddr_in AddressAt(int host, int port) {
    return {
        AF_INET, htons(static_cast<uint16_t>(port)), {htonl(INADDR_LOOPBACK - 1 + static_cast<uint32_t>(host))}, {}};
}

// At 127.0.0.`host`.
int ListenAt(int host, int port, int backlog) {
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = AddressAt(host, port);
    EXPECT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    listen(listener, backlog);
    return listener;
}

// A host whose first address answers no connection, since its queue is full, and whose second one is a server.
class HostWithASilentAddress {
public:
    HostWithASilentAddress() {
        sockaddr_in address{};
        socklen_t size = sizeof address;
        getsockname(_silent, reinterpret_cast<sockaddr*>(&address), &size);
        port = ntohs(address.sin_port);
        _queued = ConnectTo(port);
        _listener = ListenAt(2, port, 1);
        _answering = std::thread([this] {
            const int connection = accept(_listener, nullptr, nullptr);
            char request[4096];
            if (connection < 0 || recv(connection, request, sizeof request, 0) <= 0) return;
            SendAll(connection, HttpAnswer("200 OK", "second"));
            close(connection);
        });
    }
    ~HostWithASilentAddress() {
        shutdown(_listener, SHUT_RDWR);
        _answering.join();
        for (const int descriptor : {_silent, _queued, _listener})
            close(descriptor);
    }
    int port;

private:
    const int _silent = ListenAt(1, 0, 0);
    int _queued, _listener;
    std::thread _answering;
};

TEST(TransportTest, ANameServerThatIsSilentHoldsUpNothing) {
    if (!BecomeMute()) GTEST_SKIP() << "needs the right to make namespaces";
    constexpr std::chrono::milliseconds kIdle{3000};  // the name server is asked for longer
    UseSession(static_cast<int>(kIdle.count()));
    const HttpServer server([](const HttpRequest&) { return HttpAnswer("200 OK", "here"); });
    HeardAnswers hung, heard;
    std::vector<DataTask*> tasks;
    for (int i = 0; i < 40; ++i)  // more than may be looked up at once
        tasks.push_back(Begin("http://host" + std::to_string(i) + ".test/", &hung));
    const auto begin = std::chrono::steady_clock::now();
    DataTask* const beside = Begin(server.Url(), &heard);
    EXPECT_EQ(heard.Wait(), "0 200 here");
    WWW::Destroy(beside);
    tasks[0]->Cancel();
    EXPECT_EQ(hung.Wait(), Failed(kWWWErrorOther));
    WWW::Destroy(tasks[1]);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, kIdle);
    EXPECT_EQ(hung.Wait(39), Failed(kWWWErrorTimedOut));
    for (size_t i = 0; i < tasks.size(); ++i)
        if (i != 1) WWW::Destroy(tasks[i]);

    UseSession(1000);
    const HostWithASilentAddress two;
    DataTask* const onward = Begin("http://two.test:" + std::to_string(two.port), &heard);
    EXPECT_EQ(heard.Wait(2), "0 200 second");
    WWW::Destroy(onward);

    UseSession(60000);
    WWW::Destroy(Begin("http://last.test/"));
    // The process ends with the lookup in flight; the runner's time limit is what fails here.
}

TEST(TransportTest, MoreThanMayRunAtOnceWaitForTheirTurn) {
    constexpr size_t kAsked = 260, kAtOnce = 256;
    UseSession(20000);
    std::atomic<bool> isHeld{true};
    const HttpServer server([&](const HttpRequest& request) {
        WaitFor([&] { return !isHeld; });
        return HttpAnswer("200 OK", request.method + request.Header("Content-Length"));
    });
    HeardAnswers heard;
    std::vector<DataTask*> tasks;
    for (size_t i = 0; i < kAsked; ++i)
        tasks.push_back(Begin(server.Url(), &heard));
    EXPECT_TRUE(WaitFor([&] { return server.Requests().size() == kAtOnce; }));
    tasks[kAsked - 1]->Cancel();
    EXPECT_EQ(heard.Wait(), Failed(kWWWErrorOther));
    EXPECT_EQ(server.Requests().size(), kAtOnce);
    isHeld = false;
    EXPECT_EQ(heard.Wait(kAsked), "0 200 GET");
    for (DataTask* const task : tasks)
        WWW::Destroy(task);

    UrlRequest put(server.Url());
    put.method = "PUT";
    EXPECT_EQ(ResultOf(put).body, "PUT0");
}

TEST(TransportTest, ACancelBesideTheStartIsNotLost) {
    constexpr int kTransfers = 3000;
    UseSession(5000);
    const TcpService mute([](int connection) {
        for (char request[4096]; recv(connection, request, sizeof request, 0) > 0;) {
        }
    });
    UrlSession& session = UrlSession::Current();
    std::atomic<UrlSession::TransferId> started{0};
    std::atomic<int> ends{0}, cancelled{0};
    std::atomic<bool> isOver{false};
    std::thread canceller([&] {
        while (!isOver)
            if (const UrlSession::TransferId transfer = started.exchange(0)) session.Cancel(transfer);
    });
    for (int i = 0; i < kTransfers; ++i) {
        const UrlRequest request("http://127.0.0.1:" + std::to_string(mute.Port()));
        const UrlSession::TransferId transfer =
            session.MakeDataTransfer(request, [&](UrlSession::TransferId, const UrlResult& result) {
                cancelled += result.error == kUrlCancelled;
                ++ends;
            });
        started = transfer;
        session.Resume(transfer);
        WaitFor([&] { return started == 0; });
    }
    EXPECT_TRUE(WaitFor([&] { return ends == kTransfers; }));
    EXPECT_EQ(cancelled, kTransfers);
    isOver = true;
    canceller.join();
}

void ExitWithAllInFlight(bool isUnderWay) {
    const HttpServer server([](const HttpRequest&) { return HttpAnswer("200 OK", std::string(1 << 20, 'x')); });
    auto* const proxy = new FaultProxy(server.Port());
    proxy->Use({Fault::kHold, 1 << 10});
    for (int i = 0; i < 8; ++i) {
        Begin(proxy->Url());
        WWW::DownloadFile(proxy->Url().c_str(), (CacheFolder() + "/" + std::to_string(i)).c_str())->Resume();
    }
    const HttpServer tls([](const HttpRequest&) { return std::string(); });
    Begin("https" + tls.Url().substr(4));
    constexpr char kNowhere[] = "192.0.2.1";
    INetworkChecker& checker = *INetworkChecker::GetInstance();
    checker.Ping(
        kNowhere, 1, [](PingResult&) {}, 60, 255);
    checker.TraceRoute(
        kNowhere, 2, [](TraceRouteResult&) {}, 255);
    checker.NSLookup("in-flight.invalid", 3, [](NSLookupResult&) {});
    if (isUnderWay) WaitFor([&] { return proxy->Connections() == 16; });
    IBase::Release();
    exit(7);
}

TEST(TransportTest, AProcessEndsWithAllKindsInFlight) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    for (const bool isUnderWay : {true, false})
        EXPECT_EXIT(ExitWithAllInFlight(isUnderWay), testing::ExitedWithCode(7), "");
}

}  // namespace
