// How long a sender waits before it tries again. A function of its arguments alone, so that a test sees every case.
#ifndef ORVANE_TOOLS_OTLP_RETRY_DELAY_H
#define ORVANE_TOOLS_OTLP_RETRY_DELAY_H

#include <algorithm>
#include <chrono>

namespace OrvaneOtlp {

// A receiver that comes back is not to be met by all devices at once, so the time between tries doubles, from 1 s to 30
// s at most, and lies anywhere between half of that and one and a half. What the receiver asks for is waited for in
// full, up to an hour. `failures`: so many tries in a row have failed, 1 or more. `random`: from 0 to 1. `retryAfter`:
// seconds, or negative.
inline std::chrono::milliseconds RetryDelay(int failures, double random, long long retryAfter) {
    const double seconds = std::min(30.0, static_cast<double>(1LL << std::min(failures - 1, 10)));
    const std::chrono::milliseconds own(static_cast<long long>(seconds * 1000 * (0.5 + random)));
    const std::chrono::seconds asked(std::min(retryAfter, 3600LL));
    return std::max(own, std::chrono::duration_cast<std::chrono::milliseconds>(asked));
}

}  // namespace OrvaneOtlp

#endif
