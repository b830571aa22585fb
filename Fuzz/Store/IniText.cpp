// The INI text: the first two lines are a section and a key, the rest is the file. What is written is found again, and
// what is removed is gone.
#include "Storage/Bundle/IniText.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

std::string_view TakeLine(std::string_view& rest) {
    const std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(line.size() < rest.size() ? line.size() + 1 : line.size());
    return line;
}

bool IsPlain(std::string_view text) {
    return text.find_first_of("[]=# ") == std::string_view::npos && !text.empty();
}

void Require(bool condition) {
    if (!condition) abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    const std::string_view section = TakeLine(rest);
    const std::string_view key = TakeLine(rest);
    Quern::IniText text;
    while (!rest.empty())
        text.AddLine(TakeLine(rest));

    std::string_view value;
    text.Find(section, key, value);
    text.Keys(section);
    for (const std::string_view name : text.Sections())
        text.Keys(name);
    text.HasLine(section, key);

    const auto sections = text.Sections();
    // A section without lines takes a new key in front of its header.
    const bool isNew = std::find(sections.begin(), sections.end(), section) == sections.end();
    text.Write(section, key, "value");
    if (isNew && IsPlain(section) && IsPlain(key)) {
        Require(text.Find(section, key, value) && value == "value");
        Require(!text.Keys(section).empty());
    }
    while (text.RemoveLine(section, key)) {
    }
    Require(!text.HasLine(section, key));
    while (text.RemoveSection(section)) {
    }
    Require(!text.Find(section, key, value) && text.Keys(section).empty());
    text.Join('\n');
    return 0;
}
