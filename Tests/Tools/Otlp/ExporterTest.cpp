#include "Otlp/Exporter.h"

#include <gmock/gmock.h>

#include "Otlp/Messages.h"
#include "Otlp/RetryDelay.h"
#include "Support/OtlpReceiver.h"
#include "Support/WaitFor.h"
#include "Tools/Otlp/ManualClock.h"

namespace OrvaneOtlp {
namespace {

using namespace OrvaneTest;
using namespace std::chrono_literals;
using testing::AllOf;
using testing::HasSubstr;

// Sends texts as the bodies of log records, on a clock of its own.
struct Sender {
    explicit Sender(const std::string& url, ExporterOptions options = {})
        : exporter(
              EndpointAt(url), [](const auto& items) { return Encode(items); },
              [this](const std::string& line) {
                  const std::lock_guard guard(mutex);
                  said += line + "\n";
              },
              options, clock) {}

    static Endpoint EndpointAt(const std::string& url) {
        Endpoint endpoint;
        endpoint.url = url;
        return endpoint;
    }
    static std::string Encode(const std::vector<std::string>& items) {
        std::vector<LogRecord> records(items.size());
        for (size_t i = 0; i < items.size(); ++i)
            records[i].body = items[i];
        Attributes resource;
        resource.Set("service.name", "test");
        return LogsMessage(resource, records);
    }
    std::string Said() {
        const std::lock_guard guard(mutex);
        return said;
    }
    // Lets time go on until what was taken is done with.
    bool FlushInTime(std::chrono::milliseconds step = 100ms) {
        return WaitFor([&] {
            clock->Advance(step);
            return exporter.Flush(0ms);
        });
    }

