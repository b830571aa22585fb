// Several threads that do the same.
#ifndef ORVANE_TESTS_SUPPORT_THREADS_H
#define ORVANE_TESTS_SUPPORT_THREADS_H

#include <functional>
#include <thread>
#include <vector>

namespace OrvaneTest {

// Each is told its number, from 0 on. Joined at the latest where the object ends.
class Threads {
public:
    Threads(int count, const std::function<void(int number)>& work) {
        for (int number = 0; number < count; ++number)
            _threads.emplace_back([work, number] { work(number); });
    }
    void Join() { _threads.clear(); }

private:
    std::vector<std::jthread> _threads;
};

}  // namespace OrvaneTest

#endif
