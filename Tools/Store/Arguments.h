// The command line of orvane-store. The help text (Arguments.cpp) tells a user the same.
#ifndef ORVANE_TOOLS_STORE_ARGUMENTS_H
#define ORVANE_TOOLS_STORE_ARGUMENTS_H

#include <optional>
#include <string>
#include <vector>

#include "Storage/Bundle/EncryptedIniFormat.h"

namespace OrvaneStore {

// The run that a user asked for.
struct Arguments {
    bool help = false;
    bool version = false;
    std::string command;                             // dump, explain, get, keys, set, unset, verify
    std::string file;                                // of "explain", empty for the one in the container
    std::vector<std::string> words;                  // what the command takes behind the file
    std::optional<Quern::EncryptedIni::TeaKey> key;  // given as digits
    std::string privateKeyFile;                      // of the peer; looked at if no key is given
    std::string home;                                // the application's container; empty for the one around the file
    std::string name;                                // of the file in the keychain; empty for that of the path
    bool json = false;                               // one JSON object in place of text
    std::optional<std::string> manifest;             // of "explain": the path of an Info.plist
    std::optional<std::string> defaultText;          // of "explain": what the caller of the read would give
};

// Reads the arguments behind the program's name. False, and what is wrong in `error`, if they make no sense. Not for
// two threads at once.
bool ParseArguments(const std::vector<std::string>& words, Arguments& arguments, std::string& error);

extern const char kHelpText[];

}  // namespace OrvaneStore

#endif
