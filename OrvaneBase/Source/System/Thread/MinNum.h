// The smaller of two numbers.
#ifndef ORVANE_SYSTEM_THREAD_MIN_NUM_H
#define ORVANE_SYSTEM_THREAD_MIN_NUM_H

namespace Quern {

constexpr int MinNum(int a, int b) {
    return a < b ? a : b;
}

}  // namespace Quern

#endif
