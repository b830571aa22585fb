#include "PluginManager/InnerPlugin/CrashReportEntry.h"

#include <json/value.h>

#include <atomic>

#include "Orvane/OrvaneCore.h"
#include "Storage/Defaults/UserDefaults.h"

namespace Orvane::Plugin {
namespace {

// Both names are the crash-report SDK's: it looks every SDK up under a key of its own in that one dictionary.
constexpr char kInfosKey[] = "FennelSDKInfos";
constexpr char kSdkKey[] = "4be17c90fd";

}  // namespace

void registerFennel() {
    static std::atomic<bool> isDone{false};
    if (isDone.exchange(true)) return;
    const char* const version = orvanecore_get_version();
    if (!version) return;
    Json::Value infos = Quern::UserDefaults::Current().Dictionary(kInfosKey);
    infos[kSdkKey] = version;
    Quern::UserDefaults::Current().SetDictionary(kInfosKey, infos);
}

}  // namespace Orvane::Plugin
