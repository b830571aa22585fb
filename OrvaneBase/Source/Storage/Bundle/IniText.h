// The text of an INI file as its lines, searched anew at every call, so that comments and order outlive an edit.
//
//   [section]           the name between the first "[" and the first "]" of a line that begins with "["
//   key = value # note  a line with a "="; the value ends at the first "#" behind it
//
// Only the blank is trimmed, at both ends of names, keys and values. Comparison is exact. There are no quotes, escapes
// or continuation lines; a line of any other form is kept and ignored.
#ifndef ORVANE_STORAGE_BUNDLE_INI_TEXT_H
#define ORVANE_STORAGE_BUNDLE_INI_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Quern {

// Not locked.
class IniText {
public:
    void Clear() { _lines.clear(); }
    // Adds a line at the end, as it stands; an empty one is dropped.
    void AddLine(std::string_view line);
    // The lines, with `separator` between them.
    std::string Join(char separator) const;
    bool Empty() const { return _lines.empty(); }

    // The trimmed value of the key, searched in every section of that name until found. A line "key=" with nothing
    // behind it ends the search without a value; one with only a comment has an empty value. Valid until the next edit.
    bool Find(std::string_view section, std::string_view key, std::string_view& value) const;

    // Sets the key in the first section of that name, which is added behind an empty line if there is none. A line of
    // that key keeps all up to its "=" and its comment, but not the blanks between. A new key of a section that another
    // one follows goes in front of the section's last line: in what this class wrote, that is the empty one. False if the line stood so.
    bool Write(std::string_view section, std::string_view key, std::string_view value);

    // The keys of the first section of that name, in their order. Valid until the next edit.
    std::vector<std::string_view> Keys(std::string_view section) const;
    // Every section's name in its order, repeated ones too. Valid until the next edit.
    std::vector<std::string_view> Sections() const;

    // Whether a line behind the section's header, up to the very end of the text and so of later sections too, begins
    // with `prefix`. A first filter: key "ab" is found by a line "abc=1".
    bool HasLine(std::string_view section, std::string_view prefix) const;
    // Removes the first such line. False if there is none.
    bool RemoveLine(std::string_view section, std::string_view prefix);
    // Removes the first section of that name, header and lines. False if there is none.
    bool RemoveSection(std::string_view section);

private:
    size_t FindHeader(std::string_view section) const;
    // The place of such a line, or that of the end.
    size_t FindLine(std::string_view section, std::string_view prefix) const;
    // The next line at or behind `from` that begins with "[", or the end.
    size_t NextHeader(size_t from) const;

    std::vector<std::string> _lines;
};

}  // namespace Quern

#endif
