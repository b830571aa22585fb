#include "Storage/Bundle/CIniFileImpl.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>
#include <system_error>
#include <utility>

#include "Base/Assert.h"
#include "Base/LogCallback.h"
#include "Base/XLog.h"
#include "Storage/File/CFile.h"
#include "Storage/File/FileReplacement.h"
#include "Storage/File/GetLine.h"
#include "System/Thread/Time.h"

namespace Quern {
namespace {

// The line names ReadString, whichever read was called.
void LogNullName() {
    const ReadReportScope reporting;
    if (!IsLogFiltered(kLogError)) XLog(kLogError, __FILE__, __LINE__, "ReadString", "s == NULL || key == NULL");
}

// Whether what cannot be opened is to be removed. Not where there was nothing: another opener may have saved a file by
// now.
bool IsInTheWay(const char* path, int error) {
    std::error_code ignored;
    return error != ENOENT || std::filesystem::is_symlink(path, ignored);
}

}  // namespace

CIniFileImpl::CIniFileImpl(const char* path) : _path(path) {
    const long long begin = CTime::GetTimeTick();
    if (!CIniFileImpl::Load() && IsInTheWay(_path.c_str(), errno)) CFile::Remove(_path.c_str());
    ORVANE_CONSOLE(kLogInfo, "load config file cost %lld us", CTime::GetTimeTick() - begin);
}

CIniFileImpl::~CIniFileImpl() {
    CIniFileImpl::Save();
}

bool CIniFileImpl::Load() {
    const CCritical guard(&_mutex);
    const std::unique_ptr<FILE, int (*)(FILE*)> file(fopen(_path.c_str(), "rb"), fclose);
    if (!file) return false;
    IniText loaded;
    AString line;
    for (int length; (length = getline(file.get(), line)) >= 0;)
        loaded.AddLine({line.c_str(), static_cast<size_t>(length)});
    NoteLoaded(std::move(loaded));
    return true;
}

bool CIniFileImpl::Save() {
    const CCritical guard(&_mutex);
    if (PutOffSave()) return true;
    const IniText lines = _text.Publish();
    std::string text = lines.Join('\n');
    if (!lines.Empty()) text += '\n';
    FileReplacement file(_path.c_str());
    if (file.Prepare(text) && file.PutInPlace()) NoteSaved();
    return true;
}

AString CIniFileImpl::ReadString(const char* section, const char* key, const char* defaultValue) {
    bool found = false;
    return ReadString(section, key, defaultValue, found);
}

AString CIniFileImpl::ReadString(const char* section, const char* key, const char* defaultValue, bool& found) {
    if (!section || !key) {
        LogNullName();
        found = false;
        return {};
    }
    return _text.Read([&](const IniText& lines) {
        std::string_view value;
        found = lines.Find(section, key, value);
        return found ? AString(value.data(), static_cast<int>(value.size())) : AString(defaultValue);
    });
}

template <typename Number>
Number CIniFileImpl::ReadNumber(const char* section, const char* key, Number defaultValue, bool& found) {
    if (!section || !key) {
        LogNullName();
        found = false;
        return defaultValue;
    }
    return _text.Read([&](const IniText& lines) {
        std::string_view value;
        found = lines.Find(section, key, value);
        if (!found || value.empty()) return defaultValue;
        // Reads as a stream does, up to the first character that cannot belong to a number; what stands behind the
        // value in its line begins with such a character. A number that does not fit gives the nearest limit.
        const long long number = strtoll(value.data(), nullptr, 10);
        if (number > std::numeric_limits<Number>::max()) return std::numeric_limits<Number>::max();
        if (number < std::numeric_limits<Number>::min()) return std::numeric_limits<Number>::min();
        return static_cast<Number>(number);
    });
}

int CIniFileImpl::ReadInt(const char* section, const char* key, int defaultValue) {
    bool found = false;
    return ReadInt(section, key, defaultValue, found);
}

int CIniFileImpl::ReadInt(const char* section, const char* key, int defaultValue, bool& found) {
    return ReadNumber(section, key, defaultValue, found);
}

long long CIniFileImpl::ReadLongLong(const char* section, const char* key, long long defaultValue) {
    bool found = false;
    return ReadLongLong(section, key, defaultValue, found);
}

long long CIniFileImpl::ReadLongLong(const char* section, const char* key, long long defaultValue, bool& found) {
    return ReadNumber(section, key, defaultValue, found);
}

bool CIniFileImpl::WriteString(const char* section, const char* key, const char* value) {
    bool isUnsaved = false;
    return CIniFileImpl::ReplaceString(section, key, value, isUnsaved);
}

template <typename Change>
bool CIniFileImpl::Edit(Change change) {
    const CCritical guard(&_mutex);
    const bool isChanged = _text.Edit(change);
    _isUnsaved = _isUnsaved || isChanged;
    return isChanged;
}

bool CIniFileImpl::ReplaceString(const char* section, const char* key, const char* value, bool& isUnsaved) {
    isUnsaved = false;
    if (!section || !key) return false;
    ORVANE_ASSERT(value != nullptr);
    const CCritical guard(&_mutex);
    Edit([&](IniText& lines) { return lines.Write(section, key, value); });
    isUnsaved = _isUnsaved;
    return true;
}

bool CIniFileImpl::WriteInt(const char* section, const char* key, int value) {
    return WriteString(section, key, std::to_string(value).c_str());
}

bool CIniFileImpl::WriteLongLong(const char* section, const char* key, long long value) {
    return WriteString(section, key, std::to_string(value).c_str());
}

void CIniFileImpl::GetAllKeys(const char* section, AArray* keys) {
    if (!section || !keys) return;
    _text.Read([&](const IniText& lines) {
        for (const std::string_view key : lines.Keys(section))
            keys->Add(new AString(key.data(), static_cast<int>(key.size())), true);
    });
}

bool CIniFileImpl::IsContainKey(const char* section, const char* key) {
    if (!section || !key) return false;
    return _text.Read([&](const IniText& lines) { return lines.HasLine(section, key); });
}

bool CIniFileImpl::RemoveSection(const char* section) {
    if (!section) return false;
    return Edit([&](IniText& lines) { return lines.RemoveSection(section); });
}

bool CIniFileImpl::RemoveKey(const char* section, const char* key) {
    if (!section || !key) return false;
    return Edit([&](IniText& lines) { return lines.RemoveLine(section, key); });
}

bool CIniFileImpl::RemoveAll() {
    return Edit([](IniText& lines) {
        lines.Clear();
        return true;
    });
}

void CIniFileImpl::BeginBatch() {
    const CCritical guard(&_mutex);
    if (++_batches == 1 && !_isUnsaved) _saved = _text.Publish();
    _text.HoldBack();
}

bool CIniFileImpl::EndBatch() {
    const CCritical guard(&_mutex);
    _text.Release();
    if (--_batches > 0) return true;
    const std::optional<IniText> saved = std::exchange(_saved, std::nullopt);
    if (!std::exchange(_isSaveDue, false)) return true;
    if (saved && saved->IsSameInFile(_text.Publish())) {
        NoteSaved();
        return true;
    }
    return Save();
}

void CIniFileImpl::NoteLoaded(IniText text) {
    _text.Replace(std::move(text));
    _isUnsaved = false;
    _saved.reset();
}

bool CIniFileImpl::PutOffSave() {
    if (_batches > 0) _isSaveDue = true;
    return _batches > 0;
}

}  // namespace Quern
