// Every setting that the library reads, as Docs/Settings.md lists them. The build makes the table from that page, and a
// test holds the page against the sources.
#ifndef ORVANE_TOOLS_SUPPORT_SETTINGS_TABLE_H
#define ORVANE_TOOLS_SUPPORT_SETTINGS_TABLE_H

#include <span>
#include <string_view>
#include <vector>

namespace OrvaneTools {

// The texts are literals, and valid for the process.
struct ListedSetting {
    std::string_view section;       // "MODULE" for a key that the section of any module may have
    std::string_view key;           // spelt as it is read
    std::string_view type;          // "int", "long", "bool", "double" or "text"
    std::string_view defaultValue;  // as a text; empty for the empty text
    std::string_view asked;         // "server", "store" or "manifest": the first who is asked
    std::string_view read;          // begins with "once" or "each"

    // Whether a change counts only from the process's next start on.
    bool CountsFromNextStart() const { return read.starts_with("once"); }
};

// All of them, in the order of the page. A key that is read with two defaults is there twice.
std::span<const ListedSetting> ListedSettings();

// Those of that key in the section, or in the section of any module.
std::vector<ListedSetting> FindListedSettings(std::string_view section, std::string_view key);

}  // namespace OrvaneTools

#endif
