#include "Orvane/IBase.h"

#include "Base/QuernCommon.h"
#include "Base/XLog.h"
#include "Orvane/IPlatformObjectManager.h"
#include "Orvane/OrvaneCore.h"
#include "Orvane/PlatformObject.h"
// The take-down reaches up to what stands on the base.
#include "System/Application/CApplication.h"

namespace Quern {

IBase* IBase::s_pInstance = nullptr;

IBase* IBase::GetInstance() {
    if (!s_pInstance) s_pInstance = new IBase;
    return s_pInstance;
}

IBase::~IBase() {
    QuernCommon::ReleaseInstance();
}

void IBase::Release() {
    OnApplicationQuit();
    Quern_EndUIThread();
    ORVANE_LOG_INFO("IArborObjectManager::DestroyAll");
    IPlatformObjectManager::DestroyAll();
    ORVANE_LOG_INFO("CPlatformObject::ClearEnvironment");
    CPlatformObject::ClearEnvironment();  // after the objects: one that is being destroyed may still send
    CApplication::ReleaseInstance();
    delete s_pInstance;
    s_pInstance = nullptr;
}

}  // namespace Quern
