#include "Orvane/IBase.h"

#include "Base/QuernCommon.h"
#include "Orvane/OrvaneCore.h"

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
    delete s_pInstance;
    s_pInstance = nullptr;
}

}  // namespace Quern
