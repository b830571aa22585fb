#include "Gets.h"

#include <sys/socket.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "BarePeer.h"
#include "Support/Ratio.h"
#include "Support/TcpService.h"
#include "System/WWW/Task/WWW.h"

namespace Orvane::Bench {
namespace {

using Quern::DataTask;
using Quern::WWW;

constexpr int kRounds = 20;
constexpr int kAtOnce = 64;
constexpr long long kSmall = 200;

class Countdown {
public:
    void Begin(int count) { _left = count; }
    void One() {
        const std::lock_guard guard(_mutex);
        if (--_left == 0) _over.notify_one();
    }
    void Wait() {
        std::unique_lock guard(_mutex);
        _over.wait(guard, [this] { return _left <= 0; });
    }

private:
    std::mutex _mutex;
    std::condition_variable _over;
    int _left = 0;
};

struct Counting final : DataTask::Listener {
    void OnDataTaskFinished(DataTask*, Quern::WWWErrorCode, int, const char*, long long) override { countdown.One(); }
    Countdown countdown;
};

// Tasks that ask for the same address, all at once, again and again.
class Tasks {
public:
    Tasks(const std::string& url, int count) {
        for (int i = 0; i < count; ++i) {
            _tasks.push_back(WWW::Request(url.c_str()));
            _tasks.back()->SetListener(&_listener);
        }
    }
    ~Tasks() {
        for (DataTask* const task : _tasks)
            WWW::Destroy(task);
    }
    void Begin() {
        _listener.countdown.Begin(static_cast<int>(_tasks.size()));
        for (DataTask* const task : _tasks) {
            task->SetListener(&_listener);  // until its last call has returned
            task->Get();
        }
    }
    void Wait() { _listener.countdown.Wait(); }
    void Run(int times) {
        for (int i = 0; i < times; ++i) {
            Begin();
            Wait();
        }
    }

private:
    Counting _listener;
    std::vector<DataTask*> _tasks;
};

void RunPeer(BarePeer& peer, const std::string& url, int atOnce, int times) {
    Countdown countdown;
    for (int i = 0; i < times; ++i) {
        countdown.Begin(atOnce);
        for (int j = 0; j < atOnce; ++j)
            peer.Get(url, [&](const std::string&) { countdown.One(); });
        countdown.Wait();
    }
}

}  // namespace

void MeasureGets(const BenchServer& server) {
    const std::string url = server.Url(kSmall);
    BarePeer peer;
    Tasks one(url, 1), many(url, kAtOnce);
    constexpr int kOneByOne = 500, kTimes = 10;
    const Comparison single = Compare(
        kRounds, kOneByOne, [&] { one.Run(kOneByOne); }, [&] { RunPeer(peer, url, 1, kOneByOne); });
    Print("small GETs, one after the other / bare multi, two threads", single, "<= 1.11");
    const Comparison together = Compare(
        kRounds, kTimes * kAtOnce, [&] { many.Run(kTimes); }, [&] { RunPeer(peer, url, kAtOnce, kTimes); });
    Print("small GETs, 64 at once / bare multi, two threads", together, "<= 1.11");

    CURL* const easy = curl_easy_init();
    const Comparison here = Compare(
        kRounds, kOneByOne, [&] { one.Run(kOneByOne); },
        [&] {
            for (int i = 0; i < kOneByOne; ++i)
                GetHere(easy, url);
        });
    curl_easy_cleanup(easy);
    Print("small GETs, one after the other / libcurl on this thread", here, "shown");
    printf("  the two hand-overs cost %.1f us a GET (%.1f us bare)\n", (here.ours - here.other) / 1e3,
           (single.other - here.other) / 1e3);
}

void MeasureBesideHungLookups(const BenchServer& server, bool isMute) {
    if (!isMute) {
        printf("64 GETs beside 8 hung lookups: not measured, needs the right to make namespaces\n");
        return;
    }
    Tasks many(server.Url(kSmall), kAtOnce);
    constexpr int kTimes = 10;
    std::vector<DataTask*> lookups;
    std::vector<double> with, without;
    // Hung lookups outlive their transfers, so alternating would measure them on both sides.
    for (std::vector<double>* const times : {&without, &with}) {
        for (int round = -1; round < kRounds; ++round) {
            const Seconds begin = Now();
            many.Run(kTimes);
            if (round >= 0) times->push_back(Now() - begin);
        }
        for (int i = 0; lookups.size() < 8; ++i) {
            lookups.push_back(WWW::Request(("http://host" + std::to_string(i) + ".test/").c_str()));
            lookups.back()->Get();
        }
    }
    for (DataTask* const lookup : lookups)
        WWW::Destroy(lookup);
    constexpr double kUnits = kTimes * kAtOnce / 1e9;
    Print("64 GETs beside 8 hung lookups / without",
          {Median(with) / kUnits, Median(without) / kUnits, Median(with) / Median(without)}, "<= 1.11");
}

void MeasureBesideSlowListener(const BenchServer& server) {
    constexpr int kTransfers = 20;
    std::atomic<int> come{0};
    // Counts what arrives: when the last request has come is the server's time.
    const OrvaneTest::TcpService counting([&](int connection) {
        char request[4096];
        while (recv(connection, request, sizeof request, 0) > 0) {
            ++come;
            OrvaneTest::SendAll(connection, "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok");
        }
    });
    const std::string url = "http://127.0.0.1:" + std::to_string(counting.Port()) + "/";
    struct Slow final : DataTask::Listener {
        void OnDataTaskFinished(DataTask*, Quern::WWWErrorCode, int, const char*, long long) override {
            isInside = true;
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            isInside = false;
        }
        std::atomic<bool> isInside{false};
    } slow;
    DataTask* const slowTask = WWW::Request(server.Url(kSmall).c_str());
    Tasks others(url, kTransfers);
    const auto untilAllCame = [&](bool beside) {
        if (beside) {
            slowTask->SetListener(&slow);
            slowTask->Get();
            while (!slow.isInside) {
            }
        }
        come = 0;
        const Seconds begin = Now();
        others.Begin();
        while (come < kTransfers) {
        }
        const Seconds taken = Now() - begin;
        others.Wait();
        return taken;
    };
    std::vector<double> with, without, ratios;
    for (int round = -1; round < kRounds; ++round) {
        const double beside = untilAllCame(true), alone = untilAllCame(false);
        if (round < 0) continue;
        with.push_back(beside * 1e9 / kTransfers);
        without.push_back(alone * 1e9 / kTransfers);
        ratios.push_back(beside / alone);
    }
    WWW::Destroy(slowTask);
    Print("20 GETs beside a listener of 100 ms / without", {Median(with), Median(without), Median(ratios)}, "<= 1.11");
}

}  // namespace Orvane::Bench
