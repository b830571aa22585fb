// The process's shared reachability object and those who hear of its changes.
#include <algorithm>
#include <atomic>
#include <vector>

#include "System/Application/NotificationCenter.h"
#include "System/Network/AReachability.h"
#include "System/Thread/Mutex.h"

namespace {

std::atomic<AReachability*> g_reachabilty{nullptr};

// Entries come from whichever thread makes the network's singleton.
struct CallbackList {
    Quern::CMutex mutex;
    std::vector<ReachabilityChangedCallback> g_vecReachabilityChangedCallbackList ORVANE_GUARDED_BY(mutex);
};

CallbackList& Callbacks() {
    static auto* list = new CallbackList;  // never destroyed: threads outlive static destruction
    return *list;
}

// The callback at that place, or null behind the last one.
ReachabilityChangedCallback CallbackAt(size_t index) {
    CallbackList& list = Callbacks();
    const Quern::CCritical guard(&list.mutex);
    const auto& callbacks = list.g_vecReachabilityChangedCallbackList;
    return index < callbacks.size() ? callbacks[index] : nullptr;
}

}  // namespace

AReachability* GetAReachablity() {
    AReachability* shared = g_reachabilty.load(std::memory_order_acquire);
    if (shared) return shared;
    std::unique_ptr<AReachability> made = AReachability::reachabilityForInternetConnection();
    if (!made) return nullptr;
    // Of two first callers one publishes its object and watches; the other drops its own, which holds nothing yet.
    if (!g_reachabilty.compare_exchange_strong(shared, made.get(), std::memory_order_acq_rel)) return shared;
    made->startNotifier();
    return made.release();
}

void AddReachabilityChangedCallback(ReachabilityChangedCallback callback) {
    if (!callback) return;
    CallbackList& list = Callbacks();
    const Quern::CCritical guard(&list.mutex);
    auto& callbacks = list.g_vecReachabilityChangedCallbackList;
    if (std::find(callbacks.begin(), callbacks.end(), callback) == callbacks.end()) callbacks.push_back(callback);
}

void RemoveReachabilityChangedCallback(ReachabilityChangedCallback callback) {
    CallbackList& list = Callbacks();
    const Quern::CCritical guard(&list.mutex);
    std::erase(list.g_vecReachabilityChangedCallbackList, callback);
}

void onReachabilityChanged() {
    for (size_t i = 0; const ReachabilityChangedCallback callback = CallbackAt(i); ++i)
        callback(GetAReachablity());
}

void OrvaneCoreReachabilityCallback(uint32_t) {
    onReachabilityChanged();
    Quern::NotificationCenter::Current().Post("NetworkAReachabilityChangedNotification", GetAReachablity());
}
