#include "DevServer/Lint/Lint.h"

#include <algorithm>
#include <filesystem>

#include "DevServer/JsonText.h"
#include "DevServer/Lint/Rules.h"

namespace OrvaneDevServer {
namespace {

constexpr void (*kKeyRules[])(const LintedKey&, Findings&) = {
    FindDroppedValue, FindChangedNumber, FindCutText,    FindLongText,    FindOddKeyName,
    FindMisspeltKey,  FindUnreadFlag,    FindTextForInt, FindDefault,     FindOddGap,
    FindServerMove,   FindOddLogLevel,   FindOddPattern, FindOddUploadId, FindNextLaunch,
};

Json::Value Merged(const Json::Value& inherited, const Json::Value& keys) {
    if (!inherited.isObject()) return keys;
    Json::Value merged = inherited;
    for (const std::string& key : keys.getMemberNames())
        merged[key] = keys[key];
    return merged;
}

Finding NoModule(const std::string& module, const std::string& why) {
    return {Severity::kError, "no-module", module, "", why};
}

Findings LintAnswer(const Json::Value& answer) {
    const Json::Value& modules = answer["biz_data"]["merged_cfg"];
    if (!modules.isObject()) return {NoModule("", "\"merged_cfg\" is no object: the client keeps what it has")};
    Findings findings;
    for (const std::string& module : modules.getMemberNames()) {
        const Findings found = LintModule(module, modules[module]);
        findings.insert(findings.end(), found.begin(), found.end());
    }
    return findings;
}

}  // namespace

const char* SeverityWord(Severity severity) {
    switch (severity) {
        case Severity::kNote:
            return "note";
        case Severity::kWarning:
            return "warning";
        case Severity::kError:
            break;
    }
    return "error";
}

Findings LintModule(const std::string& module, const Json::Value& keys, const Json::Value& inherited) {
    if (!keys.isObject()) return {NoModule(module, std::string("it is ") + KindOf(keys) + ", not an object of keys")};
    Findings findings;
    for (const std::string& key : keys.getMemberNames()) {
        const LintedKey linted{module, key, keys[key], StoreValue(keys[key]), FindKnownKey(module, key)};
        for (const auto rule : kKeyRules)
            rule(linted, findings);
    }
    FindOddPartSize(module, Merged(inherited, keys), findings);
    return findings;
}

Findings LintModuleText(const std::string& module, const std::string& text, const Json::Value& inherited) {
    Json::Value keys;
    std::string error;
    if (!ReadStrictly(text, keys, error)) return {NoModule(module, "it is no JSON: " + error)};
    return LintModule(module, keys, inherited);
}

Findings LintText(const std::string& fileName, const std::string& text) {
    const std::string module = std::filesystem::path(fileName).stem().string();
    Json::Value root;
    std::string error;
    if (!ReadStrictly(text, root, error)) return {NoModule(module, "it is no JSON: " + error)};
    const Json::Value& read = root;  // so that what is missing reads as null
    if (root.isObject() && read["biz_data"].isObject()) return LintAnswer(read);
    if (root.isObject() && read["result"].isObject() && read["result"].isMember("traceids")) {
        Findings findings;
        FindOddTraceIds(read["result"]["traceids"], findings);
        return findings;
    }
    return LintModule(module, root);
}

bool HasFault(const Findings& findings) {
    return std::any_of(findings.begin(), findings.end(),
                       [](const Finding& finding) { return finding.severity != Severity::kNote; });
}

}  // namespace OrvaneDevServer
