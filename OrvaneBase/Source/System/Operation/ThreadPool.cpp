#include "System/Operation/ThreadPool.h"

#include <algorithm>
#include <cstdio>
#include <new>
#include <utility>

#include "Base/MakeOnce.h"
#include "Base/XLog.h"
#include "System/Thread/MinNum.h"
#include "System/Thread/ThreadName.h"
#include "System/Thread/Time.h"

namespace Quern {
namespace {

std::atomic<ThreadPool*> g_defaultPool{nullptr};

float SecondsBetween(long long begin, long long end) {
    return static_cast<float>(end - begin) / 1000000.0f;
}

}  // namespace

ThreadPool::ThreadPool(int min, int max) : minThreadNum(min), maxThreadNum(max) {
    init();
}

ThreadPool::~ThreadPool() {
    stop();
}

ThreadPool* ThreadPool::newCachedThreadPool(int min, int max, int shrinkInterval, int shrinkStep, int stretchStep) {
    ThreadPool* const pool = new (std::nothrow) ThreadPool(min, max);
    if (!pool) return nullptr;
    pool->setFixedSize(false);
    pool->setShrinkInterval(shrinkInterval);
    pool->setShrinkStep(shrinkStep);
    pool->setStretchStep(stretchStep);
    return pool;
}

ThreadPool* ThreadPool::newFixedThreadPool(int threads) {
    ThreadPool* const pool = new (std::nothrow) ThreadPool(threads, threads);
    if (pool) pool->setFixedSize(true);
    return pool;
}

ThreadPool* ThreadPool::newSingleThreadPool() {
    return newFixedThreadPool(1);
}

ThreadPool* ThreadPool::getDefaultThreadPool() {
    return MakeOnce(g_defaultPool, [] { return newCachedThreadPool(4, 20, 5, 2, 2); });
}

void ThreadPool::destroyDefaultThreadPool() {
    delete g_defaultPool.load(std::memory_order_acquire);
    g_defaultPool.store(nullptr, std::memory_order_release);
}

void ThreadPool::init() {
    _lastShrink = CTime::GetTimeTick();
    maxThreadNum = std::max(maxThreadNum, minThreadNum);
    const size_t slots = static_cast<size_t>(std::max(maxThreadNum, 0));
    _threads.resize(slots);
    _abort.resize(slots);
    _idle.resize(slots);
    _alive.resize(slots);
    for (int slot = 0; slot < static_cast<int>(slots); ++slot) {
        const bool starts = slot < minThreadNum;
        _idle[slot] = std::make_shared<std::atomic<bool>>(false);
        _abort[slot] = std::make_shared<std::atomic<bool>>(!starts);
        _alive[slot] = std::make_shared<std::atomic<bool>>(false);
        if (!starts) continue;
        setThread(slot);
        *_alive[slot] = true;
        ++_currentSize;
    }
}

void ThreadPool::setThread(int slot) {
    const Flag abort = _abort[slot];
    _threads[slot] = std::make_unique<std::thread>([this, slot, abort] { work(slot, *abort); });
}

void ThreadPool::setShrinkInterval(int seconds) {
    if (seconds >= 0) _shrinkInterval = static_cast<float>(seconds);
}

void ThreadPool::setShrinkStep(int step) {
    if (step >= 1) _shrinkStep = step;
}

void ThreadPool::setStretchStep(int step) {
    if (step >= 1) _stretchStep = step;
}

void ThreadPool::work(int slot, const std::atomic<bool>& abort) {
    char name[32];
    snprintf(name, sizeof name, "OrvThreadPool-%d", slot);
    set_thread_name(name);
    Task task;
    bool hasTask = _tasks.pop(task);
    while (!hasTask || runTasks(slot, abort, task)) {
        hasTask = waitForTask(slot, abort, task);
        if (!hasTask) return;
    }
}

// Runs the task and those that are queued behind it. False if the worker is to leave.
bool ThreadPool::runTasks(int slot, const std::atomic<bool>& abort, Task& task) {
    for (bool hasTask = true; hasTask;) {
        // Kept until the next task is out, and destroyed outside the queue's lock.
        const std::function<void(int)> function = std::exchange(task.function, nullptr);
        if (function) function(slot);
        if (abort) return false;
        hasTask = _tasks.pop(task);
    }
    return true;
}

// Sleeps until there is a task, which it takes, or the worker is to leave: then false. Looking and taking are one step
// under the lock, so no wake-up is lost between them.
bool ThreadPool::waitForTask(int slot, const std::atomic<bool>& abort, Task& task) {
    bool hasTask = false;
    std::unique_lock<std::mutex> lock(_mutex);
    ++_idleThreadNum;
    *_idle[slot] = true;
    _wake.wait(lock, [&] {
        hasTask = _tasks.pop(task);
        return hasTask || _stopped || abort;
    });
    *_idle[slot] = false;
    --_idleThreadNum;
    return hasTask;
}

void ThreadPool::pushTask(std::function<void(int)> function, TaskType type) {
    if (!_fixedSize && !_stopped) {
        const int idle = _idleThreadNum;
        if (idle > minThreadNum) {
            const long long now = CTime::GetTimeTick();
            if (_tasks.empty() && SecondsBetween(_lastShrink, now) > _shrinkInterval) {
                tryShrinkPool();
                _lastShrink = now;
            }
        } else if (idle == 0) {
            stretchPool(_stretchStep);
        }
    }
    _tasks.push(type, std::move(function));
    // A worker counts itself in before it looks for a last time, so that one who is not counted finds the task.
    if (_idleThreadNum == 0) return;
    // Through the lock, so that a worker that has just looked in vain is waiting by now; woken behind it, since a
    // worker that wakes into a lock that is still held falls asleep once more.
    { const std::lock_guard<std::mutex> guard(_mutex); }
    _wake.notify_one();
}

void ThreadPool::stretchPool(int count) {
    if (_currentSize >= static_cast<int>(_threads.size())) return;  // most pushes of a busy pool
    const long long begin = CTime::GetTimeTick();
    int sizeBefore = 0, sizeNow = 0, started = 0;
    {
        const std::lock_guard<std::mutex> guard(_slotMutex);
        sizeBefore = _currentSize;
        for (int slot = 0; slot < static_cast<int>(_threads.size()) && started < count; ++slot) {
            if (*_alive[slot]) continue;
            *_abort[slot] = false;
            setThread(slot);
            *_alive[slot] = true;
            ++_currentSize;
            ++started;
        }
        sizeNow = _currentSize;
    }
    if (started > 0)
        ORVANE_LOG_INFO("stretch pool from %d to %d, waste %f seconds\n", sizeBefore, sizeNow,
                        static_cast<double>(SecondsBetween(begin, CTime::GetTimeTick())));
}

// Whether the pool is at its minimum then.
bool ThreadPool::tryShrinkPool() {
    ORVANE_LOG_INFO("shrink pool, _idleThreadNum = %d", _idleThreadNum.load());
    const long long begin = CTime::GetTimeTick();
    std::vector<std::pair<int, std::unique_ptr<std::thread>>> leaving;
    {
        const std::lock_guard<std::mutex> guard(_slotMutex);
        const int count = MinNum(_shrinkStep, _currentSize - minThreadNum);
        for (int slot = 0; slot < static_cast<int>(_threads.size()) && static_cast<int>(leaving.size()) < count;
             ++slot) {
            if (!*_idle[slot] || !_threads[slot]) continue;
            *_abort[slot] = true;
            leaving.emplace_back(slot, std::move(_threads[slot]));
        }
        _currentSize -= static_cast<int>(leaving.size());  // now, so that another push counts without them
    }
    {
        const std::lock_guard<std::mutex> guard(_mutex);
        _wake.notify_all();
    }
    for (auto& [slot, thread] : leaving) {
        if (thread->joinable()) thread->join();
        *_alive[slot] = false;
    }
    ORVANE_LOG_INFO("shrink %d threads, waste: %f seconds\n", static_cast<int>(leaving.size()),
                    static_cast<double>(SecondsBetween(begin, CTime::GetTimeTick())));
    return _currentSize <= minThreadNum;
}

void ThreadPool::stopAllTasks() {
    for (Task task; _tasks.pop(task);)
        task.function = nullptr;  // outside the queue's lock: what it holds may push
}

void ThreadPool::stopTasksByType(TaskType type) {
    std::vector<Task> kept;
    for (Task task; _tasks.pop(task); task = {}) {
        if (task.type != type) kept.push_back(std::move(task));
    }
    if (kept.empty()) return;
    for (Task& each : kept)
        _tasks.push(std::move(each));
    // Workers that looked meanwhile found nothing and sleep.
    const std::lock_guard<std::mutex> guard(_mutex);
    _wake.notify_all();
}

void ThreadPool::stop() {
    if (_stopped.exchange(true)) return;
    {
        const std::lock_guard<std::mutex> guard(_mutex);
        _wake.notify_all();
    }
    // A task that pushes meanwhile may start a worker in a slot that was free: until none is left.
    while (_currentSize > 0) {
        for (int slot = 0; slot < static_cast<int>(_threads.size()); ++slot)
            joinThread(slot);
    }
    stopAllTasks();
    _threads.clear();
    _abort.clear();
}

void ThreadPool::joinThread(int slot) {
    if (slot < 0 || slot >= static_cast<int>(_threads.size())) {
        ORVANE_LOG_INFO("Invalid thread id %d\n", slot);
        return;
    }
    std::unique_ptr<std::thread> thread;
    {
        const std::lock_guard<std::mutex> guard(_slotMutex);
        if (!*_alive[slot] || !_threads[slot]) return;  // not there, or waited for by a push that sends it away
        thread = std::move(_threads[slot]);
    }
    if (thread->joinable()) thread->join();
    --_currentSize;
    *_alive[slot] = false;
}

}  // namespace Quern
