#include "Log/OtlpPrinter.h"

#include <charconv>
#include <ctime>

#include "Orvane/LogPriority.h"
#include "Otlp/Environment.h"
#include "Otlp/Messages.h"

namespace OrvaneLog {
namespace {

// So often the sender's messages are looked for while the reader waits for it.
constexpr std::chrono::milliseconds kLook{200};

OrvaneOtlp::ExporterOptions Options() {
    OrvaneOtlp::ExporterOptions options;
    options.giveUp = std::chrono::minutes(1);
    return options;
}

// yyyymmddhhmmssmmm of this machine's clock. 0 for a time that never was.
uint64_t NanosOf(LocalStamp stamp) {
    const auto take = [&stamp](uint64_t digits) {
        const uint64_t value = stamp % digits;
        stamp /= digits;
        return static_cast<int>(value);
    };
    const int millis = take(1000);
    tm local{};
    local.tm_sec = take(100);
    local.tm_min = take(100);
    local.tm_hour = take(100);
    local.tm_mday = take(100);
    local.tm_mon = take(100) - 1;
    local.tm_year = take(10000) - 1900;
    local.tm_isdst = -1;
    const time_t seconds = mktime(&local);
    return seconds < 0 ? 0 : (static_cast<uint64_t>(seconds) * 1000 + static_cast<uint64_t>(millis)) * 1000000;
}

// An event ranks below a warning here, or every count of warnings would have it.
OrvaneOtlp::SeverityNumber SeverityOf(int level) {
    switch (level) {
        case kLogDebug:
            return OrvaneOtlp::kSeverityDebug;
        case kLogInfo:
            return OrvaneOtlp::kSeverityInfo;
        case kLogWarning:
            return OrvaneOtlp::kSeverityWarn;
        case kLogEvent:
            return OrvaneOtlp::kSeverityInfo4;
        case kLogError:
            return OrvaneOtlp::kSeverityError;
        default:
            return OrvaneOtlp::kSeverityUnknown;
    }
}

void TakeLine(const LogLine& line, OrvaneOtlp::LogRecord& record) {
    record.scope = line.module;
    record.severity = SeverityOf(line.level);
    record.severityText = line.levelWord;
    record.body = line.text;
    record.attributes.Set("thread.id", static_cast<int64_t>(line.thread));
    record.attributes.Set("code.file.path", std::string(line.file));
    int64_t number = 0;
    std::from_chars(line.line.data(), line.line.data() + line.line.size(), number);
    record.attributes.Set("code.line.number", number);
    record.attributes.Set("code.function.name", std::string(line.function));
}

}  // namespace

OrvaneOtlp::LogRecord LogRecords::Of(const Entry& entry, uint64_t now) {
    OrvaneOtlp::LogRecord record;
    record.observed = now;
    if (entry.kind == EntryKind::kLine) {
        TakeLine(entry.line, record);
        _lastTime = NanosOf(entry.line.stamp);
    } else {
        record.body = entry.whole;
        if (entry.kind == EntryKind::kLossNotice) record.severity = OrvaneOtlp::kSeverityError;
    }
    record.time = _lastTime;
    return record;
}

OtlpPrinter::OtlpPrinter(const Arguments& arguments, Report& report)
    : _report(report), _isFollowing(arguments.action == Action::kFollow) {
    const OrvaneOtlp::Settings settings = OrvaneOtlp::ReadEnvironment(arguments.otlpUrl);
    for (const std::string& problem : settings.problems)
        _report.Note(problem);
    if (!settings.logs.IsSet()) {
        _report.Problem("--otlp: there is nowhere to send to" +
                        std::string(settings.problems.empty() ? ": OTEL_SDK_DISABLED is true" : ""));
        return;
    }
    auto records = std::make_shared<LogRecords>();  // the sender's thread alone uses it
    const auto encode = [records, resource = settings.resource](const std::vector<std::string>& entries) {
        const uint64_t now = OrvaneOtlp::NanosSinceEpoch();
        std::vector<OrvaneOtlp::LogRecord> batch;
        for (const std::string& whole : entries)
            batch.push_back(records->Of(MakeEntry(whole), now));
        return OrvaneOtlp::LogsMessage(resource, batch);
    };
    const auto say = [this](const std::string& message) {
        const std::lock_guard guard(_mutex);
        _messages.push_back(message);
    };
    _exporter = std::make_unique<OrvaneOtlp::Exporter>(settings.logs, encode, say, Options());
}

void OtlpPrinter::Print(const Entry& entry) {
    if (!_exporter) return;
    ++_entries;
    std::string item(entry.whole);
    while (!HasFailed() && !_exporter->Push(item, kLook))
        SayMessages();
    SayMessages();
}

void OtlpPrinter::End() {
    if (!_exporter) return;
    while (!HasFailed() && !_exporter->Flush(kLook))
        SayMessages();
    _exporter->Stop(std::chrono::milliseconds(0));
    SayMessages();
    const uint64_t sent = _exporter->Counts().sent;
    const std::string of = std::to_string(sent) + " of " + std::to_string(_entries) + " entries sent";
    if (sent < _entries)
        _report.Problem("only " + of);
    else
        _report.Note(of);
}

void OtlpPrinter::SayMessages() {
    std::vector<std::string> messages;
    {
        const std::lock_guard guard(_mutex);
        messages.swap(_messages);
    }
    for (const std::string& message : messages)
        _report.Note(message);
}

}  // namespace OrvaneLog
