// A bounded set of threads that performs jobs in the order of their arrival.
#ifndef ORVANE_SYSTEM_NETWORK_CHECKER_WORKER_POOL_H
#define ORVANE_SYSTEM_NETWORK_CHECKER_WORKER_POOL_H

#include <cstddef>
#include <functional>
#include <memory>

namespace Quern {

// For jobs that may block for minutes and cannot be interrupted: nobody ever waits for a thread of the pool, neither
// its destructor nor the end of the process. Threads are made when they are needed and end when they have been idle for
// some seconds. Any thread.
class WorkerPool {
public:
    using Job = std::function<void()>;

    // `name` is that of the threads, 15 bytes at most, and stays the caller's (a literal).
    WorkerPool(const char* name, size_t threadCount);
    // Drops the jobs that wait; those under way go on, on threads that outlive the pool.
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    // False, and the job is dropped, if there is no thread and none can be made.
    bool Push(Job job);

private:
    struct Shared;

    const std::shared_ptr<Shared> _shared;
};

}  // namespace Quern

#endif