    std::mutex mutex;
    std::string said;
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    Exporter exporter;
};

TEST(RetryDelay, DoublesUpToABoundAndLiesAroundIt) {
    const struct {
        int failures;
        double random;
        long long retryAfter;
        long long wanted;  // in milliseconds
    } cases[] = {{1, 0, -1, 500},     {1, 1, -1, 1500},      {2, 0.5, -1, 2000},        {5, 0.5, -1, 16000},
                 {6, 0.5, -1, 30000}, {5000, 1, -1, 45000},  {3, 0.5, 3, 4000},         {3, 0.5, 7, 7000},
                 {1, 0.5, 0, 1000},   {1, 0, 3600, 3600000}, {1, 0, 1LL << 62, 3600000}};
    for (const auto& one : cases)
        EXPECT_EQ(RetryDelay(one.failures, one.random, one.retryAfter).count(), one.wanted) << one.failures;
}

TEST(Exporter, TriesAgainUntilTheReceiverIsBack) {
    std::atomic<int> number{0};
    OtlpReceiver receiver([&](const HttpRequest&) -> std::string {
        switch (++number) {
            case 1:
                return "";  // closes
            case 2:
                return HttpAnswer("503 Later", "");
            case 3:
                return HttpAnswer("429 Too Many", "", "Retry-After: 70\r\n");
            case 4:
                return HttpAnswer("502 Bad", "");
            case 5:
                return HttpAnswer("504 Slow", "");
            default:
                return "200";
        }
    });
    Sender sender(receiver.Url("/v1/logs"));
    for (const char* text : {"one", "two", "three"})
        EXPECT_TRUE(sender.exporter.Offer(text));
    // Not before the batch is due, nor before the time that the receiver asked for.
    EXPECT_FALSE(WaitFor([&] { return number > 0; }, 30ms));
    sender.clock->Advance(1000ms);
    ASSERT_TRUE(WaitFor([&] { return number == 1; }));
    ASSERT_TRUE(WaitFor([&] {
        if (number < 3) sender.clock->Advance(1500ms);
        return number == 3;
    }));
    WaitFor([&] { return number > 3; }, 30ms);  // the answer is on its way
    sender.clock->Advance(60s);
    EXPECT_FALSE(WaitFor([&] { return number > 3; }, 50ms));
    ASSERT_TRUE(sender.FlushInTime());
    EXPECT_EQ(number, 6);
    ASSERT_EQ(receiver.Logs().size(), 3u) << "once each";
    EXPECT_EQ(receiver.Logs()[2].json["body"]["stringValue"].asString(), "three");
    EXPECT_EQ(receiver.Problems(), "");
    EXPECT_EQ(sender.exporter.Counts().sent, 3u);
    EXPECT_THAT(sender.Said(), AllOf(HasSubstr("it is tried again"), HasSubstr("takes records again")));
    EXPECT_EQ(std::count(sender.said.begin(), sender.said.end(), '\n'), 2) << sender.said;
}

TEST(Exporter, SaysWhatTheReceiverWillNotHave) {
    const std::string deep(5000, '[');
    const struct {
        std::string answer, said;
        uint64_t sent, rejected, refused;  // of two
    } cases[] = {
        {HttpAnswer("400 Bad", R"({"code":3,"message":"no such tenant"})"), "400, no such tenant", 0, 0, 2},
        {HttpAnswer("401 No", "go away\nnow"), "401, go away\n", 0, 0, 2},
        {HttpAnswer("307 There", "", "Location: http://127.0.0.1:1/\r\n"), "2 records dropped: the answer 307", 0, 0,
         2},
        {HttpAnswer("200 OK", R"({"partialSuccess":{"rejectedLogRecords":"1","errorMessage":"too old"}})"),
         "takes 2 records, but not 1 of them: too old", 1, 1, 0},
        {HttpAnswer("200 OK", R"({"partialSuccess":{"rejectedSpans":7}})"), "but not 2 of them", 0, 2, 0},
        {HttpAnswer("202 OK", R"({"partialSuccess":{"errorMessage":"use v2"}})"), "warns: use v2", 2, 0, 0},
        {HttpAnswer("200 OK", R"({"partialSuccess":{"rejectedLogRecords":"-1","errorMessage":7}})"), "", 2, 0, 0},
        {HttpAnswer("200 OK", R"({"partialSuccess":[]})"), "", 2, 0, 0},
        {HttpAnswer("200 OK", deep), "", 2, 0, 0},
        {HttpAnswer("403 No", std::string(200000, 'x')), "403, " + std::string(200, 'x') + "\n", 0, 0, 2},
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
        EXPECT_EQ(counts.refused - before.refused, one.refused) << one.said;
        const std::string said = sender.Said().substr(saidBefore);
        EXPECT_THAT(said, HasSubstr(one.said));
        EXPECT_EQ(said.empty(), one.said.empty()) << said;
    }
    EXPECT_EQ(sender.Said().find("secret"), std::string::npos);
}

// The receiver holds the first request, then is gone for a minute, while a game goes on to trace.
TEST(Exporter, StaysBoundedAndNeverWaitsWhileTheReceiverIsDead) {
    constexpr int kSpans = 100000;
    std::atomic<bool> isHeld{false}, isReleased{false}, isBack{false};
    OtlpReceiver receiver([&](const HttpRequest&) -> std::string {
        isHeld = true;
        WaitFor([&] { return isReleased.load(); });
        return isBack ? "200" : "";
    });
    ExporterOptions options;
    Sender sender(receiver.Url("/v1/logs"), options);
    const std::string item(600, 'x');
    size_t most = 0;
    for (int i = 0; i < kSpans; ++i) {
        // A held request holds no one: the first tenth goes by before the receiver lets it go.
        if (i == 600) {
            ASSERT_TRUE(WaitFor([&] { return isHeld.load(); }));
        }
        if (i == kSpans / 10) isReleased = true;
        if (i % 1000 == 0) sender.clock->Advance(60000ms / (kSpans / 1000));
        sender.exporter.Offer(item);
        if (i % 100 == 0) most = std::max(most, sender.exporter.HeldBytes());
    }
    const ExporterCounts dead = sender.exporter.Counts();
    EXPECT_EQ(dead.accepted + dead.overflow, static_cast<uint64_t>(kSpans));
    EXPECT_EQ(dead.sent + dead.refused, 0u) << "a minute is borne";
    EXPECT_LE(most, options.maxBytes);
    EXPECT_GT(dead.accepted, options.maxBytes / 700) << "the room is used";
    isBack = true;
    ASSERT_TRUE(sender.FlushInTime(1000ms));
    EXPECT_EQ(sender.exporter.Counts().sent, dead.accepted);
    EXPECT_EQ(receiver.Logs().size(), dead.accepted);
    EXPECT_EQ(sender.exporter.HeldBytes(), 0u);
    sender.exporter.Stop(0ms);
    EXPECT_THAT(sender.Said(), HasSubstr(" " + std::to_string(dead.overflow) + " in all: there was no room for them"));
}

TEST(Exporter, GivesABatchUpAndEndsWithinItsDeadline) {
    std::atomic<bool> isOver{false};
    std::atomic<int> number{0};
    OtlpReceiver receiver([&](const HttpRequest&) -> std::string {
        if (++number == 1) return HttpAnswer("429 No", "", "Retry-After: 4000\r\n");
        WaitFor([&] { return isOver.load(); });
        return "";
    });
    Sender sender(receiver.Url());
    sender.exporter.Offer("asked to wait for more than it may take");
    ASSERT_TRUE(sender.FlushInTime());
    EXPECT_EQ(sender.exporter.Counts().refused, 1u);
    EXPECT_THAT(sender.Said(), HasSubstr("not taken in 300 s"));

    sender.exporter.Offer("held");
    sender.exporter.Flush(0ms);
    sender.clock->Advance(3500s);
    EXPECT_FALSE(WaitFor([&] { return number == 2; }, 30ms)) << "the wait holds for the next batch too";
    sender.clock->Advance(100s);
    ASSERT_TRUE(WaitFor([&] { return number == 2; }));
    sender.exporter.Offer("behind it");
    std::atomic<bool> hasEnded{false};
    std::thread ending([&] {
        sender.exporter.Stop(2000ms);
        hasEnded = true;
    });
    EXPECT_FALSE(WaitFor([&] { return hasEnded.load(); }, 50ms)) << "the deadline is for the receiver";
    EXPECT_TRUE(WaitFor([&] {
        sender.clock->Advance(500ms);
        return hasEnded.load();
    }));
    ending.join();
    EXPECT_EQ(sender.exporter.Counts().refused, 3u);
    EXPECT_FALSE(sender.exporter.Offer("too late"));
    isOver = true;
}

}  // namespace
}  // namespace OrvaneOtlp
