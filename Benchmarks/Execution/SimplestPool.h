// The simplest thing that runs tasks on threads: one mutex, one condition variable, one deque.
#ifndef ORVANE_BENCHMARKS_EXECUTION_SIMPLEST_POOL_H
#define ORVANE_BENCHMARKS_EXECUTION_SIMPLEST_POOL_H

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace Orvane::Bench {

class SimplestPool {
public:
    explicit SimplestPool(int workers) {
        for (int i = 0; i < workers; ++i)
            _workers.emplace_back([this, i] { Work(i); });
    }
    ~SimplestPool() {
        {
            const std::lock_guard guard(_mutex);
            _stopped = true;
        }
        _wake.notify_all();
        for (std::thread& worker : _workers)
            worker.join();
    }

    void Push(std::function<void(int)> task) {
        {
            const std::lock_guard guard(_mutex);
            _tasks.push_back(std::move(task));
        }
        _wake.notify_one();
    }

private:
    void Work(int number) {
        for (;;) {
            std::function<void(int)> task;
            {
                std::unique_lock lock(_mutex);
                _wake.wait(lock, [this] { return _stopped || !_tasks.empty(); });
                if (_tasks.empty()) return;
                task = std::move(_tasks.front());
                _tasks.pop_front();
            }
            task(number);
        }
    }

    std::mutex _mutex;
    std::condition_variable _wake;
    std::deque<std::function<void(int)>> _tasks;
    bool _stopped = false;
    std::vector<std::thread> _workers;
};

}  // namespace Orvane::Bench

#endif
