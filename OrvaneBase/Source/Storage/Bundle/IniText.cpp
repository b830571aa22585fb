#include "Storage/Bundle/IniText.h"

#include "Base/Container/TrimBlanks.h"
#include "Storage/Bundle/IniSection.h"

namespace Quern {
namespace {

constexpr size_t kNone = std::string_view::npos;

bool BeginsHeader(std::string_view line) {
    return !line.empty() && line.front() == '[';
}

// The section that a line opens. False for a line that is no header.
bool HeaderName(std::string_view line, std::string_view& name) {
    if (!BeginsHeader(line)) return false;
    const size_t end = line.find(']');
    if (end == kNone) return false;
    name = TrimBlanks(line.substr(1, end - 1));
    return true;
}

// Whether a line can have that key: what stands before a line's first "=", trimmed, is such a text.
bool IsPossibleKey(std::string_view key) {
    return key.empty() || (key.front() != ' ' && key.back() != ' ' && key.find('=') == kNone);
}

std::string HeaderLine(std::string_view section) {
    std::string line(1, '[');
    return line.append(section).append(1, ']');
}

std::string KeyLine(std::string_view key, std::string_view value) {
    std::string line;
    line.reserve(key.size() + 1 + value.size());
    return line.append(key).append(1, '=').append(value);
}

}  // namespace

void IniText::Clear() {
    _sections.clear();
    _names.reset();
}

void IniText::AddLine(std::string_view line) {
    if (!line.empty()) Append(std::string(line));
}

void IniText::Append(std::string line) {
    const bool isHeader = BeginsHeader(line);
    if (_sections.empty()) _sections.push_back(std::make_shared<IniSection>());
    if (isHeader) _sections.push_back(std::make_shared<IniSection>());
    Own(_sections.size() - 1).Append(std::move(line));
    if (isHeader) AddName(_sections.size() - 1);
}

void IniText::AddName(size_t section) {
    std::string_view name;
    if (!HeaderName(_sections[section]->Line(0), name)) return;
    if (!_names)
        _names = std::make_shared<Names>();
    else if (_names.use_count() > 1)
        _names = std::make_shared<Names>(*_names);
    const auto found = _names->find(name);
    (found != _names->end() ? found->second : (*_names)[std::string(name)]).push_back(section);
}

IniSection& IniText::Own(size_t section) {
    std::shared_ptr<IniSection>& owned = _sections[section];
    if (owned.use_count() > 1) owned = std::make_shared<IniSection>(*owned);
    return *owned;
}

template <typename Edit>
void IniText::Rebuild(Edit edit) {
    std::vector<std::vector<std::string>> lines;
    for (const auto& section : _sections) {
        lines.emplace_back();
        for (size_t at = 0; at < section->Size(); ++at)
            lines.back().push_back(section->Line(at));
    }
    edit(lines);
    Clear();
    for (std::vector<std::string>& section : lines)
        for (std::string& line : section)
            Append(std::move(line));
}

std::string IniText::Join(char separator) const {
    size_t length = 0;
    for (const auto& section : _sections)
        for (size_t at = 0; at < section->Size(); ++at)
            length += section->Line(at).size() + 1;
    std::string text;
    text.reserve(length);
    bool isFirst = true;
    for (const auto& section : _sections) {
        for (size_t at = 0; at < section->Size(); ++at) {
            if (!isFirst) text += separator;
            isFirst = false;
            text += section->Line(at);
        }
    }
    return text;
}

const std::vector<size_t>* IniText::Find(std::string_view section) const {
    if (!_names) return nullptr;
    const auto found = _names->find(section);
    return found == _names->end() ? nullptr : &found->second;
}

bool IniText::Find(std::string_view section, std::string_view key, std::string_view& value) const {
    const std::vector<size_t>* const places = IsPossibleKey(key) ? Find(section) : nullptr;
    if (!places) return false;
    for (const size_t place : *places) {
        const IniSection& found = *_sections[place];
        const size_t at = found.Find(key);
        if (at == kNone) continue;
        const std::string_view rest = std::string_view(found.Line(at)).substr(found.AssignmentOf(at) + 1);
        if (rest.empty()) return false;
        value = TrimBlanks(rest.substr(0, rest.find('#')));
        return true;
    }
    return false;
}

bool IniText::Write(std::string_view section, std::string_view key, std::string_view value) {
    const std::vector<size_t>* const places = Find(section);
    if (!places) {
        Append({});
        Append(HeaderLine(section));
        Append(KeyLine(key, value));
        return true;
    }
    const size_t place = places->front();
    const IniSection& found = *_sections[place];
    const size_t at = IsPossibleKey(key) ? found.Find(key) : kNone;
    if (at != kNone) {
        const std::string_view line = found.Line(at);
        const size_t begin = found.AssignmentOf(at) + 1;
        const size_t length = line.substr(begin).find('#');
        if (line.substr(begin, length) == value) return false;
        Own(place).Replace(at, begin, length, value);
        return true;
    }
    std::string line = KeyLine(key, value);
    if (place + 1 == _sections.size())
        Append(std::move(line));
    else if (BeginsHeader(line))
        Rebuild([&](auto& lines) {
            auto& into = found.Size() > 1 ? lines[place] : lines[place - 1];
            into.insert(found.Size() > 1 ? into.end() - 1 : into.end(), std::move(line));
        });
    else if (found.Size() > 1)
        Own(place).InsertBeforeLast(std::move(line));
    else
        Own(place - 1).Append(std::move(line));  // in front of its own header
    return true;
}

std::vector<std::string_view> IniText::Keys(std::string_view section) const {
    std::vector<std::string_view> keys;
    const std::vector<size_t>* const places = Find(section);
    if (!places) return keys;
    const IniSection& found = *_sections[places->front()];
    std::string_view key;
    for (size_t at = 0; at < found.Size(); ++at)
        if (found.KeyOf(at, key)) keys.push_back(key);
    return keys;
}

std::vector<std::string_view> IniText::Sections() const {
    std::vector<std::string_view> sections;
    std::string_view name;
    for (size_t place = 1; place < _sections.size(); ++place)
        if (HeaderName(_sections[place]->Line(0), name)) sections.push_back(name);
    return sections;
}

bool IniText::FindLine(std::string_view section, std::string_view prefix, Place& place) const {
    const std::vector<size_t>* const places = Find(section);
    if (!places) return false;
    for (place = {places->front(), 1}; place.section < _sections.size(); ++place.section, place.line = 0) {
        const IniSection& lines = *_sections[place.section];
        for (; place.line < lines.Size(); ++place.line)
            if (lines.Line(place.line).starts_with(prefix)) return true;
    }
    return false;
}

bool IniText::HasLine(std::string_view section, std::string_view prefix) const {
    Place unused{};
    return FindLine(section, prefix, unused);
}

bool IniText::RemoveLine(std::string_view section, std::string_view prefix) {
    Place place{};
    if (!FindLine(section, prefix, place)) return false;
    if (place.line > 0)
        Own(place.section).Erase(place.line);
    else
        Rebuild([&place](auto& lines) { lines[place.section].erase(lines[place.section].begin()); });
    return true;
}

bool IniText::RemoveSection(std::string_view section) {
    const std::vector<size_t>* const places = Find(section);
    if (!places) return false;
    _sections.erase(_sections.begin() + static_cast<std::ptrdiff_t>(places->front()));
    _names.reset();
    for (size_t place = 1; place < _sections.size(); ++place)
        AddName(place);
    if (_sections.size() == 1 && _sections[0]->Size() == 0) _sections.clear();
    return true;
}

}  // namespace Quern
