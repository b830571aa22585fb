#include "Storage/Bundle/IniSection.h"

#include <algorithm>
#include <utility>

#include "Base/Container/TrimBlanks.h"

namespace Quern {
namespace {

constexpr size_t kFewest = 32;  // entries that are worth a merge

}  // namespace

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

size_t IniSection::PlaceIn(const Index& index, std::string_view key, size_t line) const {
    const auto isBefore = [this, key](uint32_t entry, size_t wanted) {
        const int order = _lines[entry].Key().compare(key);
        return order < 0 || (order == 0 && entry < wanted);
    };
    const bool isBehindAll = index.empty() || isBefore(index.back(), line);
    const auto place = isBehindAll ? index.end() : std::lower_bound(index.begin(), index.end(), line, isBefore);
    return static_cast<size_t>(place - index.begin());
}

size_t IniSection::FindIn(const Index& index, std::string_view key) const {
    const size_t place = PlaceIn(index, key, 0);
    return place < index.size() && _lines[index[place]].Key() == key ? index[place] : kNone;
}

size_t IniSection::Find(std::string_view key) const {
    const size_t found = FindIn(_byKey, key);
    return _recent.empty() ? found : std::min(found, FindIn(_recent, key));
}

IniSection::Index& IniSection::IndexOf(size_t line, size_t& place) {
    place = PlaceIn(_byKey, _lines[line].Key(), line);
    if (place < _byKey.size() && _byKey[place] == line) return _byKey;
    place = PlaceIn(_recent, _lines[line].Key(), line);
    return _recent;
}

void IniSection::Enter(size_t line) {
    if (_lines[line].assignment == kNone) return;
    const std::string_view key = _lines[line].Key();
    if (PlaceIn(_byKey, key, line) == _byKey.size()) {
        _byKey.push_back(static_cast<uint32_t>(line));
        return;
    }
    _recent.insert(_recent.begin() + static_cast<std::ptrdiff_t>(PlaceIn(_recent, key, line)),
                   static_cast<uint32_t>(line));
    if (_recent.size() > kFewest && _recent.size() * _recent.size() > _byKey.size()) MergeRecent();
}

// Merges from the end on, and copies the stretch between two entries of the second index at once.
void IniSection::MergeRecent() {
    const Index old = std::exchange(_byKey, Index(_byKey.size() + _recent.size()));
    auto out = _byKey.end();
    auto end = old.end();
    for (auto entry = _recent.rbegin(); entry != _recent.rend(); ++entry) {
        const auto at = old.begin() + static_cast<std::ptrdiff_t>(PlaceIn(old, _lines[*entry].Key(), *entry));
        out = std::copy_backward(at, end, out);
        *--out = *entry;
        end = at;
    }
    std::copy_backward(old.begin(), end, out);
    _recent.clear();
}

void IniSection::Append(std::string line) {
    _lines.push_back(Parse(std::move(line)));
    Enter(Size() - 1);
}

void IniSection::InsertBeforeLast(std::string line) {
    const size_t at = Size() - 1;
    if (_lines[at].assignment != kNone) {
        size_t place = 0;
        Index& index = IndexOf(at, place);
        ++index[place];  // the line moves down by one; as the last of its key it keeps its place in the index
    }
    _lines.insert(_lines.end() - 1, Parse(std::move(line)));
    Enter(at);
}

void IniSection::Erase(size_t at) {
    if (_lines[at].assignment != kNone) {
        size_t place = 0;
        Index& index = IndexOf(at, place);
        index.erase(index.begin() + static_cast<std::ptrdiff_t>(place));
    }
    _lines.erase(_lines.begin() + static_cast<std::ptrdiff_t>(at));
    if (at == Size()) return;
    for (Index* const index : {&_byKey, &_recent})
        for (uint32_t& entry : *index)
            if (entry > at) --entry;
}

}  // namespace Quern
