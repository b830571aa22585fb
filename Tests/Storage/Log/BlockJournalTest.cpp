// Kills a writer at every single instruction of a write and of a flush, and looks at what the next process finds.

#include "Storage/Log/BlockJournal.h"

#include <sys/mman.h>
#include <sys/ptrace.h>
#include <zlib.h>

#include "Storage/Log/LogBuffer.h"
#include "Storage/Log/LogRecord.h"
#include "Support/LogRecords.h"
#include "Support/Test.h"

namespace Quern {
namespace {

using namespace OrvaneTest;

constexpr size_t kBlock = 153600;
constexpr size_t kJournal = sizeof(BlockJournalLayout);

// What survives a process: the block's file and the journal's.
struct Survivors {
    Survivors() : block(static_cast<uint8_t*>(Map(kBlock))), journal(static_cast<uint8_t*>(Map(kJournal))) {}
    ~Survivors() {
        munmap(block, kBlock);
        munmap(journal, kJournal);
    }
    static void* Map(size_t size) {
        return mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    }
    uint8_t* block;
    uint8_t* journal;
};

// What a new process reads: the staged record, then the block.
std::string Recover(const Survivors& dead) {
    std::vector<uint8_t> block(dead.block, dead.block + kBlock), memory(dead.journal, dead.journal + kJournal);
    BlockJournal journal(memory.data());
    journal.Reconcile(block.data(), block.size());
    std::string text;
    size_t length;
    if (const uint8_t* staged = journal.Staged(length))
        text = DecodeText(std::string(reinterpret_cast<const char*>(staged), length));
    LogBuffer buffer(block.data(), block.size(), true, TestPublicKeyDigits().c_str());
    return text + DecodeText(Flush(buffer));
}

uint64_t Hash(const uint8_t* bytes, size_t length, uint64_t hash = 1469598103934665603u) {
    for (size_t i = 0; i < length; ++i)
        hash = (hash ^ bytes[i]) * 1099511628211u;
    return hash;
}

// Lets a child write the lines and then do `step`, one instruction at a time. What a new process would find is taken
// whenever the survivors' beginnings have changed. Empty where tracing is not allowed.
std::set<std::string> SingleStep(const Survivors& survivors, const std::vector<std::string>& lines,
                                 const std::function<void(LogBuffer&)>& step) {
    const pid_t child = Fork([&] {
        BlockJournal journal(survivors.journal);
        LogBuffer buffer(survivors.block, kBlock, true, TestPublicKeyDigits().c_str());
        buffer.SetJournal(&journal);
        for (const std::string& line : lines)
            buffer.Write(line.data(), line.size());
        if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) return 2;
        raise(SIGSTOP);
        step(buffer);
        return raise(SIGSTOP);
    });
    std::set<std::string> found;
    int status;
    waitpid(child, &status, 0);
    if (!WIFSTOPPED(status)) return found;
    long instructions = 0;
    uint64_t last = 0;
    while (ptrace(PTRACE_SINGLESTEP, child, nullptr, nullptr) == 0 && waitpid(child, &status, 0) == child &&
           WIFSTOPPED(status) && WSTOPSIG(status) == SIGTRAP) {
        ++instructions;
        const uint64_t now = Hash(survivors.journal, 400, Hash(survivors.block, 400));
        if (now != last) found.insert(Recover(survivors));
        last = now;
    }
    found.insert(Recover(survivors));
    kill(child, SIGKILL);
    Wait(child);
    EXPECT_GT(instructions, 1000);
    return found;
}

TEST(BlockJournal, AKillAtAnyInstructionOfAWriteCostsNoEarlierLine) {
    if (kIsSanitized) GTEST_SKIP() << "the sanitizer's own code would be stepped through";
    // Lengths that leave every tail from 1 to 7 bytes behind the line before.
    unsigned tails = 0;
    for (size_t pad = 0; pad < 12 && (tails & 0xFE) != 0xFE; ++pad) {
        const Survivors survivors;
        const std::string first = std::string("QWERTZUIOPASDFGHJKL").substr(0, pad + 3) + "\n";
        const std::string second = "the second line\n";
        const auto found =
            SingleStep(survivors, {first}, [&](LogBuffer& buffer) { buffer.Write(second.data(), second.size()); });
        if (found.empty()) GTEST_SKIP() << "tracing a child is not allowed here";
        ASSERT_THAT(found, ElementsAre(first, first + second)) << "pad " << pad;
        uint64_t undoId;
        memcpy(&undoId, survivors.journal + 8, 8);
        tails |= 1u << ((undoId & 0xFFFFFFFF) % 8);
    }
    EXPECT_EQ(tails & 0xFE, 0xFE) << "every tail was met";
}

TEST(BlockJournal, AKillAtAnyInstructionOfAFlushLosesAndDoublesNothing) {
    if (kIsSanitized) GTEST_SKIP() << "the sanitizer's own code would be stepped through";
    const Survivors survivors;
    const auto found = SingleStep(survivors, {"one\n", "two\n"}, [](LogBuffer& buffer) {
        Flush(buffer);
        buffer.Write("three\n", 6);
    });
    if (found.empty()) GTEST_SKIP() << "tracing a child is not allowed here";
    EXPECT_THAT(found, ElementsAre("one\ntwo\n", "one\ntwo\nthree\n"));
}

class StagedRecord : public ::testing::Test {
protected:
    StagedRecord() : memory(kJournal), journal(memory.data()) {
        std::vector<uint8_t> block(kBlock);
        LogBuffer buffer(block.data(), block.size(), true, "");
        const std::string line(500, 'x');
        buffer.Write(line.data(), line.size());
        record = Flush(buffer);
        journal.Stage(reinterpret_cast<const uint8_t*>(record.data()), record.size());
    }
    // Whether a process that finds `file` has to append the record, which the dead one meant to begin at `offset`.
    bool Resolve(const std::string& file, size_t offset, const char* name = "Sample_2026010203.xlog") {
        WriteFile(folder + "/Sample_2026010203.xlog", file);
        journal.BeginAppend(name, static_cast<int64_t>(offset));
        return BlockJournal(memory.data()).ResolveStaged(folder);
    }
    std::string File() const { return ReadFile(folder + "/Sample_2026010203.xlog"); }

