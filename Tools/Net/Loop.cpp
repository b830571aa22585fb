#include "Net/Loop.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <iterator>

#include "Orvane/MainRunLoop.h"

namespace OrvaneNet {
namespace {

const int g_wakeDescriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);

int MillisecondsUntil(const Deadline& deadline) {
    if (!deadline) return -1;
    const auto left = *deadline - std::chrono::steady_clock::now();
    if (left <= left.zero()) return 0;
    return static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(left).count());
}

}  // namespace

bool RunUntil(const std::function<bool()>& isDone, Deadline deadline) {
    for (;;) {
        gs_OrvaneMainRunLoopRunPending();
        if (isDone()) return true;
        const int wait = MillisecondsUntil(deadline);
        if (wait == 0) return false;
        pollfd watched[] = {{gs_OrvaneMainRunLoopDescriptor(), POLLIN, 0}, {g_wakeDescriptor, POLLIN, 0}};
        poll(watched, std::size(watched), wait);
        uint64_t wakes;
        (void)!read(g_wakeDescriptor, &wakes, sizeof wakes);
    }
}

// A signal handler may do no more than such a call, and must leave errno as the interrupted code has it.
void WakeLoop() {
    const int savedErrno = errno;
    const uint64_t one = 1;
    (void)!write(g_wakeDescriptor, &one, sizeof one);
    errno = savedErrno;
}

}  // namespace OrvaneNet
