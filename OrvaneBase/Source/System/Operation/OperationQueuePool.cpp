#include "System/Operation/OperationQueuePool.h"

#include "Base/Configure/OrvaneCoreRemoteConfig.h"
#include "Base/XLog.h"
#include "Orvane/OrvaneCore.h"
#include "System/Thread/Mutex.h"
#include "System/Thread/Sleep.h"
#include "System/Thread/Time.h"

namespace Quern {
namespace {

constexpr ThreadPool::TaskType kOperationTask = 0;

CMutex* const g_instanceMutex = new CMutex(true);  // never destroyed: threads outlive static objects
std::atomic<OperationQueuePool*> g_instance{nullptr};

}  // namespace

OperationQueuePool* OperationQueuePool::GetInstance() {
    if (OperationQueuePool* const instance = g_instance.load(std::memory_order_acquire)) return instance;
    const CCritical guard(g_instanceMutex);
    OperationQueuePool* instance = g_instance.load(std::memory_order_relaxed);
    if (!instance) {
        instance = new OperationQueuePool;
        g_instance.store(instance, std::memory_order_release);
    }
    return instance;
}

void OperationQueuePool::ReleaseInstance() {
    const CCritical guard(g_instanceMutex);
    delete g_instance.load(std::memory_order_relaxed);
    g_instance.store(nullptr, std::memory_order_relaxed);
}

OperationQueuePool::OperationQueuePool() {
    // The misspelt keys are those of the configuration's files.
    Orvane::OrvaneCoreRemoteConfig* const config = Orvane::OrvaneCoreRemoteConfig::GetInstance();
    const int minThreadNum = config->GetInt("OperationQueueMinThreadNum", 3);
    const int maxThreadNum = config->GetInt("OperationQueueMaxThreadNum", 6);
    const int shrinkInterval = config->GetInt("OperationQueueShrinkInterval", 5);
    const int shrinkStep = config->GetInt("OperaionQueueShrinkStep", 2);
    const int stretchStep = config->GetInt("OperationQueueStrechStep", 1);
    ORVANE_LOG_INFO(
        "OperationQueuePool minThreadNum %d, maxThreadNum %d, shrinkInterval %d, shrinkStep %d, stretchStep %d",
        minThreadNum, maxThreadNum, shrinkInterval, shrinkStep, stretchStep);
    _pool = ThreadPool::newCachedThreadPool(minThreadNum, maxThreadNum, shrinkInterval, shrinkStep, stretchStep);
    AddApplicationQuitCallback(ReleaseInstance);
}

OperationQueuePool::~OperationQueuePool() {
    _running = false;
    delete _pool;
}

void OperationQueuePool::AddOperation(OperationTargetBase* target, ObjectOperation::Member member, void* data,
                                      bool repeat) {
    Push(new ObjectOperation(target, member, data, repeat));
}

void OperationQueuePool::AddOperation(StaticOperation::Function function, void* data, bool repeat) {
    Push(new StaticOperation(function, data, repeat));
}

void OperationQueuePool::Push(Operation* operation) {
    _pool->pushTask(
        [this, operation](int) {
            _Run(operation);
            delete operation;
        },
        kOperationTask);
}

// Every run of the operation, on one worker.
void OperationQueuePool::_Run(Operation* operation) {
    do {
        operation->Run();
        const long long nextRun = operation->GetNextRun();
        if (nextRun != 0) SleepMS(nextRun - CTime::GetTimeTick() / 1000);
    } while (operation->IsRepeating() && _running);
}

}  // namespace Quern
