#include "DevServer/Lint/KnownKeys.h"

#include <algorithm>
#include <vector>

#include "Support/SettingsTable.h"

namespace OrvaneDevServer {
namespace {

KeyType TypeOf(std::string_view word) {
    return word == "int" ? KeyType::kInt : word == "bool" ? KeyType::kBool : KeyType::kText;
}

// A setting for which the server is never asked is none that an answer could change.
std::vector<KnownKey> ReadFromServer() {
    std::vector<KnownKey> keys;
    for (const OrvaneTools::ListedSetting& setting : OrvaneTools::ListedSettings())
        if (setting.asked == "server")
            keys.push_back({setting.section, setting.key, TypeOf(setting.type), setting.defaultValue,
                            setting.CountsFromNextStart() ? Effect::kNextLaunch : Effect::kAtOnce});
    return keys;
}

}  // namespace

std::span<const KnownKey> KnownKeys() {
    static const std::vector<KnownKey> keys = ReadFromServer();
    return keys;
}

const KnownKey* FindKnownKey(const std::string& module, const std::string& key) {
    const std::span<const KnownKey> keys = KnownKeys();
    const auto found = std::find_if(keys.begin(), keys.end(),
                                    [&](const KnownKey& known) { return known.name == key && known.IsOf(module); });
    return found == keys.end() ? nullptr : &*found;
}

}  // namespace OrvaneDevServer
