#include "System/System/CSystem.h"

#include <atomic>
#include <cctype>
#include <cstdlib>
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

namespace Quern {
namespace {

using Cell = std::atomic<const char*>;

Cell g_Udid, g_BundleId, g_Model, g_SysVersion, g_appVersion;

// The data plugin's answer, else the cell's, else what `find` gets from the platform; a text that was found is kept.
// Of two threads that fill a cell at a time the second gives way.
template <typename Find>
const char* Answer(const char* (*unified)(), Cell& cell, Find find, const char* fallback) {
    if (const char* answer = unified()) return answer;
    if (const char* kept = cell.load(std::memory_order_acquire)) return kept;
    const std::string found = find();
    if (found.empty()) return fallback;
    char* const copy = strdup(found.c_str());
    const char* kept = nullptr;
    if (cell.compare_exchange_strong(kept, copy, std::memory_order_acq_rel)) return copy;
    free(copy);
    return kept;
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
    return Answer(CSystemUnify::GetUdid, g_Udid, find, "F");
}

const char* CSystem::GetBundleId() {
    const auto find = [] {
        const std::string* id = ManifestText("CFBundleIdentifier");
        return id ? *id : std::string();
    };
    return Answer(CSystemUnify::GetBundleId, g_BundleId, find, "UNKNOWN");
}

const char* CSystem::GetModel() {
    return Answer(
        CSystemUnify::GetModel, g_Model, [] { return DeviceFacts::Current().Model(); }, "");
}

const char* CSystem::GetSysVersion() {
    return Answer(
        CSystemUnify::GetSysVersion, g_SysVersion, [] { return DeviceFacts::Current().SystemVersion(); }, "N");
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
