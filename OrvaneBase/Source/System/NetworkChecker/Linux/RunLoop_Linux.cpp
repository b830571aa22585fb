#include "System/NetworkChecker/RunLoop.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

namespace Quern {

// On poll and not on libuv, which takes the error state of a socket, the way in which routers' messages arrive, for the
// end of it.
struct RunLoop::Members {
    struct Entry {
        int descriptor;  // -1 for one that only keeps the loop running
        std::shared_ptr<Call> readable;
    };

    int wakeUp = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    Source last = 0;
    std::map<Source, Entry> sources;
    std::mutex mutex;  // guards `posted`; a leaf
    std::vector<Call> posted;
};

std::shared_ptr<RunLoop> RunLoop::Current() {
    thread_local const auto loop = std::make_shared<RunLoop>();
    return loop;
}

RunLoop::RunLoop() : _members(std::make_unique<Members>()) {}

RunLoop::~RunLoop() {
    if (_members->wakeUp >= 0) close(_members->wakeUp);
}

RunLoop::Source RunLoop::AddDescriptor(int descriptor, Call readable) {
    _members->sources[++_members->last] = {descriptor, std::make_shared<Call>(std::move(readable))};
    return _members->last;
}

RunLoop::Source RunLoop::AddPending() {
    _members->sources[++_members->last] = {-1, nullptr};
    return _members->last;
}

void RunLoop::Remove(Source source) {
    _members->sources.erase(source);
}

void RunLoop::Post(Call call) {
    const std::lock_guard guard(_members->mutex);
    _members->posted.push_back(std::move(call));
    eventfd_write(_members->wakeUp, 1);
}

void RunLoop::PerformPosted() {
    std::vector<Call> calls;
    {
        const std::lock_guard guard(_members->mutex);
        calls.swap(_members->posted);
    }
    for (const Call& call : calls)
        call();
}

// False at the deadline.
bool RunLoop::WaitForEvents(Clock::time_point deadline) {
    std::vector<pollfd> descriptors = {{_members->wakeUp, POLLIN, 0}};
    std::vector<Source> sources = {0};
    for (const auto& [source, entry] : _members->sources) {
        if (entry.descriptor < 0) continue;
        descriptors.push_back({entry.descriptor, POLLIN, 0});
        sources.push_back(source);
    }
    // Rounded up, so that the last wait does not turn into a spin.
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    if (left <= 0) return false;
    // Without a descriptor to be woken by, the loop looks for itself.
    const int64_t longest = _members->wakeUp >= 0 ? INT32_MAX : 10;
    if (poll(descriptors.data(), descriptors.size(), static_cast<int>(std::min<int64_t>(left, longest))) <= 0)
        return true;

    uint64_t count;
    if (descriptors[0].revents != 0 && _members->wakeUp >= 0) eventfd_read(_members->wakeUp, &count);
    for (size_t i = 1; i < descriptors.size(); ++i) {
        if (descriptors[i].revents == 0) continue;
        const auto entry = _members->sources.find(sources[i]);
        if (entry == _members->sources.end()) continue;  // an earlier handler removed it
        const std::shared_ptr<Call> readable = entry->second.readable;
        (*readable)();
    }
    return true;
}

void RunLoop::RunUntil(Clock::time_point deadline) {
    do {
        PerformPosted();
    } while (!_members->sources.empty() && WaitForEvents(deadline));
    PerformPosted();
}

}  // namespace Quern
