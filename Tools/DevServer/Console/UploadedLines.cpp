// The lines in what a device has sent, read by the reader of the command orvane-log.
#include <algorithm>
#include <cctype>
#include <cstring>
#include <memory>
#include <set>

#include "Base/LogLevelWords.h"
#include "DevServer/Console/UploadShelf.h"
#include "Log/KeyFile.h"
#include "Log/LeftOver.h"
#include "Log/LogFileName.h"
#include "Log/LogWalk.h"
#include "Log/Printer.h"
#include "Log/Report.h"
#include "Log/SourceList.h"
#include "Log/TextEvents.h"
#include "Orvane/LogPriority.h"

namespace OrvaneDevServer {
namespace {

constexpr uint64_t kMostSourceBytes = 64 << 20;  // of all files of one query
constexpr size_t kMostPageBytes = 4 << 20;
constexpr size_t kMostNotes = 20;
constexpr size_t kMostModules = 100;

char Lower(char c) {
    return static_cast<char>(tolower(static_cast<unsigned char>(c)));
}

bool IsFoundIn(std::string_view text, const std::string& lowered) {
    return std::search(text.begin(), text.end(), lowered.begin(), lowered.end(),
                       [](char left, char right) { return Lower(left) == right; }) != text.end();
}

// Keeps the page that was asked for, and counts the rest.
class Page : public OrvaneLog::Printer {
public:
    explicit Page(const LineQuery& query) : _query(query), _text(query.text) {
        std::transform(_text.begin(), _text.end(), _text.begin(), Lower);
    }

    void Print(const OrvaneLog::Entry& entry) override {
        const bool isLine = entry.kind == OrvaneLog::EntryKind::kLine;
        const std::string_view text = isLine ? entry.line.text : entry.whole;
        if (isLine && _modules.size() < kMostModules) _modules.emplace(entry.line.module);
        if (!_query.module.empty() && !(isLine && entry.line.module == _query.module)) return;
        if (!_text.empty() && !IsFoundIn(text, _text) && !(isLine && IsFoundIn(entry.line.function, _text))) return;
        const size_t number = _total++;
        if (number < _query.from || _lines.size() >= _query.most || _bytes > kMostPageBytes) return;
        Json::Value line(Json::objectValue);
        line["text"] = std::string(text);
        if (isLine) {
            line["time"] = std::string(entry.line.time);
            line["level"] = std::string(entry.line.levelWord);
            line["module"] = std::string(entry.line.module);
            line["thread"] = std::to_string(entry.line.thread);
            line["file"] = std::string(entry.line.file);
            line["line"] = std::string(entry.line.line);
            line["function"] = std::string(entry.line.function);
        }
        _bytes += entry.whole.size();
        _lines.append(line);
    }

    void Fill(Json::Value& answer) const {
        answer["lines"] = _lines;
        answer["total"] = static_cast<Json::UInt64>(_total);
        answer["modules"] = Json::Value(Json::arrayValue);
        for (const std::string& module : _modules)
            answer["modules"].append(module);
        for (int level = kLogDebug; level < kLogNone; ++level)
            answer["levels"].append(Quern::kLogLevelWords[level]);
    }

private:
    const LineQuery& _query;
    std::string _text;  // in lower case
    std::set<std::string> _modules;
    Json::Value _lines{Json::arrayValue};
    size_t _total = 0, _bytes = 0;
};

class Reading {
public:
    explicit Reading(const LineQuery& query)
        : _query(query), _page(query), _report([this](const std::string& what) { AddNote(what); }) {
        _filter.minimumLevel = query.minimumLevel;
    }

    Json::Value Run() {
        for (const std::string& path : _query.keyFiles)
            AddKey(path);
        const std::string from = _query.file.empty() ? _query.folder : _query.folder + "/" + _query.file;
        const OrvaneLog::SourceList list = OrvaneLog::ListSources({from}, {});
        for (const std::string& problem : list.problems)
            AddNote(problem);
        for (const std::string& path : list.files)
            ReadFile(path);
        Json::Value answer(Json::objectValue);
        _page.Fill(answer);
        answer["notes"] = _notes;
        answer["cut"] = _isCut;
        return answer;
    }

private:
    void AddNote(std::string note) {
        // The folder's own path says nothing to who looks at one upload.
        for (size_t at; (at = note.find(_query.folder + "/")) != std::string::npos;)
            note.erase(at, _query.folder.size() + 1);
        if (_notes.size() < kMostNotes) _notes.append(note);
    }

    void AddKey(const std::string& path) {
        Quern::CurvePrivateKey key;
        std::string error, warning;
        if (OrvaneLog::ReadKeyFile(path, key, error, warning))
            _keys.Add(key, path);
        else
            AddNote(error);
        explicit_bzero(key.data(), key.size());
    }

    void ReadFile(const std::string& path) {
        std::string error;
        const std::unique_ptr<OrvaneLog::ByteSource> opened = OrvaneLog::OpenSource(path, error);
        if (!opened) return AddNote(path + ": " + error);
        const uint64_t size = opened->Size().value_or(0), left = kMostSourceBytes - _read;
        _isCut = _isCut || size > left;
        if (left == 0) return;
        OrvaneLog::BoundedSource source(*opened, std::min(size, left));
        _read += std::min(size, left);
        const OrvaneLog::SourceKind kind = OrvaneLog::KindOf(path, source);
        OrvaneLog::TextEvents text(_page, _filter, OrvaneLog::ParseLogFileName(path).module,
                                   kind == OrvaneLog::SourceKind::kText);
        OrvaneLog::ReportingEvents events(_report, path, &text);
        if (kind == OrvaneLog::SourceKind::kMappedBlock)
            OrvaneLog::WalkLeftOver(OrvaneLog::ReadLeftOver(path, source), _keys, events);
        else
            OrvaneLog::MakeWalk(kind, source, _keys, events)->Advance(false);
        text.End();
        _report.EndSource(path);
    }

    const LineQuery& _query;
    Page _page;
    Json::Value _notes{Json::arrayValue};
    OrvaneLog::Report _report;
    OrvaneLog::FilterOptions _filter;
    OrvaneLog::KeyRing _keys;
    uint64_t _read = 0;
    bool _isCut = false;
};

}  // namespace

Json::Value ReadUploadedLines(const LineQuery& query) {
    return Reading(query).Run();
}

}  // namespace OrvaneDevServer
