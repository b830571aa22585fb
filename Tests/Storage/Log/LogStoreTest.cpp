// Where a logger's lines go: the block, the thread that drains it, what a dead process left.

#include "Storage/Log/LogStore.h"

#include <sys/ioctl.h>
#include <sys/resource.h>

#include "Storage/File/PathSource.h"
#include "Storage/Log/LoggerFixture.h"
#include "Support/Test.h"

namespace Quern {
namespace {

using namespace OrvaneTest;

using LogStoreTest = LoggerTest;

// A text of that length that deflate can do little with.
std::string Noise(size_t length) {
    static unsigned state = 1;
    std::string text;
    while (text.size() < length)
        text += static_cast<char>('!' + (state = state * 1664525 + 1013904223) / 65536 % 90);
    return text;
}

// The log file of this hour and of the next, as a pipe: whoever appends to it waits until the test drains it.
class StuckFile {
public:
    explicit StuckFile(const std::string& module) : _folder(LogFolder(module)) {
        std::filesystem::create_directories(_folder);
        const std::string pipe = CacheFolder() + "/pipe of " + module;
        EXPECT_EQ(mkfifo(pipe.c_str(), 0600), 0);
        _pipe = open(pipe.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
        EXPECT_GT(fcntl(_pipe, F_SETPIPE_SZ, 4096), 0);
        for (const time_t hour : {time(nullptr), time(nullptr) + 3600}) {
            char name[16];
            tm local;
            strftime(name, sizeof name, "%Y%m%d%H", localtime_r(&hour, &local));
            std::filesystem::create_symlink(pipe, _folder + "/" + module + "_" + name + ".xlog");
        }
    }
    ~StuckFile() {
        close(_pipe);
        std::filesystem::remove_all(_folder);
    }
    // From now on not even a byte goes in.
    void Fill() {
        while (write(_pipe, "", 1) == 1)
            ++_filled;
    }
    bool HasData() const {
        int count = 0;
        return ioctl(_pipe, FIONREAD, &count) == 0 && count > 0;
    }
    // Whether what Drain gave until now is whole records, of more than `size` bytes.
    bool HasRecords(size_t size) {
        const std::string& bytes = Drain();
        size_t at = 0;
        while (at + 74 <= bytes.size())
            at += 74 + LogRecord::LoadU32(reinterpret_cast<const uint8_t*>(&bytes[at + LogRecord::kLenAt]));
        return bytes.size() > size && at == bytes.size();
    }
    // What was appended until now, without that which Fill put in.
    const std::string& Drain() {
        char piece[4096];
        for (ssize_t count; (count = read(_pipe, piece, sizeof piece)) > 0;)
            _text.append(piece, static_cast<size_t>(count));
        _text.erase(0, std::exchange(_filled, 0));
        return _text;
    }

private:
    const std::string _folder;
    int _pipe = -1;
    size_t _filled = 0;
    std::string _text;
};

TEST_F(LogStoreTest, ModesOneAndTwoBringTheBlockBackBetweenTheTips) {
    for (const int mode : {1, 2}) {
        const std::string module = "Mode" + std::to_string(mode);
        Logger* logger = Make(module, mode);
        EXPECT_FALSE(std::filesystem::exists(LogFolder(module))) << "nothing to write, no folder";
        Say(logger, "first");
        Say(logger, "second", kLogError);
        EXPECT_EQ(ReadLogFiles(module), "") << "what is in the block is not in a file";
        EXPECT_EQ(std::filesystem::file_size(CacheFolder() + "/" + module + ".mmap3"), 153600u);
        EXPECT_THAT(Texts(Reopen(module, mode)), ElementsAre(kBegin, "Info first", "Error second", kEnd));

        const auto records = DecodeRecords(ReadLogFiles(module), DevelopmentKey());
        ASSERT_EQ(records.size(), 3u);
        EXPECT_EQ(records[0].magic, mode == 2 ? 6 : 8);
        EXPECT_EQ(records[1].magic, mode == 2 ? 7 : 9);
        EXPECT_THAT(FilesIn(LogFolder(module)), ElementsAre(MatchesRegex(module + "_[0-9]{10}\\.xlog")));
    }
}

// A process was killed within the tip that ends its restoring. What it wrote of it would swallow the next block's
// header.
TEST_F(LogStoreTest, ATornEndOfARestoringIsCutOffAndWrittenWhole) {
    const std::string tip = std::string(kEnd + 2) + "\n";
    LogBuffer plain(nullptr, 0, true, "");
    AutoBuffer record;
    ASSERT_TRUE(plain.Write(tip.data(), tip.size(), record));
    const std::string whole = TextOf(record);
    const std::string file = "Torn_2026010203.xlog";
    WriteFile(LogFolder("Torn") + "/" + file, whole + whole.substr(0, 60));
    std::vector<uint8_t> memory(sizeof(BlockJournalLayout));
    BlockJournal journal(memory.data());
    journal.Stage(record.Ptr(), record.Length());
    journal.BeginAppend(file.c_str(), static_cast<int64_t>(whole.size()));
    WriteFile(CacheFolder() + "/Torn.journal3", std::string(memory.begin(), memory.end()));

    Logger* logger = Make("Torn", 1);
    Say(logger, "next");
    EXPECT_EQ(ReadFile(LogFolder("Torn") + "/" + file), whole);
    EXPECT_THAT(Texts(Reopen("Torn", 1)), ElementsAre(kEnd, kEnd, kBegin, "Info next", kEnd));
}

TEST_F(LogStoreTest, HoldsAThousandLinesInTheBackground) {
    Logger* logger = Make("Held", 1);
    Background();
    for (int i = 0; i < 1001; ++i)
        Say(logger, "held " + std::to_string(i));
    Foreground();
    Say(logger, "found them");
    const std::vector<std::string> texts = Texts(Reopen("Held", 1));
    ASSERT_EQ(texts.size(), 1003u);
    for (size_t i = 0; i < 1000; ++i)
        ASSERT_EQ(texts[i + 1], "Info held " + std::to_string(i));
    EXPECT_EQ(texts[1001], "Info found them") << "the line after the thousandth is lost";
}

TEST_F(LogStoreTest, AThirdOfTheBlockWakesTheFlushThread) {
    Logger* logger = Make("Flushed", 2);
    for (int i = 0; i < 20000 && FilesIn(LogFolder("Flushed")).empty(); ++i) {
        Say(logger, "line number " + std::to_string(i));
        // Slow enough for the thread to come to its turn on a busy machine before the block is half full.
        if (i % 5 == 0) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    ASSERT_TRUE(WaitFor([] { return !ReadLogFiles("Flushed").empty(); }));
    AwaitFlushThreads();  // the append is not one step
    const auto record = DecodeRecords(ReadLogFiles("Flushed"), DevelopmentKey()).at(0);
    EXPECT_GE(record.payload.size() + 73, 51200u);
    EXPECT_LT(record.payload.size(), 76800u);

    size_t next = 0;
    for (const std::string& text : Texts(Reopen("Flushed", 2)))
        if (text[0] != '?') {
            EXPECT_EQ(text, "Info line number " + std::to_string(next++));
        }
    EXPECT_GT(next, 500u);
}

// A wake that falls into the append finds nobody waiting. And nobody waits for the thread that appends.
TEST_F(LogStoreTest, WhatComesWhileTheFileTakesItsTimeIsFlushedBehindIt) {
    Logger* logger = Make("Stuck", 1);
    StuckFile file("Stuck");
    std::vector<std::string> expected;
    const auto say = [&](int lines) {
        while (lines-- > 0) {
            const std::string text = Noise(600);
            expected.push_back("Info " + text);
            Say(logger, text);
        }
    };
    say(110);
    ASSERT_TRUE(WaitFor([&] { return file.HasData(); }));
    rusage before, after;
    getrusage(RUSAGE_THREAD, &before);
    say(180);
    getrusage(RUSAGE_THREAD, &after);
    EXPECT_LT(after.ru_nvcsw - before.ru_nvcsw, 90) << "times that the caller has gone to sleep";
    EXPECT_TRUE(WaitFor([&] { return file.HasRecords(130000); })) << "nobody wakes the flush thread again";
    EXPECT_EQ(Texts(DecodeText(file.Drain())), expected);
}

// Other threads' lines come at any moment of Init. Where the dead process had a record on its way as well, they wait
// until that is in the file.
TEST_F(LogStoreTest, LinesThatComeWhileTheBlockIsBroughtBackGoBehindIt) {
    for (const bool isStaged : {false, true}) {
        SCOPED_TRACE(isStaged);
        const std::string module = isStaged ? "Staged" : "Open";
        std::vector<std::string> expected = {kBegin, "Info before", kEnd, "Info meanwhile"};
        Say(Make(module, 1), "before");
        AwaitFlushThreads();
        loggers.clear();
        if (isStaged) {
            std::vector<uint8_t> block(BUFFER_BLOCK_LENTH), memory(sizeof(BlockJournalLayout));
            BlockJournal journal(memory.data());
            LogBuffer buffer(block.data(), block.size(), true, "");
            buffer.SetJournal(&journal);
            buffer.Write("older\n", 6);
            Flush(buffer);
            WriteFile(CacheFolder() + "/" + module + ".journal3", std::string(memory.begin(), memory.end()));
            expected.insert(expected.begin() + 1, "? older");
        }
        StuckFile file(module);
        file.Fill();
        auto* logger = new Logger(module.c_str());
        loggers.emplace_back(logger);
        logger->SetOption("LogMode", 1);
        logger->SetOption("LogConsoleOutput", 0);
        std::atomic<int> ended{0};
        const auto run = [&](const std::function<void()>& work) {
            std::atomic<pid_t> thread{0};
            std::thread started([&, work] {
                thread = gettid();
                work();
                ++ended;
            });
            EXPECT_TRUE(WaitFor([&] { return ended == 2 || (thread != 0 && ThreadState(thread) == 'S'); }));
            EXPECT_TRUE(ThreadState(thread) == 0 || WaitUntilAsleep(thread));
            return started;
        };
        std::thread init = run([&] { logger->Init(); });
        std::thread other = isStaged ? run([&] { Say(logger, "meanwhile"); }) : std::thread();
        if (!isStaged) Say(logger, "meanwhile");
        EXPECT_TRUE(WaitFor([&] { return file.Drain().size() > 0 && ended == (isStaged ? 2 : 1); }));
        init.join();
        if (isStaged) other.join();
        // The line is in the block by now, and in the file as soon as that is flushed.
        ASSERT_TRUE(WaitFor([&] {
            Say(logger, Noise(600));
            return file.HasRecords(51200);
        }));
        std::vector<std::string> texts = Texts(DecodeText(file.Drain()));
        texts.resize(std::min(texts.size(), expected.size()));
        EXPECT_EQ(texts, expected);
    }
}

// Keeps the block in memory, where lines die with the process: not without a word.
TEST_F(LogStoreTest, SaysWhyABlockHasNoFile) {
    Make(std::string(500, 'm'), 1);
    EXPECT_EQ(console.Count(".mmap3 fail: its path has "), 1);
    EXPECT_EQ(console.Count("logMode 1, sync:0, use mmap:0"), 1);
}

TEST(LogStore, SaysThatThereIsNoCachePath) {
    class Nowhere final : public PathSource {
        std::string Home() override { return ""; }
        std::string Documents() override { return ""; }
        std::string Caches() override { return ""; }
    };
    PathSource::Use(std::make_shared<Nowhere>());
    const FakeConfigure settings;  // the client of the configuration server ends the process
    const CapturedConsole console;
    Logger logger("Homeless");
    logger.SetOption("LogMode", 2);
    logger.Init();
    EXPECT_EQ(console.Count("map Homeless.mmap3 fail: there is no cache path"), 1);
    WaitUntilAllAsleep("XLogThread", 1);
}

Logger* g_fullLogger;

// A callback runs under the log mutex, which keeps the flush thread out: what it logs fills the block.
void FillTheBlock(ALogPriority, const char*) {
    static bool isFilling = false;
    if (isFilling) return;
    isFilling = true;
    for (int i = 0; i < 320; ++i)
        g_fullLogger->Log(kLogInfo, "File.cpp", 12, "Function", nullptr, Noise(600).c_str());
    g_fullLogger->SetCallback(nullptr);
    isFilling = false;
}

TEST_F(LogStoreTest, MarkersTakeThePlaceOfLinesInAFullBlock) {
    Logger* logger = Make("Full", 1);
    g_fullLogger = logger;
    logger->SetCallback(FillTheBlock);
    Say(logger, "begin");
    ASSERT_TRUE(WaitFor([] { return !ReadLogFiles("Full").empty(); }));
    AwaitFlushThreads();  // the append is not one step
    const std::string text = DecodeText(ReadLogFiles("Full"));
    const size_t marker = text.find("[F][ sg_buffer_async.Length() >= BUFFER_BLOCK_LENTH*4/5, len: ");
    ASSERT_NE(marker, std::string::npos);
    int markers = 0, previous = 122879;
    for (const std::string& line : SplitLines(text.substr(marker))) {
        int length = 0;
        ASSERT_EQ(sscanf(line.c_str(), "[F][ sg_buffer_async.Length() >= BUFFER_BLOCK_LENTH*4/5, len: %d", &length), 1);
        EXPECT_GT(length, previous) << "each marker is written";
        previous = length;
        ++markers;
    }
    EXPECT_GT(markers, 10);
    EXPECT_LT(previous, 153600);
    EXPECT_GT(std::count(text.begin(), text.begin() + static_cast<ptrdiff_t>(marker), '\n'), 100);
}

// The crash test does the same with the other modes.
TEST_F(LogStoreTest, FourThreadsKeepTheirOrderInModeZero) {
    Logger* logger = Make("Threads", 0);
    constexpr int kLines = 3000;
    Threads(4, [=](int thread) {
        for (int i = 0; i < kLines; ++i)
            Say(logger, std::to_string(thread) + " " + std::to_string(i));
    }).Join();
    loggers.clear();
    std::map<int, int> next;
    for (const std::string& line : Texts(ReadLogFiles("Threads"))) {
        int thread, number;
        ASSERT_EQ(sscanf(line.c_str(), "Info %d %d", &thread, &number), 2) << line;
        ASSERT_EQ(number, next[thread]++);
    }
    EXPECT_EQ(next, (std::map<int, int>{{0, kLines}, {1, kLines}, {2, kLines}, {3, kLines}}));
}

TEST_F(LogStoreTest, WhatCannotBeMappedIsKeptInMemory) {
    std::filesystem::create_directories(CacheFolder() + "/Unmapped.mmap3");
    Logger* logger = Make("Unmapped", 2);
    EXPECT_EQ(console.Count("/Unmapped.mmap3) fail: Is a directory"), 1);
    EXPECT_EQ(console.Count("log init module Unmapped, logMode 2, sync:0, use mmap:0"), 1);
    for (int i = 0; i < 20000 && FilesIn(LogFolder("Unmapped")).empty(); ++i)
        Say(logger, "line " + std::to_string(i));
    ASSERT_TRUE(WaitFor([] { return !ReadLogFiles("Unmapped").empty(); }));
    AwaitFlushThreads();  // the append is not one step
    EXPECT_EQ(Texts(DecodeText(ReadLogFiles("Unmapped"), DevelopmentKey())).at(0), "Info line 0");
}

// Whatever stands in the mapped file at start, what is logged then is whole.
TEST_F(LogStoreTest, TakesForeignMappedFilesAsTheyAre) {
    const auto leftOver = [](char magic, uint32_t length) {
        std::string header(LogRecord::kHeaderLength, '\0');
        header[0] = magic;
        header[1] = 1;
        LogRecord::StoreU32(reinterpret_cast<uint8_t*>(header.data()) + LogRecord::kLenAt, length);
        return header;
    };
    const std::string noise = Noise(BUFFER_BLOCK_LENTH), zeros(BUFFER_BLOCK_LENTH - 73, '\0');
    const std::string contents[] = {
        "",
        noise,
        leftOver(9, 4) + std::string(100, 'x'),  // shorter than a block
        leftOver(9, 5000) + noise.substr(73),
        leftOver(7, 5003) + noise.substr(73),
        leftOver(7, 0) + zeros,
        leftOver(9, BUFFER_BLOCK_LENTH - 74) + zeros,  // the longest payload that leaves room for its end
        leftOver(9, 100) + noise + noise,              // longer than a block
    };
    for (size_t i = 0; i < std::size(contents); ++i) {
        SCOPED_TRACE(i);
        const std::string module = "Foreign" + std::to_string(i);
        WriteFile(CacheFolder() + "/" + module + ".mmap3", contents[i]);
        WriteFile(CacheFolder() + "/" + module + ".journal3", noise + noise);
        Make(module, 1);
        EXPECT_EQ(console.Count("copy data 2 mmap file success"), i < 2 ? 1 : 2) << "what is shorter is wiped";
        if (i < 3) {
            EXPECT_EQ(ReadLogFiles(module), "") << "nothing is brought back";
        }
        std::filesystem::remove_all(LogFolder(module));
        Say(loggers.back().get(), "new");
        EXPECT_THAT(Texts(Reopen(module, 1)), ElementsAre(kBegin, "Info new", kEnd));
    }
}

}  // namespace
}  // namespace Quern
