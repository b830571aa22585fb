#include "System/Operation/Operation.h"

#include "System/Thread/Time.h"

namespace Quern {
namespace {

std::atomic<long long> g_nextId{0};

}  // namespace

Operation::Operation() : _id(g_nextId.fetch_add(1, std::memory_order_relaxed)) {}

Operation::Operation(const Operation& other)
    : _repeat(other.IsRepeating()), _id(other._id), _nextRun(other.GetNextRun()) {}

Operation& Operation::operator=(const Operation& other) {
    SetRepeat(other.IsRepeating());
    _id = other._id;
    _nextRun.store(other.GetNextRun(), std::memory_order_relaxed);
    return *this;
}

// By the wall clock, as the queues look at it: a clock that is set back puts the next run off.
void Operation::Sleep(int milliseconds) {
    _nextRun.store(CTime::GetTimeTick() / 1000 + milliseconds, std::memory_order_relaxed);
}

}  // namespace Quern
