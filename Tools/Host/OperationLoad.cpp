#include "OperationLoad.h"

#include <time.h>

#include <atomic>
#include <deque>

#include "Orvane/OperationQueue.h"
#include "Orvane/RunTime.h"

namespace OrvaneHost {
namespace {

constexpr long kWorkNanoseconds = 5000000;

struct Batch {
    explicit Batch(uint64_t count) : left(count), count(count) {}
    std::atomic<uint64_t> left;
    const uint64_t count;
};

uint64_t g_queued = 0;
std::atomic<uint64_t> g_ran{0};
std::atomic<uint64_t> g_repetitions{0};

// Never destroyed: operations may run up to the last moment of the process.
std::deque<Batch>& Batches() {
    static auto* const batches = new std::deque<Batch>;
    return *batches;
}

void Work() {
    const timespec time = {0, kWorkNanoseconds};
    nanosleep(&time, nullptr);
}

void RunOnce(Quern::Operation*, void* data) {
    Batch& batch = *static_cast<Batch*>(data);
    Work();
    ++g_ran;
    if (--batch.left == 0)
        orvane_console_log("orvane-host: all of %llu operations ran", static_cast<unsigned long long>(batch.count));
}

void RunAgain(Quern::Operation*, void*) {
    Work();
    ++g_repetitions;
}

}  // namespace

void QueueOperations(uint64_t count) {
    g_queued += count;
    Batch& batch = Batches().emplace_back(count);
    if (!gs_OrvaneAddOperation(RunAgain, nullptr, true)) orvane_console_log("orvane-host: no queue in this process");
    for (uint64_t i = 0; i < count; ++i)
        gs_OrvaneAddOperation(RunOnce, &batch, false);
}

void TellOperations(const char* occasion) {
    if (g_queued == 0) return;
    orvane_console_log("orvane-host: %s: %llu of %llu operations ran, %llu repetitions", occasion,
                       static_cast<unsigned long long>(g_ran.load()), static_cast<unsigned long long>(g_queued),
                       static_cast<unsigned long long>(g_repetitions.load()));
}

}  // namespace OrvaneHost
