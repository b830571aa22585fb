#include "Storage/Bundle/IniText.h"

#include "Base/Container/TrimBlanks.h"

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

bool IsHeaderOf(std::string_view line, std::string_view section) {
    std::string_view name;
    return HeaderName(line, name) && name == section;
}

// Whether a line can have that key: what stands before a line's first "=", trimmed, is such a text.
bool IsPossibleKey(std::string_view key) {
    return key.empty() || (key.front() != ' ' && key.back() != ' ' && key.find('=') == kNone);
}

// The place of the "=" in a line of that key, or none. REQUIRES: the key is possible.
size_t AssignmentOf(std::string_view line, std::string_view key) {
    size_t at = 0;
    while (at < line.size() && line[at] == ' ')
        ++at;
    if (!line.substr(at).starts_with(key)) return kNone;
    at += key.size();
    while (at < line.size() && line[at] == ' ')
        ++at;
    return at < line.size() && line[at] == '=' ? at : kNone;
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

void IniText::AddLine(std::string_view line) {
    if (!line.empty()) _lines.emplace_back(line);
}

std::string IniText::Join(char separator) const {
    size_t length = 0;
    for (const std::string& line : _lines)
        length += line.size() + 1;
    std::string text;
    text.reserve(length);
    for (const std::string& line : _lines) {
        if (&line != &_lines.front()) text += separator;
        text += line;
    }
    return text;
}

size_t IniText::FindHeader(std::string_view section) const {
    size_t at = 0;
    while (at < _lines.size() && !IsHeaderOf(_lines[at], section))
        ++at;
    return at;
}

size_t IniText::NextHeader(size_t from) const {
    while (from < _lines.size() && !BeginsHeader(_lines[from]))
        ++from;
    return from;
}

bool IniText::Find(std::string_view section, std::string_view key, std::string_view& value) const {
    if (!IsPossibleKey(key)) return false;
    bool inSection = false;
    for (const std::string& line : _lines) {
        if (BeginsHeader(line)) {
            inSection = IsHeaderOf(line, section);
            continue;
        }
        if (!inSection) continue;
        const size_t assignment = AssignmentOf(line, key);
        if (assignment == kNone) continue;
        if (assignment + 1 == line.size()) return false;
        const std::string_view rest = std::string_view(line).substr(assignment + 1);
        value = TrimBlanks(rest.substr(0, rest.find('#')));
        return true;
    }
    return false;
}

bool IniText::Write(std::string_view section, std::string_view key, std::string_view value) {
    const size_t header = FindHeader(section);
    if (header == _lines.size()) {
        _lines.emplace_back();
        _lines.push_back(HeaderLine(section));
        _lines.push_back(KeyLine(key, value));
        return true;
    }
    const bool isPossible = IsPossibleKey(key);
    size_t at = header + 1;
    for (; at < _lines.size() && !BeginsHeader(_lines[at]); ++at) {
        std::string& line = _lines[at];
        const size_t assignment = isPossible ? AssignmentOf(line, key) : kNone;
        if (assignment == kNone) continue;
        const size_t comment = line.find('#', assignment);
        const size_t end = comment == kNone ? line.size() : comment;
        if (std::string_view(line).substr(assignment + 1, end - assignment - 1) == value) return false;
        line.replace(assignment + 1, end - assignment - 1, value);
        return true;
    }
    if (at < _lines.size()) --at;
    _lines.insert(_lines.begin() + static_cast<std::ptrdiff_t>(at), KeyLine(key, value));
    return true;
}

std::vector<std::string_view> IniText::Keys(std::string_view section) const {
    std::vector<std::string_view> keys;
    const size_t header = FindHeader(section);
    if (header == _lines.size()) return keys;
    const size_t end = NextHeader(header + 1);
    for (size_t at = header + 1; at < end; ++at) {
        const std::string_view line = _lines[at];
        const size_t assignment = line.find('=');
        if (assignment != kNone) keys.push_back(TrimBlanks(line.substr(0, assignment)));
    }
    return keys;
}

std::vector<std::string_view> IniText::Sections() const {
    std::vector<std::string_view> sections;
    std::string_view name;
    for (const std::string& line : _lines)
        if (HeaderName(line, name)) sections.push_back(name);
    return sections;
}

size_t IniText::FindLine(std::string_view section, std::string_view prefix) const {
    size_t at = FindHeader(section);
    if (at < _lines.size()) ++at;
    while (at < _lines.size() && !_lines[at].starts_with(prefix))
        ++at;
    return at;
}

bool IniText::HasLine(std::string_view section, std::string_view prefix) const {
    return FindLine(section, prefix) < _lines.size();
}

bool IniText::RemoveLine(std::string_view section, std::string_view prefix) {
    const size_t at = FindLine(section, prefix);
    if (at == _lines.size()) return false;
    _lines.erase(_lines.begin() + static_cast<std::ptrdiff_t>(at));
    return true;
}

bool IniText::RemoveSection(std::string_view section) {
    const size_t header = FindHeader(section);
    if (header == _lines.size()) return false;
    const auto begin = _lines.begin();
    _lines.erase(begin + static_cast<std::ptrdiff_t>(header),
                 begin + static_cast<std::ptrdiff_t>(NextHeader(header + 1)));
    return true;
}

}  // namespace Quern
