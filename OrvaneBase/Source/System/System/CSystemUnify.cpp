#include "System/System/CSystemUnify.h"

#include <atomic>
#include <cstdlib>

#include "Base/Configure/OrvaneCoreRemoteConfig.h"
#include "PluginManager/InnerPlugin/OrvaneCoreReportService.h"
#include "System/System/FoundText.h"

namespace Quern {
namespace {

constexpr unsigned int kAnswerSize = 2048;

// The setting, kept from its first read. No lock is held over that: it may log, and log callbacks may come back here.
enum class Unified { kUndecided, kNo, kYes };
constinit std::atomic<Unified> g_unified{Unified::kUndecided};

bool IsUnified() {
    if (g_unified.load(std::memory_order_relaxed) == Unified::kUndecided) {
        const bool read = Orvane::OrvaneCoreRemoteConfig::GetInstance()->GetBool("UnifyDeviceInfo", false);
        Unified undecided = Unified::kUndecided;  // whoever was first decides
        g_unified.compare_exchange_strong(undecided, read ? Unified::kYes : Unified::kNo, std::memory_order_relaxed);
    }
    return g_unified.load(std::memory_order_relaxed) == Unified::kYes;
}

}  // namespace

const char* CSystemUnify::getDeviceInfo(const char* key) {
    if (!IsUnified()) return nullptr;
    Orvane::Plugin::IReportService* service = Orvane::Plugin::FindReportService();
    if (!service) return nullptr;
    // One byte more than the plugin may fill: an answer that fills its buffer is a text all the same.
    char* buffer = static_cast<char*>(calloc(1, kAnswerSize + 1));
    if (buffer && service->GetDeviceInfo(key, &buffer, kAnswerSize) <= 1) return buffer;
    free(buffer);
    return nullptr;
}

#define ORVANE_UNIFIED(Getter, key)                         \
    const char* CSystemUnify::Getter() {                    \
        static constinit FoundText kept;                    \
        return kept.Get([] { return getDeviceInfo(key); }); \
    }
ORVANE_UNIFIED(GetUdid, "UUID")
ORVANE_UNIFIED(GetBundleId, "BundleId")
ORVANE_UNIFIED(GetModel, "Model")
ORVANE_UNIFIED(GetSysVersion, "SysVersion")
ORVANE_UNIFIED(GetAppVersion, "AppVersion")
ORVANE_UNIFIED(GetDeviceBrand, "Brand")
#undef ORVANE_UNIFIED

}  // namespace Quern
