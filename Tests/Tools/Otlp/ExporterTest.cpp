#include "Otlp/Exporter.h"

#include <gmock/gmock.h>

#include "Otlp/Messages.h"
#include "Otlp/RetryDelay.h"
#include "Support/OtlpReceiver.h"
#include "Support/TlsServer.h"
#include "Support/WaitFor.h"

namespace OrvaneOtlp {
namespace {

using namespace OrvaneTest;
using namespace std::chrono_literals;
using testing::HasSubstr;

// Goes on when a test says so; whoever waits looks a thousand times a second.
class ManualClock final : public Clock {
public:
    Time Now() const override { return Time(std::chrono::milliseconds(_now.load())); }
    void Wait(std::condition_variable& changed, std::unique_lock<std::mutex>& lock, Time) override {
        changed.wait_for(lock, 1ms);
    }
    void Advance(std::chrono::milliseconds time) { _now += time.count(); }

private:
    std::atomic<long> _now{1000000};
};

// Sends texts as the bodies of log records, on a clock of its own.
struct Sender {
    explicit Sender(const std::string& url)
        : exporter(
              {url, {}, 60000, false, ""},
              [](const std::vector<std::string>& items) {
                  std::vector<LogRecord> records(items.size());
                  for (size_t i = 0; i < items.size(); ++i)
                      records[i].body = items[i];
                  Attributes resource;
                  resource.Set("service.name", "test");
                  return LogsMessage(resource, records);
              },
              [this](const std::string& line) {
                  const std::lock_guard guard(mutex);
                  said += line + "\n";
              },
              ExporterOptions(), clock) {}

    std::string Said() {
        const std::lock_guard guard(mutex);
        return said;
    }
    // Lets time go on until the condition holds.
    bool InTime(std::function<bool()> condition, std::chrono::milliseconds step = 100ms) {
        return WaitFor([&] {
            clock->Advance(step);
            return condition();
        });
    }
    bool FlushInTime() {
        return InTime([this] { return exporter.Flush(0ms); });
    }

