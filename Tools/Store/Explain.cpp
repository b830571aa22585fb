#include "Store/Explain.h"

#include <strings.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <utility>

#include "Base/ConsoleSink.h"
#include "Base/Container/StringConversion.h"
#include "Storage/Bundle/BundleImpl.h"
#include "Storage/Bundle/GameId.h"
#include "Storage/Bundle/InfoDictionary.h"
#include "Storage/Bundle/IniFile.h"

namespace OrvaneStore {
namespace {

using Quern::AString;
using Quern::BundleImpl;
using Quern::InfoDictionary;
using Quern::InfoValue;
using Quern::IniFile;
using Quern::IniText;

constexpr char kServer[] = "server";
constexpr char kManifest[] = "manifest";
constexpr char kDefault[] = "default";

class GivenManifest final : public InfoDictionary {
public:
    explicit GivenManifest(InfoValue root) : _root(std::move(root)) {}
    const InfoValue& Root() override { return _root; }

private:
    const InfoValue _root;
};

// Keeps the library's own reader from saying what is explained here.
class SilentConsole final : public Quern::ConsoleSink {
public:
    void Write(const char*, size_t) override {}
};

// What is looked at, and what reads it as the library does.
struct Setting {
    const char* section;
    const char* key;
    std::optional<std::string> stored;
    bool isNamed = false;                 // the server's answer has the key, with a value or without
    bool isCut = false;                   // the stored line goes on behind a "#"
    const InfoValue* manifest = nullptr;  // null if there is none
    BundleImpl* bundle = nullptr;
};

std::string Quoted(const std::string& text) {
    return '"' + text + '"';
}

// Whether the line that the key is read from goes on behind a "#". REQUIRES: the key has a value.
bool IsCut(const IniText& text, const std::string& section, const std::string& key) {
    const std::string lines = text.Join('\n');
    bool inSection = false;
    for (size_t at = 0, end; at < lines.size(); at = end + 1) {
        end = std::min(lines.find('\n', at), lines.size());
        const std::string line = lines.substr(at, end - at);
        IniText alone;  // asks the format's own reader about this line
        if (line.starts_with('[')) {
            alone.AddLine(line);
            const auto names = alone.Sections();
            inSection = !names.empty() && names.front() == section;
            continue;
        }
        alone.AddLine("[alone]");
        alone.AddLine(line);
        std::string_view value;
        if (inSection && alone.Find("alone", key, value)) return line.find('#', line.find('=')) != std::string::npos;
    }
    return false;
}

// A bundle whose first layer has the stored value and nothing else. Its file has no name and is never saved: the bundle
// is left alone, since deleting it would save.
BundleImpl* MakeBundle(const Setting& setting) {
    std::unique_ptr<IniFile> file(IniFile::CreateIniFile(""));
    // A value that is empty behind a comment is there all the same, which is written with a blank.
    if (setting.stored)
        file->WriteString(setting.section, setting.key, setting.stored->empty() ? " " : setting.stored->c_str());
    static BundleImpl* bundle;
    bundle = new BundleImpl(std::make_unique<Quern::IniBundle>(std::move(file)));
    return bundle;
}

const char* KindOf(const InfoValue& value) {
    if (value.Text()) return "a text";
    if (value.IsDictionary()) return "a dictionary";
    if (std::holds_alternative<bool>(value.value)) return "a boolean";
    if (std::holds_alternative<double>(value.value)) return "a real number";
    return value.IsNumber() ? "an integer" : "a date, data or a list";
}

std::string ManifestText(const InfoValue& value) {
    std::string text;
    if (value.Text())
        text = Quoted(*value.Text()) + ", ";
    else if (const double* real = std::get_if<double>(&value.value))
        text = Json::Value(*real).asString() + ", ";
    else if (std::holds_alternative<bool>(value.value))
        text = value.BoolValue() ? "true, " : "false, ";
    else if (value.IsNumber())
        text = std::to_string(value.LongLongValue()) + ", ";
    return text + KindOf(value);
}

void Add(std::string& why, const std::string& reason) {
    why += (why.empty() ? "" : "; ") + reason;
}

// Who answers what the server does not. `wanted` names what the manifest's value would have to be.
const char* BelowServer(const Setting& setting, bool isWanted, const char* wanted, std::string& why) {
    if (isWanted) return kManifest;
    Add(why, setting.manifest ? std::string("the manifest's value is ") + KindOf(*setting.manifest) + ", not " + wanted
                              : "the manifest has no such key");
    return kDefault;
}

// Reasons that all reads of a text have in common. False if the server has no text.
bool ExplainStored(const Setting& setting, std::string& why) {
    if (!setting.stored)
        Add(why,
            setting.isNamed ? "the server's text is empty, which counts as not there" : "the server has no such key");
    if (setting.isCut) Add(why, "what stands behind the \"#\" is cut off");
    return setting.stored.has_value();
}

// What becomes of a text that is read as a whole number, by the type's limits.
void ExplainNumber(const std::string& text, long long least, long long most, std::string& why) {
    char* end = nullptr;
    errno = 0;
    const long long number = strtoll(text.c_str(), &end, 10);
    if (end == text.c_str())
        Add(why, Quoted(text) + " begins with no number");
    else if (errno == ERANGE || number < least || number > most)
        Add(why, text + " does not fit, so it is the nearest limit");
    else if (*end)
        Add(why, "only the number in front of " + Quoted(end) + " counts");
}

ExplainedRead ReadInt(const Setting& setting, int defaultValue) {
    std::string why;
    const char* from = kServer;
    const bool isNumber = setting.manifest && setting.manifest->IsNumber();
    if (!ExplainStored(setting, why)) {
        from = BelowServer(setting, isNumber, "a number", why);
    } else if (setting.stored->empty()) {
        Add(why, "an empty text counts as not there");
        from = BelowServer(setting, isNumber, "a number", why);
    } else {
        ExplainNumber(*setting.stored, INT_MIN, INT_MAX, why);
        const long long wide = setting.bundle->Get(setting.section, setting.key, 0LL);
        if (std::clamp<long long>(wide, INT_MIN, INT_MAX) == defaultValue) {
            Add(why, "a stored int that equals the default counts as not there");
            from = BelowServer(setting, isNumber, "a number", why);
        }
    }
    return {"int", setting.bundle->Get(setting.section, setting.key, defaultValue), from, why};
}

ExplainedRead ReadLong(const Setting& setting, long long defaultValue) {
    std::string why;
    const char* from = kServer;
    if (!ExplainStored(setting, why)) {
        from = BelowServer(setting, setting.manifest && setting.manifest->IsConvertible(), "a number or a text", why);
    } else if (setting.stored->empty()) {
        Add(why, "an empty text gives the default, whatever the manifest has");
        from = kDefault;
    } else {
        ExplainNumber(*setting.stored, LLONG_MIN, LLONG_MAX, why);
    }
    const long long value = setting.bundle->Get(setting.section, setting.key, defaultValue);
    return {"long", Json::Value(Json::Int64{value}), from, why};
}

ExplainedRead ReadBool(const Setting& setting, bool defaultValue) {
    std::string why;
    const char* from = kServer;
    const bool value = setting.bundle->Get(setting.section, setting.key, defaultValue);
    if (!ExplainStored(setting, why)) {
        from = BelowServer(setting, setting.manifest && setting.manifest->IsConvertible(), "a number or a text", why);
    } else if (setting.stored->empty()) {
        Add(why, "an empty text gives the default, whatever the manifest has");
        from = kDefault;
    } else if (!value) {
        Add(why, "only the text \"true\" is true");
    }
    return {"bool", value, from, why};
}

// The text and, since a real number is read from it, who answers.
ExplainedRead ReadString(const Setting& setting, const std::string& defaultValue) {
    std::string why;
    const char* from = kServer;
    if (!ExplainStored(setting, why))
        from = BelowServer(setting, setting.manifest && setting.manifest->Text(), "a text", why);
    const AString value = setting.bundle->Get(setting.section, setting.key, defaultValue.c_str());
    return {"string", value.c_str(), from, why};
}

ExplainedRead ReadDouble(const Setting& setting, double defaultValue) {
    ExplainedRead read = ReadString(setting, "");
    const std::string text = read.value.asString();
    read.type = "double";
    read.value = defaultValue;
    if (read.from == kDefault) return read;
    double value = 0;
    if (Quern::str2double(text.c_str(), &value)) {
        read.value = value;
    } else {
        Add(read.why, Quoted(text) + " is no number");
        read.from = kDefault;
    }
    return read;
}

}  // namespace

Explanation Explain(const IniText* stored, InfoValue manifest, const std::string& section, const std::string& key,
                    const std::string& defaultText) {
    const auto inForce = std::make_shared<GivenManifest>(std::move(manifest));
    InfoDictionary::Use(inForce);
    Quern::ConsoleSink::Use(std::make_shared<SilentConsole>());
    Explanation explanation;
    explanation.manifestSection = section == Quern::GameId() ? "OrvaneGame" : section;

    Setting setting{section.c_str(), key.c_str(), {}, false, false, nullptr, nullptr};
    if (stored) {
        const auto keys = stored->Keys(section);
        setting.isNamed = std::find(keys.begin(), keys.end(), key) != keys.end();
    }
    std::string_view value;
    if (stored && stored->Find(section, key, value)) {
        setting.stored = value;
        setting.isCut = IsCut(*stored, section, key);
    }
    explanation.server = setting.stored;
    if (const InfoValue* const dictionary = inForce->Root().Find(explanation.manifestSection.c_str()))
        setting.manifest = dictionary->Find(key.c_str());
    if (setting.manifest) explanation.manifest = ManifestText(*setting.manifest);
    setting.bundle = MakeBundle(setting);

    const long long number = strtoll(defaultText.c_str(), nullptr, 10);
    const bool isTrue = strcasecmp(defaultText.c_str(), "true") == 0 || number != 0;
    explanation.reads = {
        ReadInt(setting, static_cast<int>(std::clamp<long long>(number, INT_MIN, INT_MAX))),
        ReadLong(setting, number),
        ReadDouble(setting, strtod(defaultText.c_str(), nullptr)),
        ReadBool(setting, isTrue),
        ReadString(setting, defaultText),
    };
    return explanation;
}

std::string AsText(const Explanation& explanation, const std::string& defaultText) {
    const std::string manifest = explanation.manifest.empty() ? "nothing" : explanation.manifest;
    std::string text = "server    " + (explanation.server ? Quoted(*explanation.server) : "nothing") + "\nmanifest  " +
                       manifest + ", in " + explanation.manifestSection + "\ndefault   " + Quoted(defaultText) + "\n";
    for (const ExplainedRead& read : explanation.reads) {
        const std::string value = read.value.isString() ? Quoted(read.value.asString()) : read.value.asString();
        text += std::string(read.type) + ": " + value + ", from the " + read.from;
        text += read.why.empty() ? "\n" : " (" + read.why + ")\n";
    }
    return text;
}

Json::Value AsJson(const Explanation& explanation, const std::string& defaultText) {
    Json::Value root(Json::objectValue);
    if (explanation.server) root["server"] = *explanation.server;
    if (!explanation.manifest.empty()) root["manifest"] = explanation.manifest;
    root["manifest_section"] = explanation.manifestSection;
    root["default"] = defaultText;
    for (const ExplainedRead& read : explanation.reads) {
        Json::Value& entry = root["reads"][read.type];
        entry["value"] = read.value;
        entry["from"] = read.from;
        if (!read.why.empty()) entry["why"] = read.why;
    }
    return root;
}

}  // namespace OrvaneStore
