// Kills a writer at every single instruction of a write and of a flush, and looks at what the next process finds.

#include "Storage/Log/BlockJournal.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "Storage/Log/LogBuffer.h"
#include "Support/RecordDecoder.h"
#include "Support/TestContainer.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define ORVANE_UNDER_SANITIZER 1
#endif

namespace Quern {
namespace {

using OrvaneTest::DecodeText;
using OrvaneTest::TestPublicKeyDigits;

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

std::string FlushText(LogBuffer& buffer) {
    AutoBuffer out;
    buffer.Flush(out);
    return DecodeText(std::string(reinterpret_cast<const char*>(out.Ptr()), out.Length()));
}

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
    return text + FlushText(buffer);
}

// Runs `prepare` and then `step` in a child, one instruction at a time through `step`, and calls `look` whenever the
// survivors' beginning or the words around the block's end have changed. Returns the number of instructions; -1 where
// tracing is not allowed.
long SingleStep(const std::function<void()>& prepare, const std::function<void()>& step,
                const std::function<uint64_t()>& fingerprint, const std::function<void()>& look) {
    const pid_t child = fork();
    if (child == 0) {
        prepare();
        if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(2);
        raise(SIGSTOP);
        step();
        raise(SIGSTOP);
        _exit(0);
    }
    int status;
    waitpid(child, &status, 0);
    if (!WIFSTOPPED(status)) return -1;
    long instructions = 0;
    uint64_t last = fingerprint();
    while (ptrace(PTRACE_SINGLESTEP, child, nullptr, nullptr) == 0 && waitpid(child, &status, 0) == child &&
           WIFSTOPPED(status) && WSTOPSIG(status) == SIGTRAP) {
        ++instructions;
        const uint64_t now = fingerprint();
        if (now == last) continue;
        last = now;
        look();
    }
    look();
    kill(child, SIGKILL);
    waitpid(child, &status, 0);
    return instructions;
}

uint64_t Hash(const uint8_t* bytes, size_t length, uint64_t hash = 1469598103934665603u) {
    for (size_t i = 0; i < length; ++i)
        hash = (hash ^ bytes[i]) * 1099511628211u;
    return hash;
}

TEST(BlockJournal, AKillAtAnyInstructionOfAWriteCostsNoEarlierLine) {
#ifdef ORVANE_UNDER_SANITIZER
    GTEST_SKIP() << "the sanitizer's own code would be stepped through";
#endif
    // Lengths that leave every tail from 1 to 7 bytes behind the line before.
    unsigned tails = 0;
    for (size_t pad = 0; pad < 12 && (tails & 0xFE) != 0xFE; ++pad) {
        Survivors survivors;
        const std::string first = std::string("QWERTZUIOPASDFGHJKL").substr(0, pad + 3) + "\n";
        const std::string second = "the second line\n";
        BlockJournal* journal = nullptr;
        LogBuffer* buffer = nullptr;
        const auto prepare = [&] {
            journal = new BlockJournal(survivors.journal);
            buffer = new LogBuffer(survivors.block, kBlock, true, TestPublicKeyDigits().c_str());
            buffer->SetJournal(journal);
            buffer->Write(first.data(), first.size());
        };
        bool sawFirst = false, sawBoth = false, broken = false;
        const long instructions = SingleStep(
            prepare, [&] { buffer->Write(second.data(), second.size()); },
            [&] { return Hash(survivors.journal, 64, Hash(survivors.block, 400)); },
            [&] {
                const std::string text = Recover(survivors);
                sawFirst |= text == first;
                sawBoth |= text == first + second;
                broken |= text != first && text != first + second;
            });
        if (instructions < 0) GTEST_SKIP() << "tracing a child is not allowed here";
        EXPECT_GT(instructions, 1000);
        EXPECT_TRUE(sawFirst);
        EXPECT_TRUE(sawBoth);
        ASSERT_FALSE(broken) << "pad " << pad;
        uint64_t undoId;
        memcpy(&undoId, survivors.journal + 8, 8);
        tails |= 1u << ((undoId & 0xFFFFFFFF) % 8);
    }
    EXPECT_EQ(tails & 0xFE, 0xFE) << "every tail was met";
}

TEST(BlockJournal, AKillAtAnyInstructionOfAFlushLosesAndDoublesNothing) {
#ifdef ORVANE_UNDER_SANITIZER
    GTEST_SKIP() << "the sanitizer's own code would be stepped through";
#endif
    Survivors survivors;
    BlockJournal* journal = nullptr;
    LogBuffer* buffer = nullptr;
    bool broken = false;
    const long instructions = SingleStep(
        [&] {
            journal = new BlockJournal(survivors.journal);
            buffer = new LogBuffer(survivors.block, kBlock, true, TestPublicKeyDigits().c_str());
            buffer->SetJournal(journal);
            buffer->Write("one\n", 4);
            buffer->Write("two\n", 4);
        },
        [&] {
            AutoBuffer out;
            buffer->Flush(out);
            buffer->Write("three\n", 6);
        },
        [&] { return Hash(survivors.journal, 400, Hash(survivors.block, 200)); },
        [&] {
            const std::string text = Recover(survivors);
            broken |= text != "one\ntwo\n" && text != "one\ntwo\nthree\n";
        });
    if (instructions < 0) GTEST_SKIP() << "tracing a child is not allowed here";
    EXPECT_GT(instructions, 1000);
    EXPECT_FALSE(broken);
    EXPECT_EQ(Recover(survivors), "one\ntwo\nthree\n");
}

class StagedRecord : public ::testing::Test {
protected:
    StagedRecord() : memory(kJournal), journal(memory.data()) {
        std::vector<uint8_t> block(kBlock);
        LogBuffer buffer(block.data(), block.size(), true, "");
        const std::string line(500, 'x');
        buffer.Write(line.data(), line.size());
        AutoBuffer out;
        buffer.Flush(out);
        record.assign(reinterpret_cast<const char*>(out.Ptr()), out.Length());
        journal.Stage(out.Ptr(), out.Length());
    }
    // Whether a process that finds `file` has to append the record, which the dead one meant to begin at `offset`.
    bool Resolve(const std::string& file, size_t offset, const char* name = "Sample_2026010203.xlog") {
        OrvaneTest::WriteFile(folder + "/Sample_2026010203.xlog", file);
        journal.BeginAppend(name, static_cast<int64_t>(offset));
        return BlockJournal(memory.data()).ResolveStaged(folder);
    }
    std::string File() const { return OrvaneTest::ReadFile(folder + "/Sample_2026010203.xlog"); }

    const std::string folder = OrvaneTest::LogFolder("Sample");
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

TEST(BlockJournal, DistrustsWhatItFinds) {
    std::vector<uint8_t> memory(kJournal, 0xFF);
    size_t length;
    EXPECT_EQ(BlockJournal(memory.data()).Staged(length), nullptr) << "foreign";
    const uint32_t hostile[] = {1, 73, 153601, 0xFFFFFFFF};
    for (const uint32_t value : hostile) {
        memcpy(memory.data() + 24, &value, 4);
        EXPECT_EQ(BlockJournal(memory.data()).Staged(length), nullptr) << value;
    }
    std::vector<uint8_t> block(kBlock, 0xFF);
    block[0] = 7;
    const std::vector<uint8_t> untouched = block;
    BlockJournal(memory.data()).Reconcile(block.data(), block.size());
    EXPECT_EQ(block, untouched);
}

}  // namespace
}  // namespace Quern
