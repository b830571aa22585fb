#include "System/Operation/OperationQueueImp.h"

#include <utility>

#include "Base/Configure/OrvaneCoreRemoteConfig.h"
#include "Base/XLog.h"
#include "Orvane/OrvaneCore.h"
#include "System/Thread/MinNum.h"
#include "System/Thread/Sleep.h"
#include "System/Thread/ThreadName.h"
#include "System/Thread/Time.h"

namespace Quern {
namespace {

constexpr int kPatience = 1001;  // milliseconds of backlog before a worker is added, and of rest before one leaves
constexpr int kWorkerRest = 10;  // milliseconds between two passes of a worker
constexpr int kFirstRest = 100;  // milliseconds before a thread's first pass
constexpr int kManagerFinalRest = 10;  // milliseconds between two looks at the workers that are left

CMutex* const g_instanceMutex = new CMutex(true);  // never destroyed: threads outlive static objects
std::atomic<OperationQueueImp*> g_instance{nullptr};

void* AsPointer(pthread_t thread) {
    return reinterpret_cast<void*>(thread);
}

}  // namespace

std::atomic<int> OperationQueueImp::_intervalPerLoop{10};

OperationQueueImp* OperationQueueImp::GetInstance() {
    if (OperationQueueImp* const instance = g_instance.load(std::memory_order_acquire)) return instance;
    const CCritical guard(g_instanceMutex);
    OperationQueueImp* instance = g_instance.load(std::memory_order_relaxed);
    if (!instance) {
        instance = new OperationQueueImp;
        g_instance.store(instance, std::memory_order_release);
    }
    return instance;
}

void OperationQueueImp::ReleaseInstance() {
    ORVANE_LOG_INFO("OperationQueueImp::ReleaseInstance");
    const CCritical guard(g_instanceMutex);
    OperationQueueImp* const instance = g_instance.load(std::memory_order_relaxed);
    if (!instance) return;
    g_instance.store(nullptr, std::memory_order_relaxed);
    instance->_running.store(false, std::memory_order_relaxed);
}

OperationQueueImp::OperationQueueImp() {
    ORVANE_LOG_INFO("OperationQueueImp(%p)", static_cast<void*>(this));
    AddApplicationQuitCallback(ReleaseInstance);
    Orvane::OrvaneCoreRemoteConfig* const config = Orvane::OrvaneCoreRemoteConfig::GetInstance();
    _stretch = config->GetBool("OperationQueueStretch", true);
    maxThreadNum = config->GetInt("OperationQueueMaxThreadNum", 3);
    minThreadNum = config->GetInt("OperationQueueMinThreadNum", 2);
    _intervalPerLoop.store(config->GetInt("OperationIntervalPerLoop", 10), std::memory_order_relaxed);
    ORVANE_LOG_INFO("check _intervalPerLoop %d", _intervalPerLoop.load(std::memory_order_relaxed));
    createThreadList();
}

OperationQueueImp::~OperationQueueImp() {
    ORVANE_LOG_INFO("~OperationQueueImp(%p)", static_cast<void*>(this));
    std::vector<Operation*> left;
    {
        const CCritical guard(&_lock);
        left = std::move(_waiting);
        left.insert(left.end(), _ready.begin(), _ready.end());
        _waiting.clear();
        _ready.clear();
    }
    for (const Operation* operation : left)
        delete operation;
}

// Makes the operation under the lock, so that it enters its target's memory only if it enters the queue.
template <typename Make>
void OperationQueueImp::addIfRunning(Make make) {
    {
        const CCritical guard(&_lock);
        if (_running.load(std::memory_order_relaxed)) {
            _waiting.push_back(make());
            return;
        }
    }
    ORVANE_LOG_INFO("AddOperation _running has been false");
}

void OperationQueueImp::AddOperation(OperationTargetBase* target, ObjectOperation::Member member, void* data,
                                     bool repeat) {
    addIfRunning([&] { return new ObjectOperation(target, member, data, repeat); });
}

void OperationQueueImp::AddOperation(StaticOperation::Function function, void* data, bool repeat) {
    addIfRunning([&] { return new StaticOperation(function, data, repeat); });
}

void OperationQueueImp::AddOperation(const Operation& operation) {
    addIfRunning([&] { return operation.Duplicate(); });
}

void OperationQueueImp::RemoveOperation(long long id) {
    // Looks at the head alone, again and again: the lock is held, so another one in front stays there.
    const auto takeHead = [id](auto& list) {
        while (!list.empty()) {
            if (list.front() && list.front()->GetId() == id) {
                list.erase(list.begin());
                return;
            }
            SleepMS(1);
        }
    };
    const CCritical guard(&_lock);
    takeHead(_ready);
    takeHead(_waiting);
}

void OperationQueueImp::createThreadList() {
    _running.store(true, std::memory_order_relaxed);
    for (int i = 0; i < minThreadNum; ++i) {
        _lock.Lock();
        const Creation creation = createThread();
        _lock.Unlock();
        creation.Log();
    }
    pthread_t manager;
    const int error = pthread_create(&manager, nullptr, onThreadManageProc, this);
    if (error == 0)
        ORVANE_LOG_INFO("pthread_create onThreadManageProc:%p", AsPointer(manager));
    else
        ORVANE_LOG_ERROR("pthread_create onThreadManageProc failed:%d", error);
}

OperationQueueImp::Creation OperationQueueImp::createThread() {
    Creation creation;
    if (_threadCount >= maxThreadNum) {
        creation.result = Creation::kAtMaximum;
        return creation;
    }
    creation.error = pthread_create(&creation.worker, nullptr, onThreadProc, this);
    creation.result = creation.error == 0 ? Creation::kMade : Creation::kFailed;
    if (creation.result == Creation::kMade) ++_threadCount;
    return creation;
}

void OperationQueueImp::Creation::Log() const {
    switch (result) {
        case kNotTried:
            break;
        case kAtMaximum:
            ORVANE_LOG_DEBUG("thread num is max");
            break;
        case kFailed:
            ORVANE_LOG_ERROR("pthread_create onThreadProc failed:%d", error);
            break;
        case kMade:
            ORVANE_LOG_INFO("pthread_create onThreadProc:%p", AsPointer(worker));
            break;
    }
}

void* OperationQueueImp::onThreadManageProc(void* queue) {
    OperationQueueImp* const self = static_cast<OperationQueueImp*>(queue);
    pthread_detach(pthread_self());
    set_thread_name("OperationQueue.ThreadManager");
    SleepMS(kFirstRest);
    {
        const CCritical guard(&self->_lock);
        self->manage();
    }
    self->waitForWorkers();
    ORVANE_LOG_EVENT("onThreadManageProc threads have been destroyed, starting delete queue");
    delete self;
    return nullptr;
}

// The manager's passes. The lock is given up between them.
void OperationQueueImp::manage() {
    int stretchTicks = 0;  // milliseconds for which work has stood ready with nobody idle
    while (_running.load(std::memory_order_relaxed)) {
        const int interval = _intervalPerLoop.load(std::memory_order_relaxed);
        int moved = moveDueToReady();
        Creation creation;
        if (!_ready.empty()) {
            if (_stretch && _idleCount == 0) {
                stretchTicks += interval;
                if (stretchTicks >= kPatience) {
                    creation = createThread();
                    stretchTicks = 0;
                }
            } else {
                stretchTicks = 0;
            }
            if (moved == 0) moved = static_cast<int>(_ready.size());
        }
        for (int wakeUps = MinNum(moved, _idleCount); wakeUps > 0; --wakeUps)
            _condition.WakeUp();
        _lock.Unlock();
        creation.Log();
        SleepMS(interval);
        _lock.Lock();
    }
}

// Returns how many it moved.
int OperationQueueImp::moveDueToReady() {
    const long long now = CTime::GetTimeTick() / 1000;
    auto stays = _waiting.begin();
    for (Operation* const operation : _waiting) {
        if (operation && operation->GetNextRun() <= now)
            _ready.push_back(operation);
        else
            *stays++ = operation;
    }
    const int moved = static_cast<int>(_waiting.end() - stays);
    _waiting.erase(stays, _waiting.end());
    return moved;
}

void OperationQueueImp::waitForWorkers() {
    for (;;) {
        {
            const CCritical guard(&_lock);
            if (_threadCount == 0) return;
        }
        SleepMS(kManagerFinalRest);
    }
}

void* OperationQueueImp::onThreadProc(void* queue) {
    pthread_detach(pthread_self());
    set_thread_name("OperationQueue.ThreadProcess");
    SleepMS(kFirstRest);
    static_cast<OperationQueueImp*>(queue)->work();
    return nullptr;
}

// A worker's passes. Behind its last the queue may be gone.
void OperationQueueImp::work() {
    int idleTicks = 0;  // milliseconds of empty passes while above the minimum
    while (_running.load(std::memory_order_relaxed)) {
        if (Operation* const operation = takeReady())
            runOperation(operation);
        else if (!passIdle(idleTicks))
            return;
        SleepMS(kWorkerRest);
    }
    ORVANE_LOG_DEBUG("Destroy Thread");
    const CCritical guard(&_lock);
    --_threadCount;
}

Operation* OperationQueueImp::takeReady() {
    const CCritical guard(&_lock);
    if (_ready.empty()) return nullptr;
    Operation* const operation = _ready.front();
    _ready.pop_front();
    return operation;
}

void OperationQueueImp::runOperation(Operation* operation) {
    operation->Run();
    if (operation->IsRepeating()) {
        const CCritical guard(&_lock);
        if (_running.load(std::memory_order_relaxed)) {
            _waiting.push_back(operation);
            return;
        }
    }
    delete operation;
}

// An empty pass: sleeps until woken, or, above the minimum, counts. False if the worker has left. All under one lock:
// several workers above the minimum come to their last pass at about the same time, and only the surplus may leave.
bool OperationQueueImp::passIdle(int& idleTicks) {
    {
        const CCritical guard(&_lock);
        ++_idleCount;
        if (_threadCount <= minThreadNum) {
            _condition.Wait();
            --_idleCount;
            idleTicks = 0;
            return true;
        }
        if (idleTicks < kPatience) {
            idleTicks += kWorkerRest;
            return true;
        }
        --_threadCount;
        --_idleCount;
    }
    ORVANE_LOG_INFO("Destroy thread");  // touches nothing of the queue, which may be gone
    return false;
}

}  // namespace Quern
