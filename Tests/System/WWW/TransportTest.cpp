// What the transport does with certificates, with name servers that are silent, and at the process's end.
#include <arpa/inet.h>
#include <fcntl.h>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include "HeardAnswers.h"
#include "Orvane/IBase.h"
#include "Orvane/INetworkChecker.h"
#include "Support/FaultProxy.h"
#include "Support/HttpServer.h"
#include "Support/Test.h"
#include "Support/TestContainer.h"
#include "Support/TlsServer.h"
#include "System/WWW/Task/WWW.h"

namespace {

using namespace OrvaneTest;
using namespace Quern;

// The error of a GET, straight from the session.
int ErrorOf(const std::string& url) {
    std::atomic<int> error{1};
    UrlSession& session = UrlSession::Current();
    session.Resume(session.MakeDataTransfer(
        UrlRequest(url), [&](UrlSession::TransferId, const UrlResult& result) { error = result.error; }));
    WaitFor([&] { return error <= 0; });
    return error;
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
    if (unshare(CLONE_NEWNS | CLONE_NEWNET) != 0) return false;
    const int link = socket(AF_INET, SOCK_DGRAM, 0);
    ifreq loopback{};
    strcpy(loopback.ifr_name, "lo");
    loopback.ifr_flags = IFF_UP | IFF_RUNNING;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(53);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const std::string file = CacheFolder() + "/resolv.conf";
    WriteFile(file, "nameserver 127.0.0.1\n");
    const std::string hosts = CacheFolder() + "/hosts";
    WriteFile(hosts, "127.0.0.1 two.test\n127.0.0.2 two.test\n");
    return ioctl(link, SIOCSIFFLAGS, &loopback) == 0 &&
           bind(link, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
           mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount(file.c_str(), "/etc/resolv.conf", nullptr, MS_BIND, nullptr) == 0 &&
           mount(hosts.c_str(), "/etc/hosts", nullptr, MS_BIND, nullptr) == 0;
}

int ListenAt(const char* host, int port, int backlog) {
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    inet_pton(AF_INET, host, &address.sin_addr);
    EXPECT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
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
        _listener = ListenAt("127.0.0.2", port, 1);
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
    const int _silent = ListenAt("127.0.0.1", 0, 0);
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
    for (int i = 0; i < 40; ++i) {  // more than may be looked up at once
        tasks.push_back(WWW::Request(("http://host" + std::to_string(i) + ".test/").c_str()));
        tasks.back()->SetListener(&hung);
        tasks.back()->Get();
    }
    const auto begin = std::chrono::steady_clock::now();
    DataTask* const beside = WWW::Request(server.Url().c_str());
    beside->SetListener(&heard);
    beside->Get();
    EXPECT_EQ(heard.Wait().body, "here");
    WWW::Destroy(beside);
    tasks[0]->Cancel();
    EXPECT_EQ(hung.Wait().error, kWWWErrorOther);
    WWW::Destroy(tasks[1]);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, kIdle);
    EXPECT_EQ(hung.Wait(39).error, kWWWErrorTimedOut);
    for (size_t i = 0; i < tasks.size(); ++i)
        if (i != 1) WWW::Destroy(tasks[i]);

    UseSession(1000);
    const HostWithASilentAddress two;
    DataTask* const onward = WWW::Request(("http://two.test:" + std::to_string(two.port)).c_str());
    onward->SetListener(&heard);
    onward->Get();
    EXPECT_EQ(heard.Wait(2).body, "second");
    WWW::Destroy(onward);

    UseSession(60000);
    DataTask* const last = WWW::Request("http://last.test/");
    last->Get();
    WWW::Destroy(last);
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
    for (size_t i = 0; i < kAsked; ++i) {
        tasks.push_back(WWW::Request(server.Url().c_str()));
        tasks.back()->SetListener(&heard);
        tasks.back()->Get();
    }
    EXPECT_TRUE(WaitFor([&] { return server.Requests().size() == kAtOnce; }));
    tasks[kAsked - 1]->Cancel();
    EXPECT_EQ(heard.Wait().error, kWWWErrorOther);
    EXPECT_EQ(server.Requests().size(), kAtOnce);
    isHeld = false;
    EXPECT_EQ(heard.Wait(kAsked).status, 200);
    for (DataTask* const task : tasks)
        WWW::Destroy(task);

    UrlRequest put(server.Url());
    put.method = "PUT";
    std::string body;
    std::atomic<bool> isOver{false};
    UrlSession& session = UrlSession::Current();
    session.Resume(session.MakeDataTransfer(put, [&](UrlSession::TransferId, const UrlResult& result) {
        body = result.body;
        isOver = true;
    }));
    EXPECT_TRUE(WaitFor([&] { return isOver.load(); }));
    EXPECT_EQ(body, "PUT0");
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
        WWW::Request(proxy->Url().c_str())->Get();
        WWW::DownloadFile(proxy->Url().c_str(), (CacheFolder() + "/" + std::to_string(i)).c_str())->Resume();
    }
    const HttpServer tls([](const HttpRequest&) { return std::string(); });
    WWW::Request(("https" + tls.Url().substr(4)).c_str())->Get();
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
