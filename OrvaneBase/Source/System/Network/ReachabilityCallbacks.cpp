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
class CallbackList {
public:
    void Add(ReachabilityChangedCallback callback) {
        const Quern::CCritical guard(&_mutex);
        auto& list = g_vecReachabilityChangedCallbackList;
        if (std::find(list.begin(), list.end(), callback) == list.end()) list.push_back(callback);
    }
    void Remove(ReachabilityChangedCallback callback) {
        const Quern::CCritical guard(&_mutex);
        std::erase(g_vecReachabilityChangedCallbackList, callback);
    }
    // The callback at that place, or null behind the last one.
    ReachabilityChangedCallback At(size_t index) {
        const Quern::CCritical guard(&_mutex);
        const auto& list = g_vecReachabilityChangedCallbackList;
        return index < list.size() ? list[index] : nullptr;
    }

private:
    Quern::CMutex _mutex;
    std::vector<ReachabilityChangedCallback> g_vecReachabilityChangedCallbackList ORVANE_GUARDED_BY(_mutex);
};

CallbackList& Callbacks() {
    static auto* list = new CallbackList;  // never destroyed: threads outlive static destruction
    return *list;
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
    if (callback) Callbacks().Add(callback);
}

void RemoveReachabilityChangedCallback(ReachabilityChangedCallback callback) {
    Callbacks().Remove(callback);
}

void onReachabilityChanged() {
    for (size_t i = 0; const ReachabilityChangedCallback callback = Callbacks().At(i); ++i)
        callback(GetAReachablity());
}

void OrvaneCoreReachabilityCallback(uint32_t) {
    onReachabilityChanged();
    Quern::NotificationCenter::Current().Post("NetworkAReachabilityChangedNotification", GetAReachablity());
}
