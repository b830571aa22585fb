#include "Orvane/IBase.h"

#include <atomic>

#include "Base/MakeOnce.h"
#include "Base/QuernCommon.h"
#include "Base/XLog.h"
#include "Orvane/IPlatformObjectManager.h"
#include "Orvane/OrvaneCore.h"
#include "Orvane/PlatformObject.h"
// The take-down reaches up to what stands on the base.
#include "System/Application/CApplication.h"

namespace Quern {

namespace {

std::atomic<IBase*> g_instance{nullptr};

}  // namespace

IBase* IBase::GetInstance() {
    return MakeOnce(g_instance, [] { return new IBase; });
}

IBase::~IBase() {
    IBase* self = this;
    if (g_instance.compare_exchange_strong(self, nullptr)) QuernCommon::ReleaseInstance();  // else another was faster
}

void IBase::Release() {
    OnApplicationQuit();
    Quern_EndUIThread();
    ORVANE_LOG_INFO("IArborObjectManager::DestroyAll");
    IPlatformObjectManager::DestroyAll();
    ORVANE_LOG_INFO("CPlatformObject::ClearEnvironment");
    CPlatformObject::ClearEnvironment();  // after the objects: one that is being destroyed may still send
    CApplication::ReleaseInstance();
    delete g_instance.load();
}

}  // namespace Quern
