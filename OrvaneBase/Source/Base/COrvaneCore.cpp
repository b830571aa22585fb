#include "Base/COrvaneCore.h"

#include "Base/Configure/Configure.h"
#include "Base/MakeOnce.h"
#include "Base/XLog.h"
#include "Orvane/IBase.h"
#include "Orvane/OrvaneCore.h"

namespace Orvane {

IOrvaneCore* IOrvaneCore::GetInstance() {
    return COrvaneCore::GetInstance();
}

std::atomic<COrvaneCore*> COrvaneCore::s_pInstance{nullptr};

// The greeting is logged when the object stands, so that a log callback that hears it, or another thread, finds the
// object and does not make another.
COrvaneCore* COrvaneCore::GetInstance() {
    if (COrvaneCore* const instance = s_pInstance.load(std::memory_order_acquire)) return instance;
    Quern::IBase::GetInstance();
    COrvaneCore* made = nullptr;
    COrvaneCore* const instance = Quern::MakeOnce(s_pInstance, [&made] { return made = new COrvaneCore; });
    if (instance == made)
        ORVANE_LOG_EVENT("Hello OrvaneCore! OS_TYPE:%s, Version:%s, VersionHash:%s", "iOS", orvanecore_get_version(),
                         orvanecore_get_version_hash());
    return instance;
}

void COrvaneCore::ReleaseInstance() {}

COrvaneCore::~COrvaneCore() {
    COrvaneCore* self = this;
    if (!s_pInstance.compare_exchange_strong(self, nullptr)) return;  // made, but another one was faster
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
