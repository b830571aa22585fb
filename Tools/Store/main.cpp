// orvane-store: looks into and edits the library's INI files.
#include <json/json.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "Storage/Bundle/Linux/PropertyList.h"
#include "Storage/File/WholeFile.h"
#include "Store/Arguments.h"
#include "Store/Explain.h"
#include "Store/StoreFile.h"
#include "Support/ContainerVariable.h"
#include "Support/PrintableText.h"
#include "Support/SettingsTable.h"

namespace OrvaneStore {
namespace {

using Quern::EncryptedIni::Fault;

enum ExitStatus { kDone = 0, kNotThere = 1, kWrongUse = 2, kNoKey = 3 };

void Say(const std::string& text) {
    fprintf(stderr, "orvane-store: %s\n", text.c_str());
}

void Print(const std::string& stored) {
    static const bool isTerminal = isatty(STDOUT_FILENO);
    const std::string text = isTerminal ? OrvaneTools::PrintableText(stored) : stored;
    fwrite(text.data(), 1, text.size(), stdout);
    if (!text.ends_with('\n')) putchar('\n');
}

void Print(const Json::Value& value) {
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "  ";
    Print(Json::writeString(builder, value));
}

Json::Value ValueOf(const Quern::IniText& text, std::string_view section, std::string_view key) {
    std::string_view value;
    return text.Find(section, key, value) ? Json::Value(std::string(value)) : Json::Value();
}

int Dump(const Arguments& arguments, const StoreFile& file) {
    if (!arguments.json) {
        if (!file.text.Empty()) Print(file.text.Join('\n'));
        return kDone;
    }
    Json::Value root(Json::objectValue);
    for (const std::string_view section : file.text.Sections()) {
        Json::Value& values = root[std::string(section)] = Json::objectValue;
        for (const std::string_view key : file.text.Keys(section))
            values[std::string(key)] = ValueOf(file.text, section, key);
    }
    Print(root);
    return kDone;
}

int Get(const Arguments& arguments, const StoreFile& file) {
    std::string_view value;
    if (!file.text.Find(arguments.words[0], arguments.words[1], value)) {
        Say("[" + arguments.words[0] + "] " + arguments.words[1] + " has no value");
        return kNotThere;
    }
    if (arguments.json) {
        Json::Value object;
        object["value"] = std::string(value);
        Print(object);
    } else {
        Print(std::string(value));
    }
    return kDone;
}

int Keys(const Arguments& arguments, const StoreFile& file) {
    const bool ofSection = !arguments.words.empty();
    const auto names = ofSection ? file.text.Keys(arguments.words[0]) : file.text.Sections();
    Json::Value list(Json::arrayValue);
    for (const std::string_view name : names)
        list.append(std::string(name));
    if (arguments.json) {
        Json::Value object;
        object[ofSection ? "keys" : "sections"] = list;
        Print(object);
    } else {
        for (const Json::Value& name : list)
            Print(name.asString());
    }
    if (!names.empty() || !ofSection) return kDone;
    Say("[" + arguments.words[0] + "] has no keys");
    return kNotThere;
}

int Set(const Arguments& arguments, StoreFile& file) {
    for (const std::string& word : arguments.words) {
        if (word.find_first_of("\r\n") == std::string::npos) continue;
        Say("a line end can be part of no section, key or value");
        return kWrongUse;
    }
    if (arguments.words[2].find('#') != std::string::npos)
        Say("warning: what stands behind a \"#\" is a comment and not part of the value");
    file.text.AddLine(file.unfinished);
    file.text.Write(arguments.words[0], arguments.words[1], arguments.words[2]);
    std::string_view value;
    if (!arguments.words[2].empty() && !file.text.Find(arguments.words[0], arguments.words[1], value)) {
        // A "]" in a section, a "=" in a key; and a section without lines takes its first key in front of its header.
        Say("this section and key would not be read back; the file stays");
        return kWrongUse;
    }
    std::string error;
    if (WriteStoreFile(file, error)) return kDone;
    Say(error);
    return kWrongUse;
}

// Takes out the lines that a read of the key would find, in all sections of that name; without a key such sections.
int Unset(const Arguments& arguments, StoreFile& file) {
    const bool ofKey = arguments.words.size() == 2;
    file.text.AddLine(file.unfinished);
    bool isRemoved = false;
    if (ofKey)
        isRemoved = file.text.RemoveKey(arguments.words[0], arguments.words[1]);
    else
        while (file.text.RemoveSection(arguments.words[0]))
            isRemoved = true;
    if (!isRemoved) {
        Say("[" + arguments.words[0] + "]" + (ofKey ? " " + arguments.words[1] : "") + " is not there");
        return kNotThere;
    }
    std::string error;
    if (WriteStoreFile(file, error)) return kDone;
    Say(error);
    return kWrongUse;
}

// What the decryption of a sound file came to, in words.
std::string DecryptionVerdict(const StoreFile& file) {
    if (file.isOpen) return "ok";
    if (file.keyOrigin.empty()) return "no key: " + file.keyProblem;
    return "the key of " + file.keyOrigin + " does not open the body";
}

// Each step with what became of it.
int Verify(const Arguments& arguments, const StoreFile& file) {
    const bool bodyIsSound = file.fault == Fault::kNone;
    const bool headIsSound = bodyIsSound || file.fault == Fault::kBody || file.fault == Fault::kDigest;
    int status = kDone;
    if (!bodyIsSound)
        status = kNotThere;
    else if (!file.isOpen)
        status = kNoKey;

    Json::Value verdict(Json::objectValue);
    verdict["form"] = file.isEncrypted ? "encrypted" : "plain";
    if (file.isEncrypted) {
        constexpr char kOk[] = "ok", kNotReached[] = "not looked at";
        verdict["head"] = headIsSound ? kOk : FaultText(file.fault);
        verdict["md5"] = headIsSound ? FaultText(file.fault) : kNotReached;
        verdict["decryption"] = bodyIsSound ? DecryptionVerdict(file) : kNotReached;
    }
    if (arguments.json) {
        Print(verdict);
        return status;
    }
    for (const char* step : {"form", "head", "md5", "decryption"})
        if (verdict.isMember(step)) Print(std::string(step) + ": " + verdict[step].asString());
    return status;
}

// Reads the file and says what keeps it from being used.
int OpenFile(const Arguments& arguments, StoreFile& file) {
    std::string error;
    if (!ReadStoreFile(arguments, file, error)) {
        Say(error);
        return kWrongUse;
    }
    if (arguments.command == "verify") return kDone;
    if (file.fault != Fault::kNone) {
        Say(arguments.file + ": " + FaultText(file.fault));
        return kNotThere;
    }
    if (!file.isOpen) {
        Say(arguments.file + ": " + (file.keyOrigin.empty() ? file.keyProblem : "the key does not open it"));
        return kNoKey;
    }
    if (file.isLeftOver) Say("a save was cut short: this is the new file beside it, which its application will take");
    if (!file.unfinished.empty()) Say("the last line has no line end: the library does not read it");
    return kDone;
}

bool ReadManifest(const Arguments& arguments, Quern::InfoValue& manifest) {
    const char* const environment = getenv("ORVANE_INFO_PLIST");
    const std::string path = arguments.manifest.value_or(environment ? environment : "");
    if (path.empty()) {
        Say("no --manifest is given: it is taken for empty");
        return true;
    }
    const std::unique_ptr<FILE, int (*)(FILE*)> stream(fopen(path.c_str(), "rb"), fclose);
    bool failed = !stream;
    const std::string bytes = stream ? Quern::ReadToEnd(stream.get(), &failed) : "";
    const char* why = strerror(errno);
    if (!failed && Quern::ParsePropertyList(bytes, manifest, why)) return true;
    Say(path + ": " + why);
    return false;
}

// When the library itself reads the setting, a line for each of its reads; empty for a setting of nobody's but the
// game's or a plugin's.
std::string LibraryReads(const std::vector<OrvaneTools::ListedSetting>& reads) {
    std::string text;
    for (const auto& read : reads)
        text += "library   " + std::string(read.type) + ", default \"" + std::string(read.defaultValue) + "\", read " +
                std::string(read.read) + "\n";
    return text;
}

int ExplainSetting(Arguments arguments) {
    Quern::InfoValue manifest{Quern::InfoValue::Dictionary()};
    if (!ReadManifest(arguments, manifest)) return kWrongUse;

    StoreFile file;
    bool isStored = true;
    if (arguments.file.empty()) {
        std::string problem;
        if (arguments.home.empty()) arguments.home = OrvaneTools::ContainerOfEnvironment(problem);
        if (!problem.empty()) Say(problem);
        if (arguments.home.empty()) {
            Say("explain: name the FILE, or the container by --home or $ORVANE_HOME");
            return kWrongUse;
        }
        arguments.file = arguments.home + "/Library/Caches/RemoteConfig.config";
        isStored = access(arguments.file.c_str(), F_OK) == 0 || errno != ENOENT;
        if (!isStored) Say(arguments.file + ": there is no such file: no answer of the server is kept");
    }
    if (isStored) {
        const int status = OpenFile(arguments, file);
        if (status != kDone) return status;
    }
    const auto known = OrvaneTools::FindListedSettings(arguments.words[0], arguments.words[1]);
    const std::string ownDefault(known.size() == 1 ? known[0].defaultValue : "");
    const std::string defaultText = arguments.defaultText.value_or(ownDefault);
    const Explanation explanation =
        Explain(isStored ? &file.text : nullptr, manifest, arguments.words[0], arguments.words[1], defaultText);
    if (arguments.json)
        Print(AsJson(explanation, defaultText));
    else
        Print(AsText(explanation, defaultText) + LibraryReads(known));
    return kDone;
}

int Run(const Arguments& arguments) {
    if (arguments.command == "explain") return ExplainSetting(arguments);
    StoreFile file;
    const int status = OpenFile(arguments, file);
    if (status != kDone) return status;
    if (arguments.command == "verify") return Verify(arguments, file);
    if (arguments.command == "dump") return Dump(arguments, file);
    if (arguments.command == "get") return Get(arguments, file);
    if (arguments.command == "keys") return Keys(arguments, file);
    return arguments.command == "set" ? Set(arguments, file) : Unset(arguments, file);
}

int Main(const std::vector<std::string>& words) {
    Arguments arguments;
    std::string error;
    if (!ParseArguments(words, arguments, error)) {
        Say(error);
        return kWrongUse;
    }
    if (!arguments.help && !arguments.version) return Run(arguments);
    fputs(arguments.help ? kHelpText : "orvane-store " ORVANE_VERSION "\n", stdout);
    return kDone;
}

}  // namespace
}  // namespace OrvaneStore

int main(int count, char** words) {
    const int status = OrvaneStore::Main({words + 1, words + count});
    if (fflush(stdout) == 0) return status;
    perror("orvane-store: standard output");
    return OrvaneStore::kWrongUse;
}
