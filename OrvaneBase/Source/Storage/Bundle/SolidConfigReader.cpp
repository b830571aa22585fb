#include "Storage/Bundle/SolidConfigReader.h"

#include "Base/XLog.h"
#include "Storage/Bundle/InfoDictionary.h"

namespace Quern {
namespace {

// What an operation logs, with the section's name. Several share the name of another.
struct Messages {
    const char* missing;
    const char* notDictionary;
};

constexpr const char* kNotDictionary =
    "SolidConfigReader::GetString section:%s is not a Dictionary, return defaultvalue, please Check info.plist!";
constexpr Messages kGetInt{"SolidConfigReader::GetInt section:%s not exist, return defaultvalue", kNotDictionary};
constexpr Messages kGetString{"SolidConfigReader::GetString section:%s not exist, return defaultvalue", kNotDictionary};
constexpr Messages kGetBool{"SolidConfigReader::GetBool section:%s not exist, return defaultvalue", kNotDictionary};
constexpr Messages kGetAllKeys{
    "SolidConfigReader::GetAllKeys section:%s not exist",
    "SolidConfigReader::GetAllKeys section:%s is not a Dictionary, please Check info.plist!"};
constexpr Messages kIsContainKey{
    "SolidConfigReader::IsContainKey section:%s not exist, return false",
    "SolidConfigReader::IsContainKey section:%s is not a Dictionary, return false, please Check info.plist!"};

// The section's dictionary, or null with a line that says why.
const InfoValue* FindSection(const char* section, const Messages& messages) {
    const InfoValue* found = InfoDictionary::Current().Root().Find(section);
    if (!found) {
        ORVANE_LOG_DEBUG(messages.missing, section);
        return nullptr;
    }
    if (!found->IsDictionary()) {
        ORVANE_LOG_ERROR(messages.notDictionary, section);
        return nullptr;
    }
    return found;
}

const InfoValue* FindValue(const char* section, const char* key, const Messages& messages) {
    if (!section || !key) return nullptr;
    const InfoValue* dictionary = FindSection(section, messages);
    return dictionary ? dictionary->Find(key) : nullptr;
}

}  // namespace

int SolidConfigReader::GetInt(const char* section, const char* key, int defaultValue) {
    const InfoValue* value = FindValue(section, key, kGetInt);
    return value && value->IsNumber() ? value->IntValue() : defaultValue;
}

long long SolidConfigReader::GetInt64(const char* section, const char* key, long long defaultValue) {
    const InfoValue* value = FindValue(section, key, kGetBool);
    return value && value->IsConvertible() ? value->LongLongValue() : defaultValue;
}

bool SolidConfigReader::GetBool(const char* section, const char* key, bool defaultValue) {
    const InfoValue* value = FindValue(section, key, kGetBool);
    return value && value->IsConvertible() ? value->BoolValue() : defaultValue;
}

AString SolidConfigReader::GetString(const char* section, const char* key, const char* defaultValue) {
    if (!section || !key || !defaultValue) return {};
    const InfoValue* value = FindValue(section, key, kGetString);
    return value && value->Text() ? value->Text()->c_str() : defaultValue;
}

void SolidConfigReader::GetAllKeys(const char* section, AArray* keys) {
    if (!section || !keys) return;
    const InfoValue* dictionary = FindSection(section, kGetAllKeys);
    if (!dictionary) return;
    for (const InfoValue::Entry& entry : std::get<InfoValue::Dictionary>(dictionary->value))
        keys->Add(entry.key.c_str());
}

bool SolidConfigReader::IsContainKey(const char* section, const char* key) {
    return FindValue(section, key, kIsContainKey) != nullptr;
}

}  // namespace Quern
