#include "DevServer/Console/Console.h"

#include <algorithm>
#include <cstring>

#include "DevServer/Console/ConsoleFiles.h"
#include "DevServer/Console/EventFiles.h"
#include "DevServer/Console/KeyRows.h"
#include "DevServer/Console/UploadShelf.h"
#include "DevServer/JsonAnswer.h"
#include "DevServer/Lint/Lint.h"
#include "Log/KeyFile.h"

namespace OrvaneDevServer {
namespace {

constexpr std::chrono::seconds kPatience{20};  // of a page that waits
constexpr char kIndex[] = "index.html";
constexpr char kData[] = "/data/";

// Nothing but the page's own files: whatever a device sends stays text, even if a script were to slip.
constexpr char kPolicy[] =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; connect-src 'self'; base-uri 'none'; "
    "form-action 'none'; frame-ancestors 'none'; require-trusted-types-for 'script'; trusted-types 'none'";

Answer Guarded(Answer answer) {
    answer.headers.insert(answer.headers.end(), {{"Content-Security-Policy", kPolicy},
                                                 {"X-Content-Type-Options", "nosniff"},
                                                 {"Referrer-Policy", "no-referrer"},
                                                 {"Cross-Origin-Resource-Policy", "same-origin"},
                                                 {"Cross-Origin-Opener-Policy", "same-origin"},
                                                 {"Cache-Control", "no-store"}});
    return answer;
}

// A value of the query, decoded; empty if there is none.
std::string ValueOf(const Target& target, const char* name) {
    Problems ignored;
    const std::string* const value = FindValue(target, name);
    return value ? DecodeValue(name, *value, ignored) : "";
}

uint64_t NumberOf(const Target& target, const char* name) {
    uint64_t number = 0;
    return ReadDecimal(ValueOf(target, name), number) ? number : 0;
}

const char* ContentType(std::string_view name) {
    if (name.ends_with(".html")) return "text/html; charset=utf-8";
    if (name.ends_with(".css")) return "text/css; charset=utf-8";
    if (name.ends_with(".svg")) return "image/svg+xml";
    return "text/javascript; charset=utf-8";
}

Answer File(const std::string& name) {
    for (const ConsoleFile& file : ConsoleFiles()) {
        if (file.name != name) continue;
        Answer answer;
        answer.contentType = ContentType(file.name);
        answer.body = file.content;
        return answer;
    }
    return ErrorAnswer(404, "there is no such file of the console");
}

int StatusOf(ModuleEditor::Result result) {
    switch (result) {
        case ModuleEditor::Result::kDone:
            return 200;
        case ModuleEditor::Result::kNoName:
        case ModuleEditor::Result::kRefused:
            return 400;
        case ModuleEditor::Result::kChanged:
            return 409;
        case ModuleEditor::Result::kFailed:
            break;
    }
    return 500;
}

ModuleName NameOf(const Target& target) {
    return {ValueOf(target, "device"), ValueOf(target, "name")};
}

}  // namespace

Console::Console(std::string folder, std::vector<std::string> keyFiles, ServedTo servedTo)
    : _folder(std::move(folder)),
      _keyFiles(std::move(keyFiles)),
      _servedTo(std::move(servedTo)),
      _editor(_folder),
      _changes({_folder + "/modules", _folder + "/devices", _folder + "/events"}) {}

bool Console::CheckKeys(std::string& error) const {
    Quern::CurvePrivateKey key;
    std::string ignored;
    const bool areKeys = std::all_of(_keyFiles.begin(), _keyFiles.end(), [&](const std::string& path) {
        return OrvaneLog::ReadKeyFile(path, key, error, ignored);
    });
    explicit_bzero(key.data(), key.size());
    if (!areKeys) error = "--key: " + error;
    return areKeys;
}

void Console::Take(const Json::Value& line, const Json::Value* taken) {
    _book.Take(line, taken);
    _changes.Tell();
}

Answer Console::Handle(const Request& request, const Target& target, const std::string& path) {
    if (path.starts_with(kData)) return Guarded(Data(request, target, path.substr(sizeof kData - 1)));
    if (request.method != "GET") return Guarded(ErrorAnswer(405, "not by " + request.method));
    if (!path.empty()) return Guarded(File(path == "/" ? kIndex : path.substr(1)));
    Answer answer;  // the page's own addresses count from the slash
    answer.status = 302;
    answer.headers = {{"Location", std::string(kConsolePath) + "/"}};
    return Guarded(answer);
}

Answer Console::Data(const Request& request, const Target& target, const std::string& what) {
    if (what == "module") return Module(request, target);
    if (what == "lint" && request.method == "POST") return Lint(request, target);
    if (request.method != "GET") return ErrorAnswer(405, "not by " + request.method);
    if (what == "changes") return WaitForChange(request, target);
    if (what == "devices") return JsonAnswer(200, _book.Devices());
    if (what == "device") {
        const Json::Value device = Device(ValueOf(target, "did"));
        return device.isNull() ? ErrorAnswer(404, "no such device has asked") : JsonAnswer(200, device);
    }
    if (what == "requests") return JsonAnswer(200, _book.Requests(ValueOf(target, "did")));
    if (what == "events") return JsonAnswer(200, ReadEvents(_folder + "/events", ValueOf(target, "name")));
    if (what == "uploads") return JsonAnswer(200, ListUploads(_folder + "/uploads"));
    if (what == "lines") return Lines(target);
    if (what == "modules") return JsonAnswer(200, Modules());
    return ErrorAnswer(404, "there is no such data");
}

Answer Console::WaitForChange(const Request& request, const Target& target) {
    const Changes::Look look = _changes.WaitForOther(NumberOf(target, "after"), kPatience, request.senderHasLeft);
    Json::Value value(Json::objectValue);
    value["now"] = static_cast<Json::UInt64>(look.now);
    value["full"] = look.isFull;
    return JsonAnswer(200, value);
}

Json::Value Console::Device(const std::string& did) const {
    Json::Value device = _book.Device(did);
    if (device.isNull()) return device;
    const Served served = _servedTo(did);
    device["served_rule_id"] = served.ruleId;
    Json::Value own(Json::arrayValue);  // modules of which this device has keys of its own
    for (const ModuleName& name : _editor.List())
        if (name.device == did) own.append(name.module);
    device["own_modules"] = own;
    Json::Value rows(Json::arrayValue);
    const Json::Value& modules = device["modules"];
    if (modules.isObject())
        for (const std::string& module : modules.getMemberNames())
            AddKeyRows(module, modules[module], rows);
    device["keys"] = rows;
    device["is_known"] = modules.isObject();
    device.removeMember("modules");
    return device;
}

Json::Value Console::Modules() const {
    Json::Value list(Json::arrayValue);
    for (const ModuleName& name : _editor.List()) {
        std::string text, digest, why;
        Json::Value entry(Json::objectValue);
        entry["device"] = name.device;
        entry["name"] = name.module;
        Findings findings;
        if (_editor.Read(name, text, digest, why))
            findings = LintModuleText(name.module, text, Inherited(name));
        else
            findings.push_back({Severity::kError, "no-module", name.module, "", why});
        entry["findings"] = FindingList(findings);
        entry["bytes"] = static_cast<Json::UInt64>(text.size());
        list.append(entry);
    }
    return list;
}

// What a device is sent of the module by the files for all.
Json::Value Console::Inherited(const ModuleName& name) const {
    if (name.device.empty()) return {};
    const Json::Value modules = _servedTo("").modules;
    return modules.get(name.module, Json::Value());
}

Answer Console::Lint(const Request& request, const Target& target) const {
    const ModuleName name = NameOf(target);
    Json::Value value(Json::objectValue);
    value["findings"] = FindingList(LintModuleText(name.module, request.body, Inherited(name)));
    return JsonAnswer(200, value);
}

Answer Console::Module(const Request& request, const Target& target) {
    const ModuleName name = NameOf(target);
    std::string text, digest, why;
    if (request.method == "GET") {
        if (!_editor.Read(name, text, digest, why)) return ErrorAnswer(400, why);
        Json::Value value(Json::objectValue);
        value["text"] = text;
        value["digest"] = digest;
        value["findings"] =
            FindingList(digest.empty() ? Findings{} : LintModuleText(name.module, text, Inherited(name)));
        return JsonAnswer(200, value);
    }
    ModuleEditor::Result result = ModuleEditor::Result::kNoName;
    if (request.method == "PUT")
        result = _editor.Write(name, request.body, ValueOf(target, "was"), why);
    else if (request.method == "DELETE")
        result = _editor.Remove(name, ValueOf(target, "was"), why);
    else
        return ErrorAnswer(405, "not by " + request.method);
    if (result != ModuleEditor::Result::kDone) return ErrorAnswer(StatusOf(result), why);
    Json::Value value(Json::objectValue);
    value["rule_id"] = _servedTo("").ruleId;  // which also takes the file
    if (_editor.Read(name, text, digest, why)) value["digest"] = digest;
    _changes.Tell();
    return JsonAnswer(200, value);
}

Answer Console::Lines(const Target& target) const {
    constexpr size_t kMostLines = 1000;
    const std::string device = ValueOf(target, "device"), folder = ValueOf(target, "folder");
    LineQuery query;
    query.file = ValueOf(target, "file");
    if (!IsPlainFileName(device) || !IsPlainFileName(folder) || (!query.file.empty() && !IsPlainFileName(query.file)))
        return ErrorAnswer(400, "an upload is named by two folders");
    query.folder = _folder + "/uploads/" + device + "/" + folder + "/files";
    query.minimumLevel = static_cast<int>(std::min<uint64_t>(NumberOf(target, "level"), 5));
    query.module = ValueOf(target, "module");
    query.text = ValueOf(target, "text");
    query.from = NumberOf(target, "from");
    if (const uint64_t most = NumberOf(target, "most"); most > 0) query.most = std::min<uint64_t>(most, kMostLines);
    query.keyFiles = _keyFiles;
    return JsonAnswer(200, ReadUploadedLines(query));
}

}  // namespace OrvaneDevServer
