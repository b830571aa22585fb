#include "System/Application/MainRunLoop.h"

#include <poll.h>
#include <sys/socket.h>

#include "Support/Test.h"

namespace Quern {
namespace {

using Clock = std::chrono::steady_clock;

class MainRunLoopTest : public testing::Test {
protected:
    // Whether the one descriptor gets ready within so many milliseconds.
    bool IsReady(int milliseconds) {
        pollfd descriptor{loop.Descriptor(), POLLIN, 0};
        return poll(&descriptor, 1, milliseconds) == 1;
    }
    // Does what is due until nothing is.
    void Settle() {
        while (IsReady(0))
            loop.RunPending();
    }
    void OnAnotherThread(const std::function<void()>& what) { std::thread(what).join(); }
    MainRunLoop::Call Add(int number) {
        return [this, number] { calls.push_back(number); };
    }

    MainRunLoop& loop = MainRunLoop::Current();
    std::vector<int> calls;
};

TEST_F(MainRunLoopTest, RunsWhatIsPostedUntilStopped) {
    EXPECT_TRUE(loop.IsMainThread());
    OnAnotherThread([&] {
        EXPECT_FALSE(loop.IsMainThread());
        EXPECT_FALSE(loop.Run());
        loop.RunPending();
        loop.Post(Add(1));
    });
    loop.Post([&] {
        calls.push_back(2);
        loop.Post([&] {
            calls.push_back(4);
            EXPECT_FALSE(loop.Run()) << "not from inside the loop";
            loop.RunPending();
            loop.Stop();
        });
        calls.push_back(3);
    });
    loop.Post(nullptr);
    EXPECT_TRUE(loop.Run());
    EXPECT_THAT(calls, ElementsAre(1, 2, 3, 4));

    OnAnotherThread([&] { loop.Stop(); });
    EXPECT_TRUE(loop.Run()) << "a stop that comes first ends the next run";
}

TEST_F(MainRunLoopTest, KeepsTheOrderOfEachThread) {
    constexpr int kThreads = 4;
    constexpr int kEach = 20000;
    std::vector<int> next(kThreads, 0);
    int disorder = 0;
    int left = kThreads;
    OrvaneTest::Threads threads(kThreads, [&](int thread) {
        for (int i = 0; i < kEach; ++i)
            loop.Post([&, thread, i] { disorder += next[thread]++ != i; });
        loop.PostAndWait([&] {
            if (--left == 0) loop.Stop();
        });
    });
    EXPECT_TRUE(loop.Run());
    threads.Join();
    EXPECT_EQ(disorder, 0);
    EXPECT_THAT(next, Each(kEach));
}

TEST_F(MainRunLoopTest, PostAndWaitRunsAtOnceOnTheMainThread) {
    loop.Post(Add(2));
    loop.PostAndWait(Add(1));
    loop.PostAndWait(nullptr);
    EXPECT_THAT(calls, ElementsAre(1));
    Settle();
    std::thread thread([&] {
        std::thread::id performedOn;
        loop.PostAndWait([&] { performedOn = std::this_thread::get_id(); });
        EXPECT_NE(performedOn, std::this_thread::get_id());
        EXPECT_NE(performedOn, std::thread::id());
        loop.Stop();
    });
    loop.Run();
    thread.join();
    EXPECT_THAT(calls, ElementsAre(1, 2));
}

TEST_F(MainRunLoopTest, TimersFireOnceInTheirOrderAndNeverEarly) {
    const Clock::time_point begin = Clock::now();
    Clock::duration late{};
    loop.StartTimer(150, [&] {
        calls.push_back(3);
        late = Clock::now() - begin;
        loop.StartTimer(0, [&] { loop.Stop(); });
    });
    OnAnotherThread([&] { loop.StartTimer(50, Add(2)); });
    loop.StartTimer(-5, Add(1));
    const MainRunLoop::Id cancelled = loop.StartTimer(20, Add(9));
    MainRunLoop::Id queued = 0;
    OnAnotherThread([&] { queued = loop.StartTimer(20, Add(9)); });
    loop.CancelTimer(cancelled);
    loop.CancelTimer(queued);
    loop.CancelTimer(4711);
    EXPECT_NE(cancelled, queued);
    loop.StartTimer(INT64_MAX, Add(9));
    loop.Run();
    EXPECT_THAT(calls, ElementsAre(1, 2, 3));
    EXPECT_GE(late, std::chrono::milliseconds(150));
}

TEST_F(MainRunLoopTest, WatchesDescriptors) {
    int ends[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    std::vector<int> told;
    MainRunLoop::Id watch = 0;
    OnAnotherThread([&] {
        watch = loop.Watch(ends[0], MainRunLoop::kReadable, [&](int events) {
            told.push_back(events);
            char byte;
            if (read(ends[0], &byte, 1) == 1 && byte == 'b') loop.Unwatch(watch);
        });
    });
    Settle();
    EXPECT_THAT(told, ElementsAre());
    ASSERT_EQ(write(ends[1], "abc", 3), 3);
    Settle();
    EXPECT_THAT(told, ElementsAre(MainRunLoop::kReadable, MainRunLoop::kReadable)) << "asked again until drained";
    EXPECT_FALSE(IsReady(0)) << "what is left behind an ended watch wakes nobody";

    watch = loop.Watch(ends[0], MainRunLoop::kReadable | MainRunLoop::kWritable, [&](int events) {
        told.push_back(events);
        loop.Unwatch(watch);
        loop.Stop();
    });
    loop.Watch(ends[0], MainRunLoop::kReadable, [&](int events) { told.push_back(events); });
    loop.Run();
    close(ends[0]);
    EXPECT_THAT(std::vector<int>(told.begin() + 2, told.end()),
                testing::UnorderedElementsAre(MainRunLoop::kReadable | MainRunLoop::kWritable, MainRunLoop::kFailed))
        << "a second watch of one descriptor is refused";

    told.clear();
    loop.Watch(-1, MainRunLoop::kReadable, [&](int events) { told.push_back(events); });
    loop.Unwatch(loop.Watch(-1, MainRunLoop::kReadable, [&](int) { told.push_back(99); }));
    EXPECT_THAT(told, ElementsAre());
    Settle();
    EXPECT_THAT(told, ElementsAre(MainRunLoop::kFailed));
    close(ends[1]);
}

TEST_F(MainRunLoopTest, OneDescriptorTellsAnEmbeddingHostOfEverything) {
    EXPECT_EQ(loop.Descriptor(), loop.Descriptor());
    Settle();
    EXPECT_FALSE(IsReady(50));

    OnAnotherThread([&] { loop.Post(Add(1)); });
    EXPECT_TRUE(IsReady(5000));
    loop.RunPending();
    EXPECT_THAT(calls, ElementsAre(1));

    const Clock::time_point begin = Clock::now();
    loop.StartTimer(80, Add(2));
    while (calls.size() == 1 && IsReady(5000))
        loop.RunPending();
    EXPECT_THAT(calls, ElementsAre(1, 2));
    EXPECT_GE(Clock::now() - begin, std::chrono::milliseconds(80));
    Settle();
    EXPECT_FALSE(IsReady(50));

    loop.Stop();
    loop.Post(Add(3));
    Settle();
    EXPECT_THAT(calls, ElementsAre(1, 2, 3)) << "a stop is nothing to a host with a loop of its own";
}

}  // namespace
}  // namespace Quern
