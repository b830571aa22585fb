#include "Storage/Bundle/BundleImpl.h"

#include <cstring>
#include <utility>

#include "Base/Assert.h"
#include "Base/ProjectName.h"
#include "Base/XLog.h"
#include "Storage/Bundle/GameId.h"
#include "Storage/Bundle/SolidConfigReader.h"

namespace Quern {
namespace {

constexpr char kSeparator[] = ",";

const char* SameSection(const char* section) {
    return section;
}

AString JoinElements(const Value& array) {
    AString text;
    bool isFirst = true;
    for (ValueConstIterator at = array.begin(), end = array.end(); at != end; ++at) {
        if (!isFirst) text += kSeparator;
        isFirst = false;
        text += (*at).asString();
    }
    return text;
}

// Makes `value` an array of the parts of a text. False, and it stays, for a text that has just one.
bool SplitInto(Value& value, const AString& text) {
    AArray parts;
    AString::Split(&parts, text.c_str(), kSeparator);
    if (parts.Count() < 2) return false;
    value = Value(ArrayValue);
    for (int i = 0; i < parts.Count(); ++i)
        value[i] = Value(parts.CStringAtIndex(i));
    return true;
}

}  // namespace

BundleImpl::Batch::Batch(BundleImpl& bundle) : _ini(bundle._ini.get()) {
    if (_ini) _ini->BeginBatch();
}

BundleImpl::Batch::~Batch() {
    Commit();
}

bool BundleImpl::Batch::Commit() {
    IniBundle* const ini = std::exchange(_ini, nullptr);
    return !ini || ini->EndBatch();
}

const char* BundleImpl::_ConvertSection(const char* section) {
    const bool isGame = section && strcmp(section, GameId()) == 0;
    return isGame ? "OrvaneGame" : section;
}

bool BundleImpl::Set(const char* section, const char* key, int value) {
    return _ini && _ini->Set(section, key, value);
}

bool BundleImpl::Set(const char* section, const char* key, long long value) {
    return _ini && _ini->Set(section, key, value);
}

bool BundleImpl::Set(const char* section, const char* key, const char* value) {
    return _ini && _ini->Set(section, key, value);
}

bool BundleImpl::Set(const char* section, const char* key, bool value) {
    return _ini && _ini->Set(section, key, value);
}

bool BundleImpl::Set(const char* key, int value) {
    return Set(ProjectName(), key, value);
}

bool BundleImpl::Set(const char* key, long long value) {
    return Set(ProjectName(), key, value);
}

bool BundleImpl::Set(const char* key, const char* value) {
    return Set(ProjectName(), key, value);
}

bool BundleImpl::Set(const char* key, bool value) {
    return Set(ProjectName(), key, value);
}

template <typename Result, typename Default>
Result BundleImpl::Read(const char* section, const char* key, Default defaultValue,
                        const char* (*manifestSection)(const char*),
                        Result (*readManifest)(const char*, const char*, Default)) {
    if (_ini) {
        bool found = false;
        Result value = _ini->Get(section, key, defaultValue, found);
        if (found) return value;
    }
    return readManifest(manifestSection(section), key, defaultValue);
}

AString BundleImpl::ReadText(const char* section, const char* key, const char* defaultValue,
                             const char* (*manifestSection)(const char*)) {
    if (_ini) {
        bool found = false;
        AString value = _ini->Get(section, key, static_cast<const char*>(nullptr),
                                  found);  // a text that is found never is the default
        if (found) return value;
    }
    return SolidConfigReader::GetString(manifestSection(section), key, defaultValue);
}

long long BundleImpl::Get(const char* section, const char* key, long long defaultValue) {
    return Read(section, key, defaultValue, _ConvertSection, SolidConfigReader::GetInt64);
}

int BundleImpl::Get(const char* section, const char* key, int defaultValue) {
    bool found = false;
    const int value = _ini ? _ini->Get(section, key, defaultValue, found) : defaultValue;
    if (value != defaultValue) return value;
    return SolidConfigReader::GetInt(_ConvertSection(section), key, defaultValue);
}

AString BundleImpl::Get(const char* section, const char* key, const char* defaultValue) {
    return ReadText(section, key, defaultValue, _ConvertSection);
}

bool BundleImpl::Get(const char* section, const char* key, bool defaultValue) {
    return Read(section, key, defaultValue, _ConvertSection, SolidConfigReader::GetBool);
}

long long BundleImpl::Get(const char* key, long long defaultValue) {
    return Read(ProjectName(), key, defaultValue, SameSection, SolidConfigReader::GetInt64);
}

int BundleImpl::Get(const char* key, int defaultValue) {
    return Read(ProjectName(), key, defaultValue, SameSection, SolidConfigReader::GetInt);
}

AString BundleImpl::Get(const char* key, const char* defaultValue) {
    return ReadText(ProjectName(), key, defaultValue, SameSection);
}

bool BundleImpl::Get(const char* key, bool defaultValue) {
    return Read(ProjectName(), key, defaultValue, SameSection, SolidConfigReader::GetBool);
}

bool BundleImpl::Set(const Value& value) {
    if (!value.isObject()) {
        ORVANE_LOG_ERROR("Value is not Object type");
        return false;
    }
    for (ValueConstIterator at = value.begin(), end = value.end(); at != end; ++at) {
        if ((*at).isObject())
            Set(at.memberName(), *at);
        else
            ORVANE_LOG_ERROR("Value is not Object type");
    }
    return true;
}

bool BundleImpl::Set(const char* section, const Value& value) {
    if (value.isNull()) {
        ORVANE_LOG_INFO("value is null");
        return true;
    }
    if (!value.isObject()) {
        ORVANE_LOG_ERROR("Value is not Object type");
        return false;
    }
    for (ValueConstIterator at = value.begin(), end = value.end(); at != end; ++at) {
        const Value& member = *at;
        if (member.isObject())
            ORVANE_LOG_ERROR("Bundle unsupport Object type");
        else
            Set(section, at.memberName(), (member.isArray() ? JoinElements(member) : member.asString()).c_str());
    }
    return true;
}

bool BundleImpl::Get(const char* section, Value& value) {
    if (!section) return false;
    AArray keys;
    GetAllKeys(section, &keys);
    if (keys.Count() == 0) return false;
    for (int i = 0; i < keys.Count(); ++i) {
        const char* const key = keys.CStringAtIndex(i);
        const AString text = Get(section, key, "");
        Value parts;
        if (SplitInto(parts, text))
            value[key] = std::move(parts);
        else
            set(value, key, text);
    }
    return true;
}

bool BundleImpl::Get(const char* section, const char* key, Value& value) {
    if (!key) return false;
    const AString text = Get(section, key, "");
    if (text.Empty()) return false;
    if (!SplitInto(value, text)) set(value, key, text);
    return true;
}

void BundleImpl::set(Value& out, const char* key, const AString& text) {
    ORVANE_ASSERT(key != nullptr);
    if (text.IsNumberic())
        out[key] = text.IsReal() ? Value(text.AsDouble()) : Value(text.AsInt64());
    else if (!text.Empty())
        out[key] = Value(text.c_str());
}

bool BundleImpl::RemoveSection(const char* section) {
    return _ini && _ini->RemoveSection(section);
}

bool BundleImpl::RemoveValueForKey(const char* section, const char* key) {
    return _ini && _ini->RemoveValueForKey(section, key);
}

bool BundleImpl::RemoveAll() {
    return _ini && _ini->RemoveAll();
}

void BundleImpl::GetAllKeys(const char* section, AArray* keys) {
    if (!keys) return;
    const int before = keys->Count();
    if (_ini) _ini->GetAllKeys(section, keys);
    if (keys->Count() == before) SolidConfigReader::GetAllKeys(section, keys);
}

bool BundleImpl::IsContainKey(const char* section, const char* key) {
    return _ini ? _ini->IsContainKey(section, key) : SolidConfigReader::IsContainKey(section, key);
}

bool BundleImpl::SaveCacheToFile() {
    return _ini && _ini->SaveCacheToFile();
}

bool BundleImpl::SetCache(const char* section, const char* key, int value) {
    return _ini && _ini->SetCache(section, key, value);
}

bool BundleImpl::SetCache(const char* section, const char* key, long long value) {
    return _ini && _ini->SetCache(section, key, value);
}

bool BundleImpl::SetCache(const char* section, const char* key, const char* value) {
    return _ini && _ini->SetCache(section, key, value);
}

bool BundleImpl::SetCache(const char* section, const char* key, bool value) {
    return _ini && _ini->SetCache(section, key, value);
}

bool BundleImpl::RemoveCacheSection(const char* section) {
    return _ini && _ini->RemoveCacheSection(section);
}

bool BundleImpl::RemoveCacheAll() {
    return _ini && _ini->RemoveCacheAll();
}

bool BundleImpl::RemoveCacheValueForKey(const char* section, const char* key) {
    return _ini && _ini->RemoveCacheValueForKey(section, key);
}

AString BundleImpl::GetMetaString(const char* section, const char* key, const char* defaultValue) {
    return SolidConfigReader::GetMetaString(section, key, defaultValue);
}

bool BundleImpl::SetIfDifferent(const char* section, const char* key, const char* value) {
    return _ini && _ini->SetIfDifferent(section, key, value);
}

}  // namespace Quern
