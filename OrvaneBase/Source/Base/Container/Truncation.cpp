#include "Base/Container/Truncation.h"

#include <climits>
#include <cmath>

namespace Quern {
namespace {

// Compared with these and not with LLONG_MAX or ULLONG_MAX, which no double holds: they would be rounded up to these.
constexpr double kTwoTo63 = 9223372036854775808.0;
constexpr double kTwoTo64 = 18446744073709551616.0;

}  // namespace

long long TruncateToInt64(double value) {
    if (std::isnan(value)) return 0;
    if (value >= kTwoTo63) return LLONG_MAX;
    if (value < -kTwoTo63) return LLONG_MIN;
    return static_cast<long long>(value);
}

unsigned long long TruncateToUInt64(double value) {
    if (value >= kTwoTo64) return ULLONG_MAX;
    if (value >= kTwoTo63) return static_cast<unsigned long long>(value);
    return static_cast<unsigned long long>(TruncateToInt64(value));
}

}  // namespace Quern
