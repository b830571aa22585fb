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
std::atomic<CNetwork*> g_lastReleased{nullptr};  // the head of the chain that holds them all

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
    CNetwork* instance = InstanceIfAny();
    if (!instance) return;
    // Emptied while it is still the instance: an observer that goes meanwhile waits for the delivery there.
    instance->ForgetListeners();
    CNetwork* const released = instance;
    if (!g_instance.compare_exchange_strong(instance, nullptr, std::memory_order_acq_rel)) return;
    uninit();
    // Calls may wait in both queues: the engine may have asked for its own at any time.
    CTargetBase* const target = released;
    GetMainSelectorManger()->IgnoreTarget(target);
    getUnityObjectSelectorManger()->IgnoreTarget(target);
    released->_releasedBefore = g_lastReleased.exchange(released, std::memory_order_acq_rel);
}

CNetwork::CNetwork() : CTargetBase(false) {}

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
    const CCritical guard(&_mutex);
    if (!_isReleased) _callback = callback;
}

void CNetwork::AddObserver(CNetworkObserver* observer) {
    const CCritical guard(&_mutex);
    if (_isReleased) return;
    if (std::find(_observers.begin(), _observers.end(), observer) == _observers.end()) _observers.push_back(observer);
}

void CNetwork::RemoveObserver(CNetworkObserver* observer) {
    const CCritical guard(&_mutex);
    const auto found = std::find(_observers.begin(), _observers.end(), observer);
    if (found != _observers.end()) _observers.erase(found);
}

void CNetwork::ForgetListeners() {
    const CCritical guard(&_mutex);
    _isReleased = true;
    _observers.clear();
    _callback = nullptr;
}

// The state travels in the call's argument itself, so that a call that is dropped leaves nothing behind.
void CNetwork::OnNetworkStateChanged(ANetworkState state) {
    ORVANE_LOG_EVENT("OnNetworkStateChanged to:%d", static_cast<int>(state));
    const auto member = static_cast<void (CTargetBase::*)(void*)>(&CNetwork::OnNetworkStateChangedOnUIThread);
    PerformSelectorOnUIThread(this, member, reinterpret_cast<void*>(static_cast<intptr_t>(state)));
}

void CNetwork::OnNetworkStateChangedOnUIThread(void* cell) {
    const auto state = static_cast<ANetworkState>(reinterpret_cast<intptr_t>(cell));
    const CCritical guard(&_mutex);
    // By position, with the end looked at anew after each call: an observer may remove observers.
    for (size_t i = 0; i < _observers.size(); ++i)
        if (CNetworkObserver* const observer = _observers[i]) observer->OnNetworkStateChanged(state);
    if (_callback) _callback(state);
}

}  // namespace Quern