    std::mutex mutex;
    std::string said;
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    Exporter exporter;
};

TEST(Exporter, TriesAgainUntilTheReceiverIsBack) {
    EXPECT_EQ(RetryDelay(1, 0, -1), 500ms);
    EXPECT_EQ(RetryDelay(5, 0.5, -1), 16s);
    EXPECT_EQ(RetryDelay(5000, 1, -1), 45s);
    EXPECT_EQ(RetryDelay(3, 0.5, 3), 4s);
    EXPECT_EQ(RetryDelay(1, 0, 1LL << 62), 1h);

    const std::string answers[] = {"", HttpAnswer("503 No", ""), HttpAnswer("429 No", "", "Retry-After: 70\r\n"),
                                   HttpAnswer("502 No", ""), HttpAnswer("504 No", "")};
    std::atomic<size_t> number{0};
    OtlpReceiver receiver([&](const HttpRequest&) {
        const size_t now = number++;
        return now < std::size(answers) ? answers[now] : "200";
    });
    Sender sender(receiver.Url("/v1/logs"));
    EXPECT_TRUE(sender.exporter.Offer("one") && sender.exporter.Offer("two"));
    EXPECT_FALSE(WaitFor([&] { return number > 0; }, 30ms)) << "the batch is not due";
    ASSERT_TRUE(sender.InTime([&] { return number == 3; }));
    WaitFor([&] { return number > 3; }, 30ms);  // the answer is on its way
    sender.clock->Advance(60s);
    EXPECT_FALSE(WaitFor([&] { return number > 3; }, 50ms)) << "it was asked to wait";
    ASSERT_TRUE(sender.FlushInTime());
    EXPECT_EQ(number, 6u);
    ASSERT_EQ(receiver.Records().size(), 2u) << "once each";
    EXPECT_EQ(receiver.Records()[1].json["body"]["stringValue"].asString(), "two");
    EXPECT_EQ(receiver.Problems(), "");
    const std::string url = receiver.Url("/v1/logs");
    EXPECT_THAT(sender.Said(),
                testing::MatchesRegex(url + ": [^\n]*; it is tried again\n" + url + ": takes records again\n"));
}

TEST(Exporter, SaysWhatTheReceiverWillNotHave) {
    const struct {
        std::string answer, said;
        uint64_t sent, rejected;  // of two
    } cases[] = {
        {HttpAnswer("400 Bad", R"({"code":3,"message":"no such tenant"})"), "400, no such tenant", 0, 0},
        {HttpAnswer("403 No", std::string(99999, 'x') + "\n"), "403, " + std::string(200, 'x') + "\n", 0, 0},
        {HttpAnswer("307 There", "", "Location: http://127.0.0.1:1/\r\n"), "2 records dropped: the answer 307", 0, 0},
        {HttpAnswer("200 OK", R"({"partialSuccess":{"rejectedLogRecords":"1","errorMessage":"old"}})"),
         "1 of them: old", 1, 1},
        {HttpAnswer("200 OK", R"({"partialSuccess":{"rejectedSpans":7}})"), "but not 2 of them", 0, 2},
        {HttpAnswer("202 OK", R"({"partialSuccess":{"errorMessage":"use v2"}})"), "warns: use v2", 2, 0},
        {HttpAnswer("200 OK", R"({"partialSuccess":{"rejectedLogRecords":"-1","errorMessage":7}})"), "", 2, 0},
        {HttpAnswer("200 OK", std::string(5000, '[')), "", 2, 0},
    };
    std::atomic<size_t> which{0};
    OtlpReceiver receiver([&](const HttpRequest&) { return cases[which].answer; });
    Sender sender(receiver.Url("/v1/logs?key=secret"));
    for (; which < std::size(cases); ++which) {
        const auto& one = cases[which];
        const ExporterCounts before = sender.exporter.Counts();
        const size_t saidBefore = sender.Said().size();
        EXPECT_TRUE(sender.exporter.Offer("a") && sender.exporter.Offer("b"));
        ASSERT_TRUE(sender.FlushInTime());
        const ExporterCounts counts = sender.exporter.Counts();
        EXPECT_EQ(counts.sent - before.sent, one.sent) << one.said;
        EXPECT_EQ(counts.rejected - before.rejected, one.rejected) << one.said;
        EXPECT_EQ(counts.refused - before.refused, 2 - one.sent - one.rejected) << one.said;
        const std::string said = sender.Said().substr(saidBefore);
        EXPECT_THAT(said, HasSubstr(one.said));
        EXPECT_EQ(said.empty(), one.said.empty()) << said;
    }
    EXPECT_EQ(sender.Said().find("secret"), std::string::npos);
}

// The receiver holds the first request, then is gone for a minute, while a game goes on to trace.
TEST(Exporter, StaysBoundedAndNeverWaitsWhileTheReceiverIsDead) {
    constexpr uint64_t kSpans = 100000;
    std::atomic<bool> isHeld{false}, isReleased{false}, isBack{false};
    OtlpReceiver receiver([&](const HttpRequest&) {
        isHeld = true;
        WaitFor([&] { return isReleased.load(); });
        return isBack ? "200" : "";
    });
    Sender sender(receiver.Url());
    size_t most = 0;
    for (uint64_t i = 0; i < kSpans; ++i) {
        // A held request holds up no one: a tenth of the spans goes by before the receiver lets it go.
        if (i == 600) {
            ASSERT_TRUE(WaitFor([&] { return isHeld.load(); }));
        }
        if (i == kSpans / 10) isReleased = true;
        if (i % 1000 == 0) sender.clock->Advance(600ms);
        sender.exporter.Offer(std::to_string(kSpans + i) + std::string(600, 'x'));
        if (i % 100 == 0) most = std::max(most, sender.exporter.HeldBytes());
    }
    const ExporterCounts dead = sender.exporter.Counts();
    EXPECT_EQ(dead.accepted + dead.overflow, kSpans);
    EXPECT_EQ(dead.sent + dead.refused, 0u) << "a minute is borne";
    EXPECT_LE(most, ExporterOptions().maxBytes);
    EXPECT_GT(dead.accepted, ExporterOptions().maxBytes / 700) << "the room is used";
    isBack = true;
    ASSERT_TRUE(sender.FlushInTime());
    EXPECT_EQ(sender.exporter.Counts().sent, dead.accepted);
    std::vector<std::string> bodies;
    for (const OtlpRecord& record : receiver.Records())
        bodies.push_back(record.json["body"]["stringValue"].asString());
    EXPECT_EQ(bodies.size(), dead.accepted);
    EXPECT_TRUE(std::is_sorted(bodies.begin(), bodies.end())) << "in the order in which they came";
    EXPECT_EQ(sender.exporter.HeldBytes(), 0u);
    sender.exporter.Stop(0ms);
    EXPECT_THAT(sender.Said(), HasSubstr(" " + std::to_string(dead.overflow) + " in all: there was no room for them"));
}

TEST(Exporter, GivesABatchUpAndEndsWithinItsDeadline) {
    std::atomic<bool> isOver{false}, hasEnded{false};
    std::atomic<int> number{0};
    OtlpReceiver receiver([&](const HttpRequest&) {
        if (++number == 1) return HttpAnswer("429 No", "", "Retry-After: 4000\r\n");
        WaitFor([&] { return isOver.load(); });
        return std::string();
    });
    Sender sender(receiver.Url());
    sender.exporter.Offer("asked to wait for longer than it may take");
    ASSERT_TRUE(sender.FlushInTime());
    EXPECT_THAT(sender.Said(), HasSubstr("1 record dropped: not taken in 300 s"));
    sender.exporter.Offer("held");
    sender.exporter.Flush(0ms);
    sender.clock->Advance(3500s);
    EXPECT_FALSE(WaitFor([&] { return number == 2; }, 30ms)) << "the wait holds for the next batch too";
    sender.clock->Advance(100s);
    ASSERT_TRUE(WaitFor([&] { return number == 2; }));
    sender.exporter.Offer("behind it");
    std::thread ending([&] {
        sender.exporter.Stop(2s);
        hasEnded = true;
    });
    EXPECT_FALSE(WaitFor([&] { return hasEnded.load(); }, 50ms)) << "the deadline is for the receiver";
    EXPECT_TRUE(sender.InTime([&] { return hasEnded.load(); }));
    ending.join();
    EXPECT_EQ(sender.exporter.Counts().refused, 3u);
    EXPECT_FALSE(sender.exporter.Offer("too late"));
    isOver = true;
}

TEST(OtlpCurlClient, ChecksTheCertificateOfTheReceiver) {
    const TlsServer server("127.0.0.1", "20480101000000Z", HttpAnswer("200 OK", "{}"));
    const auto post = [&](const std::string& certificate) {
        const std::unique_ptr<HttpClient> client = MakeCurlClient({server.url, {}, 10000, false, certificate});
        std::string problem;
        EXPECT_TRUE(client->Prepare(problem)) << problem;
        return client->Post("{}");
    };
    EXPECT_EQ(post(server.certificate).status, 200);
    EXPECT_THAT(post("").problem, HasSubstr("certificate"));
}

}  // namespace
}  // namespace OrvaneOtlp
