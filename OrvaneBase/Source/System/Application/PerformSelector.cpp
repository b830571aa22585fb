#include "System/Application/PerformSelector.h"

#include <atomic>

#include "Base/MakeOnce.h"
#include "Orvane/OrvaneCore.h"
#include "System/Application/MainRunLoop.h"
#include "System/Application/PerformObject.h"
#include "System/Thread/TargetBase.h"

namespace Quern {
namespace {

std::atomic<CSelectorManager*> g_mainManager{nullptr};
std::atomic<CSelectorManager*> g_uiManager{nullptr};
std::atomic<int> g_bEnableUIUpdate{0};

bool IsUIUpdateEnabled() {
    return g_bEnableUIUpdate.load(std::memory_order_relaxed) == 1;
}

}  // namespace

CSelectorManager* GetMainSelectorManger() {
    return MakeOnce(g_mainManager, [] { return new CSelectorManager; });
}

CSelectorManager* getUnityObjectSelectorManger() {
    return MakeOnce(g_uiManager, [] { return new CSelectorManager; });
}

void PerformSelectorOnMainThread(CAFunctionSelector* selector) {
    if (!selector) return;
    GetMainSelectorManger()->AddSelector(*selector);
    QuernPerformSelectorOnMainThread(nullptr);
}

void QuernPerformSelectorOnMainThread(CAFunctionSelector* selector) {
    MainRunLoop& loop = MainRunLoop::Current();
    if (selector && loop.IsMainThread()) {
        selector->Perform();
        return;
    }
    PerformObject object;
    object.sel = selector;
    if (selector)
        loop.PostAndWait([object] { object.perform(); });
    else
        loop.Post([object] { object.perform(); });
}

void PerformSelectorOnUIThread(CAFunctionSelector* selector) {
    if (!selector) return;
    ISelectorCollection* const own = selector->target ? selector->target->GetSelectorCollection() : nullptr;
    if (own)
        own->AddSelector(*selector);
    else if (!IsUIUpdateEnabled())
        PerformSelectorOnMainThread(selector);
    else
        getUnityObjectSelectorManger()->AddSelector(*selector);
}

void PerformSelectorOnUIThread(CTargetBase* target, void (CTargetBase::*member)(void*), void* a) {
    CAFunctionSelector selector;
    selector.Set(target, member, a);
    PerformSelectorOnUIThread(&selector);
}

void PerformSelectorOnUIThread(CTargetBase* target, void (CTargetBase::*member)(void*, void*), void* a, void* b) {
    CAFunctionSelector selector;
    selector.Set(target, member, a, b);
    PerformSelectorOnUIThread(&selector);
}

}  // namespace Quern

void Quern_EnableManualUpdate() {
    Quern::g_bEnableUIUpdate.store(1, std::memory_order_relaxed);
}

int Quern_IsManualUpdate() {
    return Quern::g_bEnableUIUpdate.load(std::memory_order_relaxed);
}

void Quern_UpdateUIThread() {
    if (Quern::CSelectorManager* manager = Quern::g_uiManager.load(std::memory_order_acquire)) manager->Update();
}

void Quern_IgnoreUIThread(void* target) {
    if (!Quern::IsUIUpdateEnabled()) {
        Quern_RemoveTargetFromMainThread(target);
    } else if (Quern::CSelectorManager* manager = Quern::g_uiManager.load(std::memory_order_acquire)) {
        manager->IgnoreTarget(target);
    }
}

void Quern_RemoveTargetFromMainThread(void* target) {
    if (Quern::CSelectorManager* manager = Quern::g_mainManager.load(std::memory_order_acquire)) {
        manager->IgnoreTarget(target);
    }
}

void Quern_EndUIThread() {
    // Emptied and kept: another thread may be posting.
    if (Quern::CSelectorManager* manager = Quern::g_uiManager.load(std::memory_order_acquire)) manager->Clear();
}

void quern_target_unity_enable_ui_update() {
    Quern_EnableManualUpdate();
}

void quern_target_unity_update() {
    Quern_UpdateUIThread();
}
