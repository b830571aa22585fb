// The settings that the library itself reads from an answer.
#ifndef ORVANE_TOOLS_DEVSERVER_LINT_KNOWN_KEYS_H
#define ORVANE_TOOLS_DEVSERVER_LINT_KNOWN_KEYS_H

#include <span>
#include <string>

namespace OrvaneDevServer {

enum class KeyType { kInt, kBool, kText };

// From when on a change counts, once the answer has come.
enum class Effect { kAtOnce, kNextLaunch };

struct KnownKey {
    const char* module;  // "*": every module that logs, the plugins' and the game's too
    const char* name;
    KeyType type;
    const char* defaultText;  // the default that the library gives
    Effect effect;
};

std::span<const KnownKey> KnownKeys();

// Null for a key that the library does not read: a plugin's or the game's own.
const KnownKey* FindKnownKey(const std::string& module, const std::string& key);

}  // namespace OrvaneDevServer

#endif
