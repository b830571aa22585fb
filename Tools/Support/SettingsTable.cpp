#include "Support/SettingsTable.h"

namespace OrvaneTools {
namespace {

constexpr ListedSetting kSettings[] = {
// The build makes it of Docs/Settings.md.
#include "SettingsTable.inc"
};

}  // namespace

std::span<const ListedSetting> ListedSettings() {
    return kSettings;
}

std::vector<ListedSetting> FindListedSettings(std::string_view section, std::string_view key) {
    std::vector<ListedSetting> found;
    for (const ListedSetting& setting : kSettings)
        if (setting.key == key && (setting.section == section || setting.section == "MODULE")) found.push_back(setting);
    return found;
}

}  // namespace OrvaneTools
