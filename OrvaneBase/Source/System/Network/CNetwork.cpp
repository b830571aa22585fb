#include "System/Network/CNetwork.h"

#include <algorithm>
#include <atomic>

#include "Base/ConsoleSink.h"
#include "Base/XLog.h"
#include "Orvane/OrvaneCore.h"
#include "System/Application/MainRunLoop.h"
#include "System/Application/PerformSelector.h"
#include "System/Network/AReachability.h"
#include "System/Network/NetworkChange.h"

namespace Quern {
namespace {

std::atomic<CNetwork*> g_instance{nullptr};

}  // namespace

CNetwork* CNetwork::GetInstance() {
    CNetwork* current = InstanceIfAny();
    if (current) return current;
    auto* const made = new CNetwork;
    if (!g_instance.compare_exchange_strong(current, made, std::memory_order_acq_rel)) {
        delete made;
        return current;
    }
    init();
    AddApplicationQuitCallback(ReleaseInstance);
    return made;
}

CNetwork* CNetwork::InstanceIfAny() {
    return g_instance.load(std::memory_order_acquire);
}

void CNetwork::ReleaseInstance() {
    CNetwork* const instance = g_instance.exchange(nullptr, std::memory_order_acq_rel);
    if (!instance) return;
    // Calls may wait in both queues: the engine may have asked for its own at any time.
    CTargetBase* const target = instance;
    Quern_IgnoreUIThread(target);
    Quern_RemoveTargetFromMainThread(target);
    delete instance;
}

CNetwork::CNetwork() : CTargetBase(false) {}

CNetwork::~CNetwork() {
    uninit();
    const CCritical guard(&_listeners->_mutex);
    _listeners->_observers.clear();
    _listeners->_callback = nullptr;
}

void CNetwork::init() {
    AddReachabilityChangedCallback(onReachabilityChangedCallback);
    if (MainRunLoop::Current().IsMainThread()) {
        ReadFirstNetworkState();
        return;
    }
    MainRunLoop::Current().Post([] {
        PlatformLog("initialize CNetwork in main queue");
        ReadFirstNetworkState();
    });
}

ANetworkState CNetwork::GetNetworkState() {
    return ReadNetworkState();
}

_tagADetailNetworkInfo CNetwork::GetDetailNetworkInfo() {
    return ReadDetailNetworkInfo();
}

void CNetwork::SetCallback(void (*callback)(ANetworkState)) {
    const CCritical guard(&_listeners->_mutex);
    _listeners->_callback = callback;
}

void CNetwork::AddObserver(CNetworkObserver* observer) {
    const CCritical guard(&_listeners->_mutex);
    auto& observers = _listeners->_observers;
    if (std::find(observers.begin(), observers.end(), observer) == observers.end()) observers.push_back(observer);
}

void CNetwork::RemoveObserver(CNetworkObserver* observer) {
    const CCritical guard(&_listeners->_mutex);
    auto& observers = _listeners->_observers;
    const auto found = std::find(observers.begin(), observers.end(), observer);
    if (found != observers.end()) observers.erase(found);
}

// The state travels in the call's argument itself, so that a call that is dropped leaves nothing behind.
void CNetwork::OnNetworkStateChanged(ANetworkState state) {
    ORVANE_LOG_EVENT("OnNetworkStateChanged to:%d", static_cast<int>(state));
    const auto member = static_cast<void (CTargetBase::*)(void*)>(&CNetwork::OnNetworkStateChangedOnUIThread);
    PerformSelectorOnUIThread(this, member, reinterpret_cast<void*>(static_cast<intptr_t>(state)));
}

void CNetwork::OnNetworkStateChangedOnUIThread(void* cell) {
    const auto state = static_cast<ANetworkState>(reinterpret_cast<intptr_t>(cell));
    const std::shared_ptr<Listeners> listeners = _listeners;  // this object may go on the way
    const CCritical guard(&listeners->_mutex);
    // By position, with the end looked at anew after each call: an observer may remove observers.
    for (size_t i = 0; i < listeners->_observers.size(); ++i)
        if (CNetworkObserver* const observer = listeners->_observers[i]) observer->OnNetworkStateChanged(state);
    if (listeners->_callback) listeners->_callback(state);
}

}  // namespace Quern
