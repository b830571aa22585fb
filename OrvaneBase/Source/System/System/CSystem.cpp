#include "System/System/CSystem.h"

#include <atomic>
#include <cctype>
#include <cstring>
#include <string>

#include "Base/Container/AString.h"
#include "Base/XLog.h"
#include "Orvane/OrvaneCore.h"
#include "Serializer/Codec/Md5.h"
#include "Storage/Bundle/BundleFactory.h"
#include "Storage/Bundle/InfoDictionary.h"
#include "System/System/CSystemUnify.h"
#include "System/System/DeviceFacts.h"
#include "System/System/FoundText.h"

namespace Quern {
namespace {

constinit FoundText g_udid, g_bundleId, g_model, g_sysVersion, g_appVersion;

// The data plugin's answer, else what is kept, else what `find` gets from the platform.
template <typename Find>
const char* Answer(const char* (*unified)(), FoundText& kept, Find find, const char* fallback) {
    if (const char* answer = unified()) return answer;
    const char* const text = kept.Get([&find]() -> const char* {
        const std::string found = find();
        return found.empty() ? nullptr : strdup(found.c_str());
    });
    return text ? text : fallback;
}

// A text at the top of the manifest; null if there is none.
const std::string* ManifestText(const char* key) {
    const InfoValue* value = InfoDictionary::Current().Root().Find(key);
    return value ? value->Text() : nullptr;
}

std::string md5WithString(const std::string& text) {
    char digest[kMd5DigestSize], digits[2 * kMd5DigestSize + 1];
    Md5HashBuffer(digest, text.data(), static_cast<int>(text.size()));
    Md5HexString(reinterpret_cast<unsigned char*>(digest), digits);
    for (char& digit : digits)
        digit = static_cast<char>(toupper(digit));
    return digits;
}

std::string ComposeAppVersion() {
    const std::string* version = ManifestText("CFBundleShortVersionString");
    if (!version) return {};
    const std::string* build = ManifestText("CFBundleVersion");
    return build ? *version + "." + *build : *version;
}

bool DecideFirstLaunch() {
    Bundle* bundle = BundleFactory::GetInstance()->GetDefaultBundle();
    bundle->Get("Quern", "AppVersion", "");  // the version of the last start, which decides nothing
    const char* version = CSystem::GetAppVersion();
    if (AString::IsReal(version)) return false;
    bundle->Set("Quern", "AppVersion", version);
    return true;
}

}  // namespace

const char* CSystem::GetUdid() {
    const auto find = [] {
        const std::string id = DeviceFacts::Current().VendorId();
        return id.empty() ? id : md5WithString(id);
    };
    return Answer(CSystemUnify::GetUdid, g_udid, find, "F");
}

const char* CSystem::GetBundleId() {
    const auto find = [] {
        const std::string* id = ManifestText("CFBundleIdentifier");
        return id ? *id : std::string();
    };
    return Answer(CSystemUnify::GetBundleId, g_bundleId, find, "UNKNOWN");
}

const char* CSystem::GetModel() {
    return Answer(
        CSystemUnify::GetModel, g_model, [] { return DeviceFacts::Current().Model(); }, "");
}

const char* CSystem::GetSysVersion() {
    return Answer(
        CSystemUnify::GetSysVersion, g_sysVersion, [] { return DeviceFacts::Current().SystemVersion(); }, "N");
}

const char* CSystem::GetAppVersion() {
    return Answer(CSystemUnify::GetAppVersion, g_appVersion, ComposeAppVersion, "N");
}

const char* CSystem::GetDeviceBrand() {
    return "Apple";
}

bool CSystem::IsDeviceRooted() {
    return DeviceFacts::Current().IsRooted();
}

int CSystem::CheckPermission(int) {
    ORVANE_LOG_WARNING("CheckPermission is deprecated");
    return -1;
}

bool CSystem::IsFirstLaunch() {
    enum : int { kUndecided, kFirst, kLater };
    static std::atomic<int> decided{kUndecided};
    if (decided.load(std::memory_order_relaxed) == kUndecided)
        decided.store(DecideFirstLaunch() ? kFirst : kLater, std::memory_order_relaxed);
    return decided.load(std::memory_order_relaxed) == kFirst;
}

long long CSystem::GetFreeDiskSpace() {
    return DeviceFacts::Current().FreeSpace("/var");
}

}  // namespace Quern

bool Quern_system_GetUUID(char* buffer, int size) {
    ORVANE_LOG_INFO("Quern_system_GetUUID");
    const char* id = Quern::CSystem::GetUdid();
    const size_t length = strlen(id);
    if (!buffer || size < 0 || length >= static_cast<size_t>(size)) {
        ORVANE_LOG_ERROR("Quern_system_GetUUID len>size");
        return false;
    }
    memcpy(buffer, id, length + 1);
    return true;
}

int Quern_system_GetIDFA(char*, int) {
    return 0;
}

bool Quern_system_IsDeviceRooted() {
    return Quern::CSystem::IsDeviceRooted();
}

int Quern_system_CheckPermission(int permission) {
    return Quern::CSystem::CheckPermission(permission);
}