    const std::string folder = LogFolder("Sample");
    std::vector<uint8_t> memory;
    BlockJournal journal;
    std::string record;
};

TEST_F(StagedRecord, IsAppendedOnceHoweverFarTheDeadProcessCame) {
    EXPECT_TRUE(BlockJournal(memory.data()).ResolveStaged(folder)) << "no append had begun";
    EXPECT_TRUE(Resolve("earlier", 7)) << "nothing of it was written";
    EXPECT_EQ(File(), "earlier");
    for (const size_t written : {size_t{1}, record.size() / 2, record.size() - 1}) {
        EXPECT_TRUE(Resolve("earlier" + record.substr(0, written), 7));
        EXPECT_EQ(File(), "earlier") << "a torn record is cut off";
    }
    EXPECT_TRUE(Resolve("other", 7)) << "the file has been started over";
    EXPECT_TRUE(Resolve("earlier, and then something else", 7));
    EXPECT_EQ(File(), "earlier, and then something else") << "what is not ours is left alone";
    EXPECT_TRUE(Resolve("earlier" + record, 7, "../Sample/Sample_2026010203.xlog")) << "a name is no path";
    EXPECT_FALSE(Resolve("earlier" + record + "later", 7));
    EXPECT_EQ(File(), "earlier" + record + "later");
    EXPECT_FALSE(BlockJournal(memory.data()).ResolveStaged(folder)) << "settled once and for all";
}

TEST_F(StagedRecord, IsNotLookedForInAPipe) {
    const std::string name = "Sample_2026010203.xlog";
    WriteFile(folder + "/" + name, "");
    ASSERT_EQ(unlink((folder + "/" + name).c_str()) + mkfifo((folder + "/" + name).c_str(), 0600), 0);
    journal.BeginAppend(name.c_str(), 0);
    EXPECT_TRUE(BlockJournal(memory.data()).ResolveStaged(folder)) << "and does not wait for a writer";
}

// A machine without power keeps some of the pages that were written, and others as they were before.
TEST(BlockJournal, ALossOfPowerLeavesAWholeRecordOrNone) {
    constexpr size_t kPage = 4096;
    std::vector<uint8_t> memory(kJournal), before;
    BlockJournal journal(memory.data());
    std::vector<uint8_t> record(3 * kPage, 'a');
    record[0] = 9;
    const auto stage = [&](uint8_t content) {
        std::fill(record.begin() + LogRecord::kHeaderLength, record.end(), content);
        LogRecord::StoreU32(record.data() + LogRecord::kLenAt, static_cast<uint32_t>(record.size() - 74));
        journal.Stage(record.data(), record.size());
    };
    stage('b');
    before = memory;
    stage('c');
    int whole = 0;
    for (unsigned kept = 0; kept < 16; ++kept) {
        std::vector<uint8_t> found = before;
        for (size_t page = 0; page < 4; ++page)
            if (kept >> page & 1) std::copy_n(memory.begin() + page * kPage, kPage, found.begin() + page * kPage);
        size_t length;
        const uint8_t* staged = BlockJournal(found.data()).Staged(length);
        if (!staged) continue;
        ++whole;
        EXPECT_EQ(length, record.size());
        EXPECT_EQ(std::count(staged + 73, staged + length, staged[73]), static_cast<long>(length - 73)) << kept;
    }
    EXPECT_EQ(whole, 2) << "the one before, and this one";
}

// An older process came to the same sequence number and length; what the journal has of its tail is no one's now.
TEST(BlockJournal, PutsATailBackForItsOwnWriterAlone) {
    for (const bool isOwn : {true, false}) {
        std::vector<uint8_t> block(kBlock), memory(kJournal);
        BlockJournal journal(memory.data());
        LogBuffer buffer(block.data(), block.size(), true, TestPublicKeyDigits().c_str());
        buffer.SetJournal(&journal);
        std::string line = "a";
        while (LogRecord::LoadU32(block.data() + LogRecord::kLenAt) % 8 == 0)
            buffer.Write((line += "b").data(), line.size());
        const size_t end = buffer.GetData().Length();
        journal.KeepTail(block.data(), block.data() + end - end % 8);  // any bytes will do
        std::fill_n(memory.begin() + 16, 8, '!');
        if (!isOwn) memory[168 + 63] ^= 1;
        const uint8_t last = block[end - 1];
        BlockJournal(memory.data()).Reconcile(block.data(), block.size());
        EXPECT_EQ(block[end - 1], isOwn ? '!' : last);
    }
}

TEST(BlockJournal, DistrustsWhatItFinds) {
    std::vector<uint8_t> memory(kJournal + 1, 0xFF);
    size_t length;
    EXPECT_EQ(BlockJournal(memory.data()).Staged(length), nullptr) << "foreign";
    // Each is a record in all but one thing.
    const auto stages = [&](uint32_t recordLength, uint8_t magic, uint32_t tooMuch, uint32_t wrongBits) {
        uint8_t* const record = memory.data() + 256;
        record[0] = magic;
        LogRecord::StoreU32(record + LogRecord::kLenAt, recordLength - 74 + tooMuch);
        const auto crc = static_cast<uint32_t>(crc32(0, record, std::min(recordLength, 153601u))) ^ wrongBits;
        memcpy(memory.data() + 24, &recordLength, 4);
        memcpy(memory.data() + 28, &crc, 4);
        return BlockJournal(memory.data()).Staged(length) != nullptr;
    };
    EXPECT_TRUE(stages(74, 9, 0, 0));
    EXPECT_TRUE(stages(153600, 6, 0, 0));
    for (const uint32_t hostile : {1u, 73u, 153601u, 0xFFFFFFFFu})
        EXPECT_FALSE(stages(hostile, 9, 0, 0)) << hostile;
    EXPECT_FALSE(stages(1000, 5, 0, 0));
    EXPECT_FALSE(stages(1000, 10, 0, 0));
    EXPECT_FALSE(stages(1000, 9, 1, 0));
    EXPECT_FALSE(stages(1000, 9, 0, 0x80000000));

    std::vector<uint8_t> block(kBlock, 0xFF);
    block[0] = 9;  // and a length that is none
    const std::vector<uint8_t> untouched = block;
    BlockJournal(memory.data()).Reconcile(block.data(), block.size());
    EXPECT_EQ(block, untouched);
}

}  // namespace
}  // namespace Quern
