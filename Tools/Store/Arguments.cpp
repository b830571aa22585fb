#include "Store/Arguments.h"

#include <getopt.h>

#include <map>

#include "Serializer/Codec/EllipticCurve.h"
#include "Serializer/Codec/Hex.h"
#include "Support/OptionError.h"

namespace OrvaneStore {
namespace {

enum Option { kKey = 256, kPrivateKey, kHome, kName, kJson, kManifest, kDefault, kVersion };

const option kOptions[] = {
    {"key", required_argument, nullptr, kKey},
    {"private-key", required_argument, nullptr, kPrivateKey},
    {"home", required_argument, nullptr, kHome},
    {"name", required_argument, nullptr, kName},
    {"json", no_argument, nullptr, kJson},
    {"manifest", required_argument, nullptr, kManifest},
    {"default", required_argument, nullptr, kDefault},
    {"version", no_argument, nullptr, kVersion},
    {"help", no_argument, nullptr, 'h'},
    {nullptr, 0, nullptr, 0},
};

constexpr char kExplain[] = "explain";

// The words that each command takes behind its file: at least and at most.
const std::map<std::string, std::pair<size_t, size_t>> kCommands = {
    {"dump", {0, 0}}, {kExplain, {2, 2}}, {"get", {2, 2}},    {"keys", {0, 1}},
    {"set", {3, 3}},  {"unset", {1, 2}},  {"verify", {0, 0}},
};

bool TakeKey(const std::string& digits, Arguments& arguments, std::string& error) {
    Quern::EncryptedIni::TeaKey key;
    if (digits.size() != 2 * key.size() ||
        !Quern::HexToBuffer(digits.c_str(), reinterpret_cast<uint8_t*>(key.data()), key.size())) {
        error = "--key: not 32 hexadecimal digits";
        return false;
    }
    arguments.key = key;
    return true;
}

bool TakeOption(int option, const char* value, Arguments& arguments, std::string& error) {
    switch (option) {
        case kKey:
            return TakeKey(value, arguments, error);
        case kPrivateKey:
            arguments.privateKeyFile = value;
            return true;
        case kHome:
            arguments.home = value;
            return true;
        case kName:
            arguments.name = value;
            return true;
        case kJson:
            arguments.json = true;
            return true;
        case kManifest:
            arguments.manifest = value;
            return true;
        case kDefault:
            arguments.defaultText = value;
            return true;
        case kVersion:
            arguments.version = true;
            return true;
        default:
            arguments.help = true;
            return true;
    }
}

bool TakeWords(std::vector<std::string> words, Arguments& arguments, std::string& error) {
    if (words.size() < 2) {
        error = "a command and a file are wanted; see --help";
        return false;
    }
    arguments.command = words[0];
    const bool isExplain = arguments.command == kExplain;
    if (isExplain && words.size() == 3) words.insert(words.begin() + 1, "");  // the container's file
    arguments.file = words[1];
    arguments.words.assign(words.begin() + 2, words.end());
    if (!isExplain && (arguments.manifest || arguments.defaultText)) {
        error = "--manifest and --default are for \"explain\"";
        return false;
    }
    const auto command = kCommands.find(arguments.command);
    if (command == kCommands.end()) {
        error = arguments.command + ": no such command; see --help";
        return false;
    }
    const auto [least, most] = command->second;
    if (arguments.words.size() >= least && arguments.words.size() <= most) return true;
    error = arguments.command + ": wrong number of words behind the file; see --help";
    return false;
}

}  // namespace

bool ParseArguments(const std::vector<std::string>& words, Arguments& arguments, std::string& error) {
    std::vector<std::string> copies = {"orvane-store"};
    copies.insert(copies.end(), words.begin(), words.end());
    std::vector<char*> pointers;
    for (std::string& word : copies)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    optind = 0;  // start over
    opterr = 0;
    const int count = static_cast<int>(copies.size());
    for (int found; (found = getopt_long(count, pointers.data(), ":h", kOptions, nullptr)) != -1;) {
        if (found == '?' || found == ':') {
            error = OrvaneTools::OptionError(found, pointers.data());
            return false;
        }
        if (!TakeOption(found, optarg, arguments, error)) return false;
    }
    if (arguments.help || arguments.version) return true;
    return TakeWords({pointers.begin() + optind, pointers.begin() + count}, arguments, error);
}

const char kHelpText[] =
    R"(usage: orvane-store [OPTION]... COMMAND FILE [WORD]...

Looks into and edits the INI files of OrvaneCore: bundles ("Orvane.config" and its like, enciphered) and plain ones. A
file is changed by "set" and "unset" alone. On a terminal, control characters are shown as "\x1B".

Commands
  dump FILE                    all lines
  get FILE SECTION KEY         one value
  keys FILE [SECTION]          the section's keys, or the sections
  set FILE SECTION KEY VALUE   changes or adds one value. An enciphered file keeps its key, so that its application
                               goes on reading it; a plain file stays plain. Not while the application runs: it has the
                               text in memory, and its next save wins
  unset FILE SECTION [KEY]     removes the key from every section of that name, or such sections whole; else as "set"
  verify FILE                  the head, the digest and the decryption, each with a verdict
  explain [FILE] SECTION KEY   what each typed read of that setting gives, who answers it (the configuration server, the
                               application's manifest, or the caller's default) and why. FILE is where the server's
                               answer is kept, Library/Caches/RemoteConfig.config in the container: that of --home, or
                               else of $ORVANE_HOME

Of "explain"
  --default X                  what the caller gives; each read takes of it what is of its type (else 0, false, "").
                               Without it, that of the library for a setting of its own
  --manifest FILE              the application's Info.plist; else $ORVANE_INFO_PLIST; else it is taken for empty

The key of an enciphered file, the first of these that is given
  --key HEX                    the 16-byte key, 32 hexadecimal digits
  --private-key FILE           the deployment's private key, for which the file was written, 64 hexadecimal digits
  --home DIR                   the keychain of that application's container; if nothing is given, of the container that
                               FILE lies in
  --name NAME                  what the keychain calls the file, if it has another name by now: "Orvane.config"

How
  --json                       one JSON object
  --version, -h, --help
  --                           what follows is no option: for a value that begins with "-"

Exit status
  0  done
  1  there is no such value or section, or the file is damaged
  2  wrong use, or a file that cannot be read or written
  3  no key, or one that does not open the file
)";

}  // namespace OrvaneStore
