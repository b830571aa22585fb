#include "PluginManager/PluginUtils.h"

#include <atomic>

#include "Base/MakeOnce.h"
#include "Base/RunTimeClass.h"
#include "PluginManager/PluginManager.h"

using Orvane::Plugin::IPluginManager;
using Orvane::Plugin::PluginManager;

PluginUtils* PluginUtils::sharedInstance() {
    // Not a local static, whose guard is a lock: the manager's constructor logs, and a log callback may come back here.
    static constinit std::atomic<PluginUtils*> instance{nullptr};
    return Quern::MakeOnce(instance, [] { return new PluginUtils; });
}

PluginUtils::PluginUtils() : _pluginManager(PluginManager::GetInstance()) {}

void PluginUtils::nativeStartup() {
    PluginManager::GetInstance()->Startup();
}

void PluginUtils::nativePostStartup() {
    PluginManager::GetInstance()->PostStartup();
}

void PluginUtils::nativePreShutdown() {
    PluginManager::GetInstance()->PreShutdown();
}

void PluginUtils::nativeShutdown() {
    PluginManager::GetInstance()->Shutdown();
}

namespace {

// The shared instance is the only one that the process can reach, so the methods ask for it and not for `self`.
template <void (PluginUtils::*Operation)()>
void* Call(orvane_object*, const char*, void* const*) {
    (PluginUtils::sharedInstance()->*Operation)();
    return nullptr;
}

void* SetNativePluginManager(orvane_object*, const char*, void* const* arguments) {
    if (arguments) PluginUtils::sharedInstance()->setNativePluginManager(static_cast<IPluginManager*>(arguments[0]));
    return nullptr;
}

void* GetNativePluginManager(orvane_object*, const char*, void* const*) {
    return PluginUtils::sharedInstance()->getNativePluginManager();
}

void* SharedInstance(orvane_object*, const char*, void* const*) {
    static orvane_object shared = {orvane_class_lookup("PluginUtils"), nullptr};
    return &shared;
}

}  // namespace

void Quern::RegisterPluginUtilsClasses() {
    RegisterRunTimeClass("PluginUtils",
                         {{"setNativePluginManager:", SetNativePluginManager},
                          {"getNativePluginManager", GetNativePluginManager},
                          {"nativeStartup", Call<&PluginUtils::nativeStartup>},
                          {"nativePostStartup", Call<&PluginUtils::nativePostStartup>},
                          {"nativePreShutdown", Call<&PluginUtils::nativePreShutdown>},
                          {"nativeShutdown", Call<&PluginUtils::nativeShutdown>}},
                         {{"sharedInstance", SharedInstance}});
    RegisterRunTimeClass("PluginUtilsWrapper", {{"setNativePluginManager:", SetNativePluginManager},
                                                {"getNativePluginManager", GetNativePluginManager}});
}
