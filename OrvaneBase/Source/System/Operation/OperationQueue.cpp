#include "System/Operation/OperationQueue.h"

#include <atomic>

#include "Base/Configure/OrvaneCoreRemoteConfig.h"
#include "Base/XLog.h"
#include "System/Operation/OperationQueueImp.h"
#include "System/Operation/OperationQueuePool.h"

namespace Quern {
namespace {

constexpr int kNotChosen = 0;
constexpr int kThreaded = 1;
constexpr int kPool = 2;

// Not locked: two first calls read the same setting. A setting of 0 looks like no choice, and is read again.
std::atomic<int> OperationMode{kNotChosen};

}  // namespace

OperationQueue* OperationQueue::GetInstance() {
    int mode = OperationMode.load(std::memory_order_relaxed);
    if (mode == kNotChosen) {
        mode = Orvane::OrvaneCoreRemoteConfig::GetInstance()->GetInt("OperationMode", kThreaded);
        OperationMode.store(mode, std::memory_order_relaxed);
        ORVANE_LOG_INFO("Operation mode is %d", mode);
    }
    if (mode == kPool) return OperationQueuePool::GetInstance();
    return OperationQueueImp::GetInstance();
}

}  // namespace Quern
