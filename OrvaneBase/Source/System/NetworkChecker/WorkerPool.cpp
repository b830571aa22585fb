#include "System/NetworkChecker/WorkerPool.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "System/Thread/ThreadName.h"

namespace Quern {
namespace {

constexpr std::chrono::seconds kIdleTime{5};

}  // namespace

// What pool and threads share, so that either may go first.
struct WorkerPool::Shared : std::enable_shared_from_this<WorkerPool::Shared> {
    const char* name;
    size_t threadLimit;
    std::mutex mutex;  // guards what follows; a leaf
    std::condition_variable changed;
    std::deque<Job> jobs;
    size_t threads = 0;
    size_t idle = 0;
    bool isClosed = false;

    bool StartThread() {
        try {
            std::thread([shared = shared_from_this()] { shared->Run(); }).detach();
        } catch (const std::system_error&) {
            return false;
        }
        ++threads;
        return true;
    }

    void Run() {
        set_thread_name(name);
        std::unique_lock lock(mutex);
        while (WaitForJob(lock)) {
            Job job = std::move(jobs.front());
            jobs.pop_front();
            lock.unlock();
            job();
            job = nullptr;  // what it holds is released without the lock
            lock.lock();
        }
        --threads;
    }

    // False when the thread is to end.
    bool WaitForJob(std::unique_lock<std::mutex>& lock) {
        ++idle;
        changed.wait_for(lock, kIdleTime, [this] { return isClosed || !jobs.empty(); });
        --idle;
        return !jobs.empty();
    }
};

WorkerPool::WorkerPool(const char* name, size_t threadCount) : _shared(std::make_shared<Shared>()) {
    _shared->name = name;
    _shared->threadLimit = threadCount;
}

WorkerPool::~WorkerPool() {
    std::deque<Job> dropped;
    const std::lock_guard guard(_shared->mutex);
    _shared->isClosed = true;
    dropped.swap(_shared->jobs);
    _shared->changed.notify_all();
}

bool WorkerPool::Push(Job job) {
    const std::lock_guard guard(_shared->mutex);
    const bool isEnough = _shared->idle > _shared->jobs.size() || _shared->threads >= _shared->threadLimit;
    if (!isEnough && !_shared->StartThread() && _shared->threads == 0) return false;
    _shared->jobs.push_back(std::move(job));
    _shared->changed.notify_one();
    return true;
}

}  // namespace Quern
