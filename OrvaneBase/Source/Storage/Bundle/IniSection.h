// One section of an INI text: its lines, and which of them is a key's.
#ifndef ORVANE_STORAGE_BUNDLE_INI_SECTION_H
#define ORVANE_STORAGE_BUNDLE_INI_SECTION_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Quern {

// The first line is the section's header; only the section in front of the first header has none. No other line begins
// with "[". A line that holds a "=" belongs to a key: the text in front of its first "=", trimmed. Not locked.
class IniSection {
public:
    static constexpr size_t kNone = static_cast<size_t>(-1);

    size_t Size() const { return _lines.size(); }
    const std::string& Line(size_t at) const { return _lines[at].text; }
    // The key of a line and the place of its "="; false for a line without. The header is none.
    bool KeyOf(size_t at, std::string_view& key) const;
    size_t AssignmentOf(size_t at) const { return _lines[at].assignment; }

    // The first line of that key, or kNone.
    size_t Find(std::string_view key) const;

    // REQUIRES: the line keeps to what the class says.
    void Append(std::string line);
    // REQUIRES: there is a last line.
    void InsertBeforeLast(std::string line);
    void Erase(size_t at);
    // Puts a text in the place of some bytes behind a line's "=".
    void Replace(size_t line, size_t from, size_t length, std::string_view text) {
        _lines[line].text.replace(from, length, text);
    }

private:
    struct IndexedLine {
        std::string text;
        size_t assignment = kNone;  // the place of the first "="
        size_t keyAt = 0;
        size_t keyLength = 0;

        std::string_view Key() const { return std::string_view(text).substr(keyAt, keyLength); }
    };
    using Index = std::vector<uint32_t>;  // lines, by key and then by place

    static IndexedLine Parse(std::string text);
    // Where in the index the line is, or would be.
    size_t PlaceIn(const Index& index, std::string_view key, size_t line) const;
    size_t FindIn(const Index& index, std::string_view key) const;
    // The index that has the line, and where. REQUIRES: the line has a key and is entered.
    Index& IndexOf(size_t line, size_t& place);
    void Enter(size_t line);
    void MergeRecent();

    std::vector<IndexedLine> _lines;
    // Each line that has a key is in one of the two. Keys mostly come in order, which the first takes at its end; what
    // comes in between waits in the second, which is short, so that no order of keys makes an entry expensive.
    Index _byKey;
    Index _recent;
};

}  // namespace Quern

#endif
