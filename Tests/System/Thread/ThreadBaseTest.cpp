#include "System/Thread/ThreadBase.h"

#include "Base/ConsoleSink.h"
#include "Support/Test.h"
#include "System/Thread/ThreadName.h"

namespace Quern {
namespace {

using namespace OrvaneTest;

// What the threads of a test did, in order; outlives them.
class Record {
public:
    void Add(const std::string& what) {
        const std::lock_guard guard(_mutex);
        _entries.push_back(what);
    }
    // A run of passes counts as one entry.
    void AddPass() {
        const std::lock_guard guard(_mutex);
        if (_entries.empty() || _entries.back() != "pass") _entries.push_back("pass");
    }
    std::vector<std::string> Entries() const {
        const std::lock_guard guard(_mutex);
        return _entries;
    }
    bool WaitForLast(const std::string& what) const {
        return WaitFor([&] {
            const std::lock_guard guard(_mutex);
            return !_entries.empty() && _entries.back() == what;
        });
    }

private:
    mutable std::mutex _mutex;
    std::vector<std::string> _entries;
};

class Recorder : public CThreadBase {
public:
    explicit Recorder(Record* record) : _record(record) {}
    ~Recorder() override { _record->Add("deleted"); }

    void OnThreadProc() override {
        _record->AddPass();
        Sleep(2);
    }
    void OnThreadStart() override { _record->Add(std::string("start as ") + get_thread_name()); }
    void OnThreadExit() override {
        if (waitForAtExit) WaitUntilAsleep(waitForAtExit);
        _record->Add("exit");
    }
    void OnThreadPause() override {
        _record->Add("pause");
        if (atPause) (this->*atPause)();
    }
    void OnThreadResume() override { _record->Add("resume"); }

    void Selected() { _record->Add("selector"); }
    void SelectedWith(void* text) {
        _record->Add(static_cast<const char*>(text));
        AddSelector(static_cast<void (CTargetBase::*)()>(&Recorder::Selected));
    }

    void StopItself() { Stop(); }
    void ResumeItself() { Resume(false); }

    pid_t waitForAtExit = 0;
    void (Recorder::*atPause)() = nullptr;

private:
    Record* const _record;
};

class ThreadBaseTest : public testing::Test {
protected:
    // Ends the thread and waits until it has deleted its object and is gone.
    void End() {
        CThreadBase* base = std::exchange(thread, nullptr);
        CThreadBase::Destroy(&base, true);
        EXPECT_EQ(base, nullptr);
        EXPECT_TRUE(record.WaitForLast("deleted"));
        EXPECT_TRUE(WaitUntilGone(id));
    }
    // Waits until the thread has written a line and rests in the wait that follows it.
    void WaitUntilAsleepAfter(const char* line) {
        id = console.WaitForWriter(line);
        ASSERT_TRUE(WaitUntilAsleep(id));
    }
    void Begin() {
        thread->Start();
        ASSERT_TRUE(record.WaitForLast("pass"));
        id = console.WaitForWriter("before Running");
    }
    void PauseAndWait() {
        thread->Pause();
        WaitUntilAsleepAfter("before pause wait");
        EXPECT_EQ(thread->GetThreadState(), CThreadBase::kPaused);
    }

