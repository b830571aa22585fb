#include "DevServer/Console/KeyRows.h"

#include <algorithm>
#include <iterator>

#include "DevServer/JsonText.h"
#include "DevServer/Lint/KnownKeys.h"
#include "DevServer/Lint/Lint.h"
#include "DevServer/Lint/StoredValue.h"

namespace OrvaneDevServer {
namespace {

std::string TextOf(const ReadResult& read) {
    switch (read.answerer) {
        case Answerer::kServer:
            return read.text;
        case Answerer::kManifest:
            return "(manifest)";
        case Answerer::kDefault:
            break;
    }
    return "(default)";
}

std::string Effective(const KnownKey& known, const Reads& reads) {
    switch (known.type) {
        case KeyType::kInt:
            return reads.asInt.text == known.defaultText ? "(manifest, else " + std::string(known.defaultText) + ")"
                                                         : TextOf(reads.asInt);
        case KeyType::kBool:
            return TextOf(reads.asBool);
        case KeyType::kText:
            break;
    }
    const bool isTooLong = known.module == kCoreModule && reads.asString.text.size() >= kCoreTextRoom;
    return isTooLong ? "(default)" : TextOf(reads.asString);
}

const char* TypeWord(KeyType type) {
    return type == KeyType::kInt ? "int" : type == KeyType::kBool ? "bool" : "text";
}

std::string JsonOf(const Json::Value& value) {
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    builder["emitUTF8"] = true;
    return Json::writeString(builder, value);
}

}  // namespace

Json::Value FindingList(const Findings& findings) {
    Json::Value list(Json::arrayValue);
    for (const Finding& finding : findings) {
        Json::Value entry(Json::objectValue);
        entry["severity"] = SeverityWord(finding.severity);
        entry["rule"] = finding.rule;
        entry["module"] = finding.module;
        entry["key"] = finding.key;
        entry["text"] = finding.text;
        list.append(entry);
    }
    return list;
}

void AddKeyRows(const std::string& module, const Json::Value& keys, Json::Value& rows) {
    if (!keys.isObject()) return;
    const Findings findings = LintModule(module, keys);
    for (const std::string& key : keys.getMemberNames()) {
        const StoredValue stored = StoreValue(keys[key]);
        const Reads reads = ReadsOf(stored);
        Json::Value row(Json::objectValue);
        row["module"] = module;
        row["key"] = key;
        row["sent"] = JsonOf(keys[key]);
        row["kind"] = KindOf(keys[key]);
        row["stored"] = stored.isKept ? Json::Value(stored.text) : Json::Value();
        row["changed"] = !stored.isKept || keys[key].asString() != stored.text;
        row["reads"]["int"] = TextOf(reads.asInt);
        row["reads"]["long"] = TextOf(reads.asLong);
        row["reads"]["double"] = TextOf(reads.asDouble);
        row["reads"]["bool"] = TextOf(reads.asBool);
        row["reads"]["string"] = TextOf(reads.asString);
        if (const KnownKey* known = FindKnownKey(module, key)) {
            row["type"] = TypeWord(known->type);
            row["effective"] = Effective(*known, reads);
        }
        Findings ofKey;
        std::copy_if(findings.begin(), findings.end(), std::back_inserter(ofKey),
                     [&key](const Finding& finding) { return finding.key == key; });
        row["findings"] = FindingList(ofKey);
        rows.append(row);
    }
}

}  // namespace OrvaneDevServer
