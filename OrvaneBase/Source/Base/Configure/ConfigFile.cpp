#include "Base/Configure/ConfigFile.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <utility>

#include "Base/Assert.h"
#include "Base/MakeOnce.h"
#include "Base/XLog.h"
#include "Storage/Bundle/BundleFactory.h"
#include "Storage/File/CPath.h"

namespace Orvane {
namespace {

using Quern::AString;
using Quern::Bundle;
using Quern::BundleFactory;

constexpr char kDefaultName[] = "Orvane";

std::atomic<ConfigFile*> s_defaultInstance{nullptr};

// The path of a named file; empty for the default one.
AString PathOf(const char* name) {
    if (!name || strcmp(name, kDefaultName) == 0) {
        ORVANE_LOG_INFO("using %s.config", kDefaultName);
        return {};
    }
    ORVANE_LOG_INFO("using %s.config", name);
    const char* const cache = Quern::CPath::GetCachePath();
    if (AString::IsNullOrEmpty(cache)) {
        ORVANE_LOG_INFO("CachePath is empty, do not use bundle in JNI_ONLoad!!!");
        ORVANE_ASSERT(false);
    }
    AString path;
    Quern::CPath::GetSubPath(path, cache, (AString(name) + ".config").c_str());
    return path;
}

Bundle* BundleOf(const AString& path) {
    BundleFactory* const factory = BundleFactory::GetInstance();
    return path.Empty() ? factory->GetDefaultBundle() : factory->GetBundle(path.c_str());
}

// A line in the name of the operation that was called.
void LogError(const char* function, const char* text) {
    if (!Quern::IsLogFiltered(kLogError)) Quern::XLog(kLogError, __FILE__, __LINE__, function, "%s", text);
}

bool IsText(const char* value, const char* function) {
    if (!value) LogError(function, "value is null");
    return value != nullptr;
}

}  // namespace

ConfigFile::ConfigFile(const char* name) : ConfigFile(nullptr, PathOf(name)) {
    _bundle = BundleOf(_path);
}

ConfigFile::ConfigFile(Bundle* bundle, AString path) : _bundle(bundle), _path(std::move(path)) {}

ConfigFile::~ConfigFile() {
    BundleFactory::GetInstance()->DestoryBundle(_path.c_str());
}

ConfigFile* ConfigFile::GetDefaultInstance() {
    return Quern::MakeOnce(s_defaultInstance, [] { return new ConfigFile(nullptr); });
}

bool ConfigFile::HasBundle(const char* function) const {
    if (!_bundle) LogError(function, "_bundle is null");
    return _bundle != nullptr;
}

bool ConfigFile::SetCache(const char* section, const char* key, int value) {
    return HasBundle(__func__) && _bundle->SetCache(section, key, value);
}

bool ConfigFile::SetCache(const char* section, const char* key, long long value) {
    return HasBundle(__func__) && _bundle->SetCache(section, key, value);
}

bool ConfigFile::SetCache(const char* section, const char* key, const char* value) {
    return HasBundle(__func__) && IsText(value, __func__) && _bundle->SetCache(section, key, value);
}

bool ConfigFile::SetCache(const char* section, const char* key, bool value) {
    return HasBundle(__func__) && _bundle->SetCache(section, key, value);
}

bool ConfigFile::RemoveValueForKey(const char* section, const char* key) {
    return HasBundle(__func__) && _bundle->RemoveCacheValueForKey(section, key);
}

bool ConfigFile::RemoveSection(const char* section) {
    return HasBundle(__func__) && _bundle->RemoveCacheSection(section);
}

bool ConfigFile::RemoveAll() {
    return HasBundle(__func__) && _bundle->RemoveCacheAll();
}

bool ConfigFile::SaveCacheToFile() {
    return HasBundle(__func__) && _bundle->SaveCacheToFile();
}

bool ConfigFile::SetAndSave(const char* section, const char* key, int value) {
    return HasBundle(__func__) && _bundle->Set(section, key, value);
}

bool ConfigFile::SetAndSave(const char* section, const char* key, long long value) {
    return HasBundle(__func__) && _bundle->Set(section, key, value);
}

bool ConfigFile::SetAndSave(const char* section, const char* key, const char* value) {
    return HasBundle(__func__) && IsText(value, __func__) && _bundle->Set(section, key, value);
}

bool ConfigFile::SetAndSave(const char* section, const char* key, bool value) {
    return HasBundle(__func__) && _bundle->Set(section, key, value);
}

bool ConfigFile::RemoveValueForKeyAndSave(const char* section, const char* key) {
    return HasBundle(__func__) && _bundle->RemoveValueForKey(section, key);
}

bool ConfigFile::RemoveSectionAndSave(const char* section) {
    return HasBundle(__func__) && _bundle->RemoveSection(section);
}

bool ConfigFile::RemoveAllAndSave() {
    return HasBundle(__func__) && _bundle->RemoveAll();
}

long long ConfigFile::GetFromCache(const char* section, const char* key, long long defaultValue) {
    return HasBundle(__func__) ? _bundle->Get(section, key, defaultValue) : defaultValue;
}

int ConfigFile::GetFromCache(const char* section, const char* key, int defaultValue) {
    return HasBundle(__func__) ? _bundle->Get(section, key, defaultValue) : defaultValue;
}

bool ConfigFile::GetFromCache(const char* section, const char* key, char* buffer, int& length,
                              const char* defaultValue) {
    if (!buffer || length <= 0) {
        ORVANE_LOG_ERROR("len <= 0");
        return false;
    }
    memset(buffer, 0, static_cast<size_t>(length));
    if (!defaultValue) defaultValue = "";
    const bool hasBundle = HasBundle(__func__);
    const AString text = hasBundle ? _bundle->Get(section, key, defaultValue) : AString(defaultValue);
    const bool isWhole = text.length() < length;
    if (!isWhole) ORVANE_LOG_ERROR("cut string");
    length = std::min(text.length(), length - 1);
    memcpy(buffer, text.c_str(), static_cast<size_t>(length));
    return isWhole && hasBundle;
}

bool ConfigFile::GetFromCache(const char* section, const char* key, bool defaultValue) {
    return HasBundle(__func__) ? _bundle->Get(section, key, defaultValue) : defaultValue;
}

bool ConfigFile::IsContainKey(const char* section, const char* key) {
    return HasBundle(__func__) && _bundle->IsContainKey(section, key);
}

void DeleteOrvaneConfigFile(IConfigFile** file) {
    if (!file || !*file) return;
    if (*file != s_defaultInstance.load(std::memory_order_acquire)) delete *file;
    *file = nullptr;
}

}  // namespace Orvane
