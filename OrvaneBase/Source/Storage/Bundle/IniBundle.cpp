#include "Storage/Bundle/IniBundle.h"

#include <strings.h>

#include <cstring>

#include "Base/Assert.h"
#include "Base/XLog.h"
#include "Storage/File/CPath.h"

namespace Quern {
namespace {

constexpr char kDefaultName[] = "Orvane";

AString DefaultPath() {
    const char* cache = CPath::GetCachePath();
    if (AString::IsNullOrEmpty(cache)) {
        ORVANE_LOG_INFO("CachePath is empty, do not use bundle in JNI_ONLoad!!!");
        ORVANE_ASSERT(false);
    }
    AString path;
    CPath::GetSubPath(path, cache, (AString(kDefaultName) + ".config").c_str());
    return path;
}

}  // namespace

IniBundle::IniBundle(const char* path) {
    const AString whole = path && strcmp(path, kDefaultName) != 0 ? AString(path) : DefaultPath();
    _file.reset(IniFile::CreateEncrptedFile(whole.c_str()));
    _file->Load();  // the new object has read the file as plain text; this one deciphers it if need be
}

bool IniBundle::Set(const char* section, const char* key, long long value) {
    return SaveIf(SetCache(section, key, value));
}

bool IniBundle::Set(const char* section, const char* key, int value) {
    return SaveIf(SetCache(section, key, value));
}

bool IniBundle::Set(const char* section, const char* key, const char* value) {
    return SaveIf(SetCache(section, key, value));
}

bool IniBundle::Set(const char* section, const char* key, bool value) {
    return SaveIf(SetCache(section, key, value));
}

long long IniBundle::Get(const char* section, const char* key, long long defaultValue, bool& found) {
    found = false;
    return _file ? _file->ReadLongLong(section, key, defaultValue, found) : defaultValue;
}

int IniBundle::Get(const char* section, const char* key, int defaultValue, bool& found) {
    found = false;
    return _file ? _file->ReadInt(section, key, defaultValue, found) : defaultValue;
}

AString IniBundle::Get(const char* section, const char* key, const char* defaultValue, bool& found) {
    found = false;
    return _file ? _file->ReadString(section, key, defaultValue, found) : AString(defaultValue);
}

bool IniBundle::Get(const char* section, const char* key, bool defaultValue, bool& found) {
    found = false;
    if (!_file) return defaultValue;
    const AString text = _file->ReadString(section, key, "", found);
    return text.Empty() ? defaultValue : strcasecmp(text.c_str(), "TRUE") == 0;
}

bool IniBundle::RemoveSection(const char* section) {
    return SaveIf(RemoveCacheSection(section));
}

bool IniBundle::RemoveValueForKey(const char* section, const char* key) {
    return !_file || SaveIf(RemoveCacheValueForKey(section, key));
}

void IniBundle::GetAllKeys(const char* section, AArray* keys) {
    if (_file) _file->GetAllKeys(section, keys);
}

bool IniBundle::IsContainKey(const char* section, const char* key) {
    return _file && _file->IsContainKey(section, key);
}

bool IniBundle::RemoveAll() {
    return SaveIf(RemoveCacheAll());
}

bool IniBundle::LoadFileToCache() {
    return _file && _file->Load();
}

bool IniBundle::SaveCacheToFile() {
    return _file && _file->Save();
}

bool IniBundle::SetCache(const char* section, const char* key, long long value) {
    return _file && _file->WriteLongLong(section, key, value);
}

bool IniBundle::SetCache(const char* section, const char* key, int value) {
    return _file && _file->WriteInt(section, key, value);
}

bool IniBundle::SetCache(const char* section, const char* key, const char* value) {
    return _file && _file->WriteString(section, key, value);
}

bool IniBundle::SetCache(const char* section, const char* key, bool value) {
    return _file && _file->WriteInt(section, key, value ? 1 : 0);
}

bool IniBundle::RemoveCacheSection(const char* section) {
    return _file && _file->RemoveSection(section);
}

bool IniBundle::RemoveCacheValueForKey(const char* section, const char* key) {
    return _file && _file->RemoveKey(section, key);
}

bool IniBundle::RemoveCacheAll() {
    return _file && _file->RemoveAll();
}

bool IniBundle::SetIfDifferent(const char* section, const char* key, const char* value) {
    bool isUnsaved = false;
    return _file && _file->ReplaceString(section, key, value, isUnsaved) && (!isUnsaved || _file->Save());
}

void IniBundle::BeginBatch() {
    if (_file) _file->BeginBatch();
}

bool IniBundle::EndBatch() {
    return !_file || _file->EndBatch();
}

}  // namespace Quern