    CapturedConsole console;
    Record record;
    Recorder* thread = new Recorder(&record);
    pid_t id = 0;
};

TEST_F(ThreadBaseTest, WholeLifeWhenStartedAtOnce) {
    Begin();
    EXPECT_EQ(thread->GetThreadState(), CThreadBase::kRunning);
    const std::string object = Format("%p", static_cast<void*>(thread));
    End();
    EXPECT_THAT(record.Entries(), ElementsAre("start as CThreadBase", "resume", "pass", "exit", "deleted"));
    EXPECT_THAT(console.Messages(id), ElementsAre("Thread: CThreadBase: OnThreadProc, " + object,
                                                  "Thread: CThreadBase: OnThreadProc before Running",
                                                  "Thread: CThreadBase: OnThreadProc(" + object + ") final Exit..."));
    EXPECT_THAT(console.Messages(gettid()),
                ElementsAre("Thread: CThreadBase: Start:" + object, "CThreadBase::Resume",
                            "CThreadBase::Destroy begin:" + object, "CThreadBase::Destroy m_bThreadExit:0",
                            "CThreadBase::Destroy end"));
    EXPECT_TRUE(console.Has("Event", "Thread: CThreadBase: OnThreadProc(" + object + ") final Exit..."));
    EXPECT_TRUE(console.Has("Info", "Thread: CThreadBase: OnThreadProc before Running"));
}

TEST_F(ThreadBaseTest, StartWhileItPolls) {
    ASSERT_NE(console.WaitForWriter("m_bThreadRun is false"), 0);
    Begin();
    EXPECT_EQ(console.Count("before start wait"), 0);
    EXPECT_EQ(console.Count("OnThreadProc after start"), 1);
    End();
}

TEST_F(ThreadBaseTest, NothingButStartEndsTheWaitForIt) {
    WaitUntilAsleepAfter("before start wait");
    thread->Stop();
    thread->Pause();
    thread->Resume(true);
    EXPECT_TRUE(console.Has("Error", "Thread is not running.."));
    ASSERT_TRUE(WaitUntilAsleep(id));
    EXPECT_EQ(thread->GetThreadState(), CThreadBase::kStarting);
    EXPECT_EQ(console.Count("OnThreadProc after start"), 0);
    Begin();
    End();
    EXPECT_THAT(record.Entries(), ElementsAre("start as CThreadBase", "resume", "pass", "exit", "deleted"));
}

TEST_F(ThreadBaseTest, PauseAndResumeAreToldOnce) {
    Begin();
    PauseAndWait();
    thread->Resume(true);
    ASSERT_TRUE(record.WaitForLast("pass"));
    EXPECT_THAT(record.Entries(), ElementsAre("start as CThreadBase", "resume", "pass", "pause", "resume", "pass"));
    thread->Resume(false);
    ASSERT_TRUE(WaitFor([&] { return record.Entries().size() == 8; }));
    EXPECT_EQ(record.Entries()[6], "resume") << "a resume without a pause is told as well";
    End();
}

TEST_F(ThreadBaseTest, StopEndsAPauseWithoutResume) {
    Begin();
    PauseAndWait();
    thread->Stop();
    thread->Stop();
    ASSERT_TRUE(WaitUntilGone(id));
    EXPECT_EQ(thread->GetThreadState(), CThreadBase::kExited);
    EXPECT_TRUE(console.Has("Info", "Thread: CThreadBase: OnThreadProc after  pause wait"));
    EXPECT_THAT(record.Entries(), ElementsAre("start as CThreadBase", "resume", "pass", "pause", "exit"));

    CThreadBase* base = thread;
    CThreadBase::Destroy(&base, true);
    EXPECT_EQ(base, nullptr);
    EXPECT_TRUE(console.Has("Info", "CThreadBase::Destroy m_bThreadExit:1"));
    EXPECT_EQ(record.Entries().back(), "deleted") << "an ended thread's object is deleted by the caller";
}

TEST_F(ThreadBaseTest, SelectorsRunAfterTheNextPass) {
    Begin();
    PauseAndWait();
    char first[] = "first";
    char second[] = "second";
    const auto member = static_cast<void (CTargetBase::*)(void*)>(&Recorder::SelectedWith);
    thread->AddSelector(member, first);
    thread->AddSelector(member, second);
    ASSERT_TRUE(WaitUntilAsleep(id));
    EXPECT_EQ(console.Count("runSelectors has selector"), 0);
    thread->Resume(true);
    ASSERT_TRUE(record.WaitForLast("pass"));
    ASSERT_TRUE(WaitFor([&] { return record.Entries().size() == 11; }));
    EXPECT_THAT(record.Entries(), ElementsAre("start as CThreadBase", "resume", "pass", "pause", "resume", "pass",
                                              "first", "second", "selector", "selector", "pass"));
    EXPECT_EQ(console.Count("runSelectors has selector"), 4);
    End();
}

TEST_F(ThreadBaseTest, DestroyWithoutSelfDeleteWaitsAndKeepsTheObject) {
    thread->waitForAtExit = gettid();
    Begin();
    CThreadBase* base = thread;
    CThreadBase::Destroy(&base, false);
    EXPECT_EQ(base, nullptr);
    EXPECT_EQ(record.Entries().back(), "exit");
    ASSERT_TRUE(WaitUntilGone(id));
    EXPECT_EQ(record.Entries().back(), "exit");
    End();
}

TEST_F(ThreadBaseTest, AStopRightBehindTheStartEndsTheThread) {
    thread->Start();
    End();
    EXPECT_THAT(record.Entries(), ElementsAre("exit", "deleted"));
    EXPECT_TRUE(console.Has("Event", "Thread: CThreadBase: OnThreadProc not run while starting.."));
    EXPECT_EQ(console.Count("before start wait"), 0);
}

// Between the thread's look at the flag and its wait, where an event without memory is lost.
TEST_F(ThreadBaseTest, StopAndResumeAreSeenInTheWindowOfAPause) {
    Begin();
    thread->atPause = &Recorder::ResumeItself;
    thread->Pause();
    ASSERT_TRUE(WaitFor([&] { return record.Entries().size() >= 6; }));
    EXPECT_THAT(record.Entries(), ElementsAre("start as CThreadBase", "resume", "pass", "pause", "resume", "pass"));
    thread->atPause = &Recorder::StopItself;
    thread->Pause();
    ASSERT_TRUE(record.WaitForLast("exit"));
    End();
}

// Destroys the thread's object at the moment when the thread says that it ends.
class DestroyingConsole : public ConsoleSink {
public:
    void Write(const char* text, size_t length) override {
        if (std::string_view(text, length).find("final Exit...") != std::string_view::npos)
            CThreadBase::Destroy(&thread, true);
    }
    CThreadBase* thread = nullptr;
};

TEST_F(ThreadBaseTest, DestroyInTheLastMomentOfTheThreadIsSeen) {
    Begin();
    const auto destroying = std::make_shared<DestroyingConsole>();
    destroying->thread = thread;
    ConsoleSink::Use(destroying);
    thread->Stop();
    EXPECT_TRUE(record.WaitForLast("deleted"));
    EXPECT_TRUE(WaitUntilGone(id));
}

TEST_F(ThreadBaseTest, DestroyTakesNull) {
    CThreadBase::Destroy(nullptr, true);
    CThreadBase* none = nullptr;
    CThreadBase::Destroy(&none, false);
    EXPECT_EQ(console.Count("CThreadBase::Destroy begin"), 0);
    EXPECT_EQ(console.Count("CThreadBase::Destroy end"), 2);
    Begin();
    End();
}

}  // namespace
}  // namespace Quern
