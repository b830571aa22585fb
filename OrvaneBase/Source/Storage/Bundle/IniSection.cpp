#include "Storage/Bundle/IniSection.h"

#include <algorithm>
#include <utility>

#include "Base/Container/TrimBlanks.h"

namespace Quern {

IniSection::IndexedLine IniSection::Parse(std::string text) {
    IndexedLine line{std::move(text)};
    const size_t assignment = line.text.starts_with('[') ? std::string::npos : line.text.find('=');
    if (assignment == std::string::npos) return line;
    const std::string_view key = TrimBlanks(std::string_view(line.text).substr(0, assignment));
    line.assignment = assignment;
    line.keyAt = key.empty() ? 0 : static_cast<size_t>(key.data() - line.text.data());
    line.keyLength = key.size();
    return line;
}

bool IniSection::KeyOf(size_t at, std::string_view& key) const {
    key = _lines[at].Key();
    return _lines[at].assignment != kNone;
}

bool IniSection::IsBefore(size_t line, std::string_view key, size_t otherLine) const {
    const int order = _lines[line].Key().compare(key);
    return order < 0 || (order == 0 && line < otherLine);
}

IniSection::Index::iterator IniSection::EntryOf(std::string_view key, size_t line) {
    return std::lower_bound(_byKey.begin(), _byKey.end(), line,
                            [this, key](uint32_t entry, size_t wanted) { return IsBefore(entry, key, wanted); });
}

size_t IniSection::Find(std::string_view key) const {
    const auto entry =
        std::lower_bound(_byKey.begin(), _byKey.end(), key,
                         [this](uint32_t line, std::string_view wanted) { return _lines[line].Key() < wanted; });
    return entry != _byKey.end() && _lines[*entry].Key() == key ? *entry : kNone;
}

void IniSection::Append(IndexedLine line) {
    const size_t at = Size();
    _lines.push_back(std::move(line));
    if (_lines[at].assignment == kNone) return;
    const std::string_view key = _lines[at].Key();
    const bool isLast = _byKey.empty() || IsBefore(_byKey.back(), key, at);  // as keys mostly come in order
    _byKey.insert(isLast ? _byKey.end() : EntryOf(key, at), static_cast<uint32_t>(at));
}

void IniSection::InsertBeforeLast(std::string line) {
    IndexedLine last = _lines.back();
    Erase(Size() - 1);
    Append(Parse(std::move(line)));
    Append(std::move(last));
}

void IniSection::Erase(size_t at) {
    if (_lines[at].assignment != kNone) _byKey.erase(EntryOf(_lines[at].Key(), at));
    _lines.erase(_lines.begin() + static_cast<std::ptrdiff_t>(at));
    for (uint32_t& entry : _byKey)
        if (entry > at) --entry;
}

}  // namespace Quern
