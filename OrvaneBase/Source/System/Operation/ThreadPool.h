// A pool of worker threads that grows and shrinks at the moment when work is pushed: it has no manager.
//
// Each possible worker has a slot with flags of its own. A push starts workers in free slots when nobody is idle, and
// lets idle workers go when more than the minimum are idle and the last shrinking is long enough ago; it waits for
// those to end, so it can block. A pool that gets no work never shrinks.
//
// Thread rule: any thread may push, query and stop tasks. The decisions to grow and to shrink are taken on a snapshot
// and without a lock, so that two pushes at once may start or send away more workers than one would, though never
// below the minimum; a lock makes each change of the slots whole and is not held while a worker is waited for. stop,
// joinThread and the setters belong to the owner, and nobody but a task pushes during stop.
#ifndef ORVANE_SYSTEM_OPERATION_THREAD_POOL_H
#define ORVANE_SYSTEM_OPERATION_THREAD_POOL_H

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace Quern {

class ThreadPool {
public:
    // A kind of task, for stopTasksByType. The library itself pushes only 0.
    using TaskType = int;

    struct Task {
        Task() = default;
        Task(TaskType kind, std::function<void(int)> call) : type(kind), function(std::move(call)) {}
        TaskType type = 0;
        std::function<void(int)> function;  // told the slot of the worker that runs it
    };

    // First in, first out, with a lock of its own.
    template <typename T>
    class ThreadSafeQueue {
    public:
        // An item, or the parts to make it of in place.
        template <typename... Parts>
        void push(Parts&&... parts) {
            const std::lock_guard<std::mutex> guard(_mutex);
            _items.emplace_back(std::forward<Parts>(parts)...);
        }
        // False, and `item` untouched, if empty.
        bool pop(T& item) {
            const std::lock_guard<std::mutex> guard(_mutex);
            if (_items.empty()) return false;
            item = std::move(_items.front());
            _items.pop_front();
            return true;
        }
        bool empty() const {
            const std::lock_guard<std::mutex> guard(_mutex);
            return _items.empty();
        }
        size_t size() const {
            const std::lock_guard<std::mutex> guard(_mutex);
            return _items.size();
        }

    private:
        mutable std::mutex _mutex;
        std::deque<T> _items;
    };

    // Starts `min` workers; a maximum below the minimum is raised to it.
    ThreadPool(int min, int max);
    ~ThreadPool();
    ThreadPool(const ThreadPool&) = delete;
    ThreadPool& operator=(const ThreadPool&) = delete;

    // The caller's; null if there is no memory. The interval is in seconds.
    static ThreadPool* newCachedThreadPool(int min, int max, int shrinkInterval, int shrinkStep, int stretchStep);
    static ThreadPool* newFixedThreadPool(int threads);
    static ThreadPool* newSingleThreadPool();
    // The process's shared pool, made at the first call: 4 to 20 workers, each 5 s two fewer, two more at a time.
    static ThreadPool* getDefaultThreadPool();
    static void destroyDefaultThreadPool();

    void setFixedSize(bool fixedSize) { _fixedSize = fixedSize; }
    // In seconds. Below 0 is ignored.
    void setShrinkInterval(int seconds);
    // Below 1 is ignored.
    void setShrinkStep(int step);
    void setStretchStep(int step);

    int getIdleThreadNum() const { return _idleThreadNum; }
    int getTaskNum() const { return static_cast<int>(_tasks.size()); }
    // Workers alive.
    int getCurrentSize() const { return _currentSize; }

    // Queues the function. After stop it stays queued, and nothing runs it.
    void pushTask(std::function<void(int)> function, TaskType type);
    // Drops what is queued, without running it.
    void stopAllTasks();
    // Drops what is queued of that kind. What others push meanwhile comes ahead of the rest.
    void stopTasksByType(TaskType type);
    // Lets the workers finish every queued task, and waits for them to end. Once; there is no way back.
    void stop();
    // Waits for the worker in that slot to end; one that is not alive is left alone.
    void joinThread(int slot);

private:
    using Flag = std::shared_ptr<std::atomic<bool>>;

    void init();
    void setThread(int slot);
    void work(int slot, const std::atomic<bool>& abort);
    bool runTasks(int slot, const std::atomic<bool>& abort, Task& task);
    bool waitForTask(int slot, const std::atomic<bool>& abort, Task& task);
    void stretchPool(int count);
    bool tryShrinkPool();

    std::mutex _slotMutex;  // whoever starts or sends away workers
    // One entry a slot. A thread is null once somebody has taken it out to wait for its worker.
    std::vector<std::unique_ptr<std::thread>> _threads;
    std::vector<Flag> _abort;  // the worker is to leave after its task; shared with it, so that it outlives the slot
    std::vector<Flag> _idle;   // the worker sleeps
    std::vector<Flag> _alive;  // the slot holds a started worker; its end sets this last of all

    ThreadSafeQueue<Task> _tasks;
    std::atomic<bool> _stopped{false};
    std::atomic<int> _idleThreadNum{0};  // sleeping workers; changed under _mutex
    std::mutex _mutex;                   // where workers sleep, with _wake
    std::condition_variable _wake;
    int minThreadNum;
    int maxThreadNum;
    std::atomic<int> _currentSize{0};
    std::atomic<long long> _lastShrink;  // microseconds since the epoch
    float _shrinkInterval = 5.0f;        // seconds
    int _shrinkStep = 2;
    int _stretchStep = 2;
    bool _fixedSize = false;
};

}  // namespace Quern

#endif
