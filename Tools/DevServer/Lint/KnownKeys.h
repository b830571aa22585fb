// The settings that the library itself reads from an answer, as Docs/Settings.md lists them. What a plugin or the game
// reads is not known here. Any thread.
#ifndef ORVANE_TOOLS_DEVSERVER_LINT_KNOWN_KEYS_H
#define ORVANE_TOOLS_DEVSERVER_LINT_KNOWN_KEYS_H

#include <span>
#include <string>
#include <string_view>

#include "Orvane/IPluginManager.h"

namespace OrvaneDevServer {

using Orvane::Plugin::kCoreModule;

// What the library reads each text of its own module into, with the terminator. A text without room reads as the
// default.
inline constexpr size_t kCoreTextRoom = 1024;

// By which of its typed reads the library reads a key.
enum class KeyType { kInt, kBool, kText };

// From when on a change counts, once the answer has come.
enum class Effect { kAtOnce, kNextLaunch };

struct KnownKey {
    std::string_view module;  // "MODULE": any, the plugins' and the game's too
    std::string_view name;    // spelt as it is read
    KeyType type;
    std::string_view defaultText;  // that the library gives
    Effect effect;

    bool IsOf(std::string_view ofModule) const { return module == ofModule || module == "MODULE"; }
};

// In the order of the page. A key that is read with two defaults is there twice.
std::span<const KnownKey> KnownKeys();

// Null for a key that the library does not read: a plugin's or the game's own.
const KnownKey* FindKnownKey(const std::string& module, const std::string& key);

}  // namespace OrvaneDevServer

#endif
