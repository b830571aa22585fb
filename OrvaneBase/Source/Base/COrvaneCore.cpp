#include "Base/COrvaneCore.h"

#include "Base/Configure/Configure.h"
#include "Base/XLog.h"
#include "Orvane/IBase.h"
#include "Orvane/OrvaneCore.h"

namespace Orvane {

IOrvaneCore* IOrvaneCore::GetInstance() {
    return COrvaneCore::GetInstance();
}

COrvaneCore* COrvaneCore::s_pInstance = nullptr;

COrvaneCore* COrvaneCore::GetInstance() {
    if (!s_pInstance) s_pInstance = new COrvaneCore;
    return s_pInstance;
}

void COrvaneCore::ReleaseInstance() {}

COrvaneCore::COrvaneCore() {
    Quern::IBase::GetInstance();
    ORVANE_LOG_EVENT("Hello OrvaneCore! OS_TYPE:%s, Version:%s, VersionHash:%s", "iOS", orvanecore_get_version(),
                     orvanecore_get_version_hash());
}

COrvaneCore::~COrvaneCore() {
    ORVANE_LOG_EVENT("COrvaneCore::~COrvaneCore(), start");
    Quern::IBase::Release();
    ORVANE_LOG_EVENT("COrvaneCore::~COrvaneCore(), end");
}

int COrvaneCore::Initialize() {
    return 0;
}

void COrvaneCore::SetLogLevel(int level) {
    Quern::SetQuernLogLevel(static_cast<ALogPriority>(level));
}

const char* COrvaneCore::GetVersion() {
    return orvanecore_get_version();
}

void COrvaneCore::SetRemoteConfigUrl(const char* url) {
    Configure::GetInstance()->SetUrl(url);
}

void COrvaneCore::ClearRemoteConfigCache() {
    Configure::GetInstance()->Clear();
}

}  // namespace Orvane
