// The text of an INI file as its lines, so that comments and order outlive an edit, with an index of where a key is.
//
//   [section]           the name between the first "[" and the first "]" of a line that begins with "["
//   key = value # note  a line with a "="; the value ends at the first "#" behind it
//
// Only the blank is trimmed, at both ends of names, keys and values. Comparison is exact. There are no quotes, escapes
// or continuation lines; a line of any other form is kept and ignored.
#ifndef ORVANE_STORAGE_BUNDLE_INI_TEXT_H
#define ORVANE_STORAGE_BUNDLE_INI_TEXT_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Quern {

class IniSection;

// A copy costs little: it shares its sections with the original until one of the two edits them. Not locked: copies may
// be read on other threads, but one that is edited or destroyed there needs the lock that guards the original's edits.
class IniText {
public:
    void Clear();
    // Adds a line at the end, as it stands; an empty one is dropped.
    void AddLine(std::string_view line);
    // The lines, with `separator` between them.
    std::string Join(char separator) const;
    bool Empty() const { return _sections.empty(); }
    // Whether a file of either reads as one of the other: it comes back without its empty lines.
    bool IsSameInFile(const IniText& other) const;

    // For many reads without an edit: where many sections have one name, a read need not look into each of them.
    void IndexRepeatedSections();

    // The trimmed value of the key, searched in every section of that name until found. A line "key=" with nothing
    // behind it ends the search without a value; one with only a comment has an empty value. Valid until the next edit.
    bool Find(std::string_view section, std::string_view key, std::string_view& value) const;

    // Sets the key in the first section of that name, which is added behind an empty line if there is none. A line of
    // that key keeps all up to its "=" and its comment, but not the blanks between. A new key of a section that another
    // one follows goes in front of the section's last line: in what this class wrote, that is the empty one. False if
    // the line stood so.
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
    // Removes every line of that very key from the sections of that name. False if there is none.
    bool RemoveKey(std::string_view section, std::string_view key);
    // Removes the first section of that name, header and lines. False if there is none.
    bool RemoveSection(std::string_view section);

private:
    struct TextHash : std::hash<std::string_view> {
        using is_transparent = void;
    };
    // The numbers of the sections of a name, in the order in which these stand.
    using Numbers = std::vector<uint32_t>;
    using Names = std::unordered_map<std::string, Numbers, TextHash, std::equal_to<>>;
    struct Place {
        size_t section = 0;
        size_t line = 0;
    };
    // Of a name that several sections have, by its first one's number: the first line of each key, by key.
    using RepeatedKeys = std::unordered_map<uint32_t, std::vector<Place>>;

    // Null if there is none of that name.
    const Numbers* Find(std::string_view section) const;
    // False if there is no such line.
    bool FindKey(const Numbers& sections, std::string_view key, Place& place) const;
    bool FindLine(std::string_view section, std::string_view prefix, Place& place) const;
    // Goes on to the next line that is not empty; null behind the last one.
    const std::string* NextLine(Place& place) const;
    std::string_view KeyAt(const Place& place) const;
    void Append(std::string line);
    // A header's line goes into a section of its own, in front of the one of that name and whatever it ends with.
    void InsertHeader(size_t section, std::string line);
    // Enters the name of a section that was added, if it has one.
    void AddName(size_t section);
    // Enters all names anew, after a section has gone.
    void IndexNames();
    // The section, shared no longer, to be changed.
    IniSection& Own(size_t section);

    // What stands in front of the first header, then a section a line that begins with "[". No line is in any other.
    std::vector<std::shared_ptr<IniSection>> _sections;
    std::shared_ptr<Names> _names;  // null as long as there is none
    // Where the section of a number is: all that a section between others changes for those behind it.
    std::vector<uint32_t> _places;
    bool _hasRepeated = false;
    std::shared_ptr<const RepeatedKeys> _repeatedKeys;  // null until asked for, and from the next edit on
};

}  // namespace Quern

#endif
