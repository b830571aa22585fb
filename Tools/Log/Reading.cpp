#include "Log/Reading.h"

#include <errno.h>
#include <string.h>

#include <filesystem>

#include "Log/KeyFile.h"
#include "Log/LeftOver.h"
#include "Log/LogFileName.h"
#include "Log/OtlpPrinter.h"
#include "Log/RecordTable.h"
#include "Log/SourceList.h"
#include "Log/TailPrinter.h"
#include "Log/TextEvents.h"

namespace OrvaneLog {
namespace {

namespace fs = std::filesystem;

// Reports, and moves the progress bar.
class WatchedEvents : public ReportingEvents {
public:
    WatchedEvents(Report& report, const std::string& path, ReadEvents* next, Progress* progress, uint64_t before)
        : ReportingEvents(report, path, next), _progress(progress), _before(before) {}

    void OnRecordEnd(const RecordReport& record) override {
        ReportingEvents::OnRecordEnd(record);
        if (_progress) _progress->At(_before + record.offset + record.size);
    }
    void OnTextRead(uint64_t offset) override {
        ReportingEvents::OnTextRead(offset);
        if (_progress) _progress->At(_before + offset);
    }

private:
    Progress* _progress;
    uint64_t _before;
};

}  // namespace

bool LoadKeys(const std::vector<std::string>& files, const std::string& from, KeyRing& ring, Report& report) {
    bool good = true;
    for (const std::string& file : files) {
        Quern::CurvePrivateKey key;
        std::string error, warning;
        if (!ReadKeyFile(file, key, error, warning)) {
            report.Problem(from + ": " + error);
            good = false;
            continue;
        }
        if (!warning.empty()) report.Note(warning);
        ring.Add(key, file);
        explicit_bzero(key.data(), key.size());
    }
    return good;
}

std::unique_ptr<Printer> MakePrinter(const Arguments& arguments, Look look, Output& output, Report& report) {
    if (!arguments.otlpUrl.empty()) return std::make_unique<OtlpPrinter>(arguments, report);
    if (arguments.json) return std::make_unique<JsonPrinter>(output);
    const bool untouched = look == Look::kAsItStands && arguments.filter.IsEmpty() && !arguments.lines &&
                           !arguments.merge && arguments.action != Action::kFollow;
    return untouched ? nullptr : std::make_unique<TextPrinter>(output, look);
}

void Reading::Run() {
    const SourceList list = ListSources(_arguments.paths, _arguments.filter.modules);
    for (const std::string& problem : list.problems)
        _report.Problem(problem);

    FindTornFiles(list.files);

    std::unique_ptr<Printer> printer = MakePrinter(_arguments, _look, _output, _report);
    std::unique_ptr<TailPrinter> tail;
    if (_arguments.lines) tail = std::make_unique<TailPrinter>(*printer, *_arguments.lines);
    Printer* const last = tail ? tail.get() : printer.get();
    std::unique_ptr<MergePrinter> merge;
    if (_arguments.merge) merge = std::make_unique<MergePrinter>(*last);
    if (_arguments.action == Action::kRecords && !_arguments.json) RecordTable::WriteHeading(_output);
    for (const std::string& file : list.files)
        ReadFile(file, merge ? merge.get() : last, merge.get());
    if (merge && !merge->Release()) _report.Problem(std::string("temporary file: ") + strerror(errno));
    if (tail) tail->Release();
    if (printer) printer->End();
    _output.Flush();
}

// A file that a dead logger left with a part of a record at its end is read up to there, if the block that goes with it
// is read as well: the whole record comes with that.
void Reading::FindTornFiles(const std::vector<std::string>& files) {
    for (const std::string& path : files) {
        std::string ignored;
        if (!ParseLogFileName(path).isBlock) continue;
        const std::unique_ptr<ByteSource> block = OpenSource(path, ignored);
        if (!block) continue;
        const LeftOver leftOver = ReadLeftOver(path, *block);
        std::error_code error;
        if (!leftOver.tornFile.empty()) _tornFrom[fs::weakly_canonical(leftOver.tornFile, error)] = leftOver.tornFrom;
    }
}

void Reading::ReadFile(const std::string& path, Printer* printer, MergePrinter* merge) {
    if (merge) merge->BeginSource();
    std::string error;
    std::unique_ptr<ByteSource> opened = OpenSource(path, error);
    if (!opened) {
        _report.Problem(path + ": " + error);
        return;
    }
    std::error_code ignored;
    const auto torn = _tornFrom.empty() ? _tornFrom.end() : _tornFrom.find(fs::weakly_canonical(path, ignored));
    std::unique_ptr<ByteSource> bounded;
    if (torn != _tornFrom.end()) bounded = std::make_unique<BoundedSource>(*opened, torn->second);
    ByteSource* const source = bounded ? bounded.get() : opened.get();
    const SourceKind kind = KindOf(path, *source);
    if (_arguments.action == Action::kRecords) {
        RecordTable table(_output, path, _arguments.json);
        Walk(path, kind, *source, &table);
        table.End();
    } else if (_arguments.action == Action::kVerify) {
        Walk(path, kind, *source, nullptr);
    } else {
        TextEvents text =
            printer ? TextEvents(*printer, _arguments.filter, ParseLogFileName(path).module, kind == SourceKind::kText)
                    : TextEvents(_output);
        Walk(path, kind, *source, &text);
        text.End();
    }
    _report.EndSource(path);
    if (source->Error() != 0) _report.Problem(path + ": " + strerror(source->Error()));
    _done += source->Size().value_or(0);
}

void Reading::Walk(const std::string& path, SourceKind kind, ByteSource& source, ReadEvents* events) {
    WatchedEvents watched(_report, path, events, _progress, _done);
    if (kind == SourceKind::kMappedBlock)
        WalkLeftOver(ReadLeftOver(path, source), _keys, watched);
    else
        MakeWalk(kind, source, _keys, watched)->Advance(false);
}

}  // namespace OrvaneLog
