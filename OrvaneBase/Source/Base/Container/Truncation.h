// Real numbers cut to integers, with an answer for every input.
#ifndef ORVANE_BASE_CONTAINER_TRUNCATION_H
#define ORVANE_BASE_CONTAINER_TRUNCATION_H

namespace Quern {

// Cuts off the fraction. Out of range gives the nearest end; what is no number gives 0.
long long TruncateToInt64(double value);
// The same; a negative number wraps, as its 64-bit integer would.
unsigned long long TruncateToUInt64(double value);

}  // namespace Quern

#endif
