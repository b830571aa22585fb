#include "Storage/Bundle/IniText.h"

#include <algorithm>

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
    *this = {};
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
    Numbers& numbers = found != _names->end() ? found->second : (*_names)[std::string(name)];
    const auto isBefore = [this](uint32_t number, size_t wanted) { return _places[number] < wanted; };
    numbers.insert(std::lower_bound(numbers.begin(), numbers.end(), section, isBefore),
                   static_cast<uint32_t>(_places.size()));
    _places.push_back(static_cast<uint32_t>(section));
    _hasRepeated = _hasRepeated || numbers.size() > 1;
}

void IniText::IndexNames() {
    _names.reset();
    _places.clear();
    _hasRepeated = false;
    _repeatedKeys.reset();
    for (size_t place = 1; place < _sections.size(); ++place)
        AddName(place);
    if (_sections.size() == 1 && _sections[0]->Size() == 0) _sections.clear();
}

IniSection& IniText::Own(size_t section) {
    _repeatedKeys.reset();
    std::shared_ptr<IniSection>& owned = _sections[section];
    if (owned.use_count() > 1) owned = std::make_shared<IniSection>(*owned);
    return *owned;
}

void IniText::InsertHeader(size_t section, std::string line) {
    auto made = std::make_shared<IniSection>();
    made->Append(std::move(line));
    IniSection& before = Own(section);
    if (before.Size() > 1) {
        made->Append(before.Line(before.Size() - 1));
        before.Erase(before.Size() - 1);
        ++section;
    }
    _sections.insert(_sections.begin() + static_cast<std::ptrdiff_t>(section), std::move(made));
    for (uint32_t& place : _places)
        place += place >= section ? 1 : 0;
    AddName(section);
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

const std::string* IniText::NextLine(Place& place) const {
    for (; place.section < _sections.size(); ++place.section, place.line = 0)
        while (place.line < _sections[place.section]->Size()) {
            const std::string& line = _sections[place.section]->Line(place.line++);
            if (!line.empty()) return &line;
        }
    return nullptr;
}

bool IniText::IsSameInFile(const IniText& other) const {
    for (Place mine, theirs;;) {
        const std::string* const line = NextLine(mine);
        const std::string* const otherLine = other.NextLine(theirs);
        if (!line || !otherLine) return line == otherLine;
        if (*line != *otherLine) return false;
    }
}

const IniText::Numbers* IniText::Find(std::string_view section) const {
    if (!_names) return nullptr;
    const auto found = _names->find(section);
    return found == _names->end() ? nullptr : &found->second;
}

std::string_view IniText::KeyAt(const Place& place) const {
    std::string_view key;
    _sections[place.section]->KeyOf(place.line, key);
    return key;
}

void IniText::IndexRepeatedSections() {
    if (!_hasRepeated || _repeatedKeys) return;
    auto repeated = std::make_shared<RepeatedKeys>();
    for (const auto& [name, numbers] : *_names) {
        if (numbers.size() < 2) continue;
        std::vector<Place>& places = (*repeated)[numbers.front()];
        std::string_view key;
        for (const uint32_t number : numbers)
            for (Place at{_places[number], 0}; at.line < _sections[at.section]->Size(); ++at.line)
                if (_sections[at.section]->KeyOf(at.line, key)) places.push_back(at);
        std::stable_sort(places.begin(), places.end(),
                         [this](const Place& a, const Place& b) { return KeyAt(a) < KeyAt(b); });
        const auto isSame = [this](const Place& a, const Place& b) { return KeyAt(a) == KeyAt(b); };
        places.erase(std::unique(places.begin(), places.end(), isSame), places.end());
    }
    _repeatedKeys = std::move(repeated);
}

bool IniText::FindKey(const Numbers& sections, std::string_view key, Place& place) const {
    if (sections.size() > 1 && _repeatedKeys) {
        const std::vector<Place>& places = _repeatedKeys->at(sections.front());
        const auto found =
            std::lower_bound(places.begin(), places.end(), key,
                             [this](const Place& at, std::string_view wanted) { return KeyAt(at) < wanted; });
        if (found == places.end() || KeyAt(*found) != key) return false;
        place = *found;
        return true;
    }
    for (const uint32_t number : sections) {
        place = {_places[number], _sections[_places[number]]->Find(key)};
        if (place.line != kNone) return true;
    }
    return false;
}

bool IniText::Find(std::string_view section, std::string_view key, std::string_view& value) const {
    const Numbers* const sections = IsPossibleKey(key) ? Find(section) : nullptr;
    Place place;
    if (!sections || !FindKey(*sections, key, place)) return false;
    const IniSection& found = *_sections[place.section];
    const std::string_view rest = std::string_view(found.Line(place.line)).substr(found.AssignmentOf(place.line) + 1);
    if (rest.empty()) return false;
    value = TrimBlanks(rest.substr(0, rest.find('#')));
    return true;
}

bool IniText::Write(std::string_view section, std::string_view key, std::string_view value) {
    const Numbers* const sections = Find(section);
    if (!sections) {
        Append({});
        Append(HeaderLine(section));
        Append(KeyLine(key, value));
        return true;
    }
    const size_t place = _places[sections->front()];
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
        InsertHeader(place, std::move(line));
    else if (found.Size() > 1)
        Own(place).InsertBeforeLast(std::move(line));
    else
        Own(place - 1).Append(std::move(line));  // the header is the section's last line: in front of that
    return true;
}

std::vector<std::string_view> IniText::Keys(std::string_view section) const {
    std::vector<std::string_view> keys;
    const Numbers* const sections = Find(section);
    if (!sections) return keys;
    const IniSection& found = *_sections[_places[sections->front()]];
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
    const Numbers* const sections = Find(section);
    if (!sections) return false;
    for (place = Place{_places[sections->front()], 1}; place.section < _sections.size();
         ++place.section, place.line = 0) {
        const IniSection& lines = *_sections[place.section];
        for (; place.line < lines.Size(); ++place.line)
            if (lines.Line(place.line).starts_with(prefix)) return true;
    }
    return false;
}

bool IniText::HasLine(std::string_view section, std::string_view prefix) const {
    Place unused;
    return FindLine(section, prefix, unused);
}

bool IniText::RemoveLine(std::string_view section, std::string_view prefix) {
    Place place;
    if (!FindLine(section, prefix, place)) return false;
    if (place.line > 0) {
        Own(place.section).Erase(place.line);
        return true;
    }
    // The line is a header: once it is gone, the lines behind it belong to the section before.
    const std::shared_ptr<IniSection> headless = _sections[place.section];
    IniSection& before = Own(place.section - 1);
    for (size_t at = 1; at < headless->Size(); ++at)
        before.Append(headless->Line(at));
    _sections.erase(_sections.begin() + static_cast<std::ptrdiff_t>(place.section));
    IndexNames();
    return true;
}

bool IniText::RemoveKey(std::string_view section, std::string_view key) {
    const Numbers* const sections = Find(section);
    bool isRemoved = false;
    for (Place place; sections && FindKey(*sections, key, place); isRemoved = true)
        Own(place.section).Erase(place.line);
    return isRemoved;
}

bool IniText::RemoveSection(std::string_view section) {
    const Numbers* const sections = Find(section);
    if (!sections) return false;
    _sections.erase(_sections.begin() + static_cast<std::ptrdiff_t>(_places[sections->front()]));
    IndexNames();
    return true;
}

}  // namespace Quern
