#include "Storage/Bundle/SolidConfigReader.h"

#include "Base/Container/TrimBlanks.h"
#include "Base/LogCallback.h"
#include "Base/XLog.h"
#include "Storage/Bundle/InfoDictionary.h"

namespace Quern {
namespace {

// What an operation logs, with the section's name. Some of the texts name another operation than their own.
struct Messages {
    const char* operation;
    const char* missing;
    const char* notDictionary;
};

constexpr const char* kNotDictionary =
    "SolidConfigReader::GetString section:%s is not a Dictionary, return defaultvalue, please Check info.plist!";
constexpr const char* kNoSectionForBool = "SolidConfigReader::GetBool section:%s not exist, return defaultvalue";
constexpr Messages kGetInt{"GetInt", "SolidConfigReader::GetInt section:%s not exist, return defaultvalue",
                           kNotDictionary};
constexpr Messages kGetString{"GetString", "SolidConfigReader::GetString section:%s not exist, return defaultvalue",
                              kNotDictionary};
constexpr Messages kGetInt64{"GetInt64", kNoSectionForBool, kNotDictionary};
constexpr Messages kGetBool{"GetBool", kNoSectionForBool, kNotDictionary};
constexpr Messages kGetAllKeys{
    "GetAllKeys", "SolidConfigReader::GetAllKeys section:%s not exist",
    "SolidConfigReader::GetAllKeys section:%s is not a Dictionary, please Check info.plist!"};
constexpr Messages kIsContainKey{
    "IsContainKey", "SolidConfigReader::IsContainKey section:%s not exist, return false",
    "SolidConfigReader::IsContainKey section:%s is not a Dictionary, return false, please Check info.plist!"};

// A line in the name of the operation that was called.
void Report(ALogPriority level, unsigned int line, const char* operation, const char* format, const char* section) {
    const ReadReportScope reporting;
    if (!IsLogFiltered(level)) XLog(level, __FILE__, line, operation, format, section);
}

// The section's dictionary, or null with a line that says why.
const InfoValue* FindSection(const char* section, const Messages& messages) {
    const InfoValue* found = InfoDictionary::Current().Root().Find(section);
    if (!found) {
        Report(kLogDebug, __LINE__, messages.operation, messages.missing, section);
        return nullptr;
    }
    if (!found->IsDictionary()) {
        Report(kLogError, __LINE__, messages.operation, messages.notDictionary, section);
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
    const InfoValue* value = FindValue(section, key, kGetInt64);
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

AString SolidConfigReader::GetStringWithoutBlanks(const char* section, const char* key) {
    const AString text = GetString(section, key, "");
    const std::string_view trimmed = TrimBlanks(text.c_str());
    return AString(trimmed.data(), static_cast<int>(trimmed.size()));
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
