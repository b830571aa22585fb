#include "System/Application/CApplication.h"

#include <algorithm>
#include <atomic>

#include "Base/MakeOnce.h"
#include "Base/RunTimeClass.h"
#include "Base/XLog.h"
#include "System/Network/CNetwork.h"  // upward: the last stage takes the network down

namespace Quern {

namespace {

std::atomic<CApplication*> g_instance{nullptr};

}  // namespace

CApplication* CApplication::GetInstance() {
    return MakeOnce(g_instance, [] { return new CApplication; });
}

void CApplication::ReleaseInstance() {
    CApplication* const instance = g_instance.load(std::memory_order_acquire);
    if (!instance) return;
    const CCritical guard(&instance->_lock);
    instance->_observers.clear();
}

void CApplication::AddObserver(IApplicationObserver* observer) {
    if (!observer) return;
    const CCritical guard(&_lock);
    ORVANE_LOG_INFO("CApplication::AddObserver:%p", static_cast<void*>(observer));
    if (std::find(_observers.begin(), _observers.end(), observer) != _observers.end()) return;
    ORVANE_LOG_INFO("CApplication::AddObserver:%p", static_cast<void*>(observer));
    _observers.push_back(observer);
    ORVANE_LOG_INFO("CApplication::size:%d", static_cast<int>(_observers.size()));
}

void CApplication::RemoveObserver(IApplicationObserver* observer) {
    ORVANE_LOG_INFO("CApplication::RemoveObserver:%p", static_cast<void*>(observer));
    const CCritical guard(&_lock);
    const auto found = std::find(_observers.begin(), _observers.end(), observer);
    if (found != _observers.end()) _observers.erase(found);
}

void CApplication::OnCreate() {
    const CCritical guard(&_lock);
    TellObservers(&IApplicationObserver::OnCreate);
}

void CApplication::OnStart() {
    const CCritical guard(&_lock);
    TellObservers(&IApplicationObserver::OnStart);
}

void CApplication::OnPause() {
    const CCritical guard(&_lock);
    ORVANE_LOG_INFO("CApplication::OnPause Observersize:%d", static_cast<int>(_observers.size()));
    TellObservers(&IApplicationObserver::OnPause);
}

void CApplication::OnResume() {
    ORVANE_LOG_INFO("CApplication::OnResume");
    const CCritical guard(&_lock);
    TellObservers(&IApplicationObserver::OnResume);
}

void CApplication::OnStop() {
    const CCritical guard(&_lock);
    TellObservers(&IApplicationObserver::OnStop);
}

void CApplication::OnDestroy() {
    CNetwork::ReleaseInstance();
    const CCritical guard(&_lock);
    TellObservers(&IApplicationObserver::OnDestroy);
}

// By position, with the end looked at anew after each call: a stage may remove observers.
void CApplication::TellObservers(void (IApplicationObserver::*stage)()) {
    for (size_t i = 0; i < _observers.size(); ++i)
        if (_observers[i]) (_observers[i]->*stage)();
}

namespace {

template <void (CApplication::*Stage)()>
void* PerformStage(orvane_object*, const char*, void* const*) {
    (CApplication::GetInstance()->*Stage)();
    return nullptr;
}

template <void (CApplication::*Change)(IApplicationObserver*)>
void* PerformChange(orvane_object*, const char*, void* const* arguments) {
    if (arguments) (CApplication::GetInstance()->*Change)(static_cast<IApplicationObserver*>(arguments[0]));
    return nullptr;
}

}  // namespace

void RegisterApplicationClass() {
    RegisterRunTimeClass("CApplication", {},
                         {{"addObserver:", PerformChange<&CApplication::AddObserver>},
                          {"removeObserver:", PerformChange<&CApplication::RemoveObserver>},
                          {"OnCreate", PerformStage<&CApplication::OnCreate>},
                          {"OnStart", PerformStage<&CApplication::OnStart>},
                          {"OnPause", PerformStage<&CApplication::OnPause>},
                          {"OnResume", PerformStage<&CApplication::OnResume>},
                          {"OnStop", PerformStage<&CApplication::OnStop>},
                          {"OnDestroy", PerformStage<&CApplication::OnDestroy>}});
}

}  // namespace Quern
