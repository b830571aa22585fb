#include "Forwarder.h"

#include <stdlib.h>
#include <string.h>

#include "Orvane/IPluginManager.h"
#include "Orvane/RunTime.h"
#include "Otlp/Environment.h"
#include "Otlp/Messages.h"
#include "OtlpMapping.h"

namespace Pell {
namespace {

// A take-down that was not called for, at the end of the process.
constexpr std::chrono::milliseconds kExitDeadline(1000);

void SayLine(const std::string& line) {
    orvane_console_log("PELL OTLP: %s", line.c_str());
}

bool WantsOpenId() {
    const char* const wanted = getenv("PELL_OTLP_OPENID");
    return wanted && strcmp(wanted, "1") == 0;
}

std::unique_ptr<OrvaneOtlp::Exporter> MakeExporter(const OrvaneOtlp::Endpoint& endpoint,
                                                   OrvaneOtlp::Exporter::Encoder encode) {
    if (!endpoint.IsSet()) return nullptr;
    OrvaneOtlp::ExporterOptions options;
    options.exitDeadline = kExitDeadline;
    return std::unique_ptr<OrvaneOtlp::Exporter>(
        new OrvaneOtlp::Exporter(endpoint, std::move(encode), SayLine, options));
}

}  // namespace

Forwarder::Forwarder() {
    const OrvaneOtlp::Settings settings = OrvaneOtlp::ReadEnvironment();
    for (const std::string& problem : settings.problems)
        SayLine(problem);
    const OrvaneOtlp::Attributes resource = settings.resource;
    const bool withOpenId = WantsOpenId();
    _spans = MakeExporter(settings.traces, [resource, withOpenId](const std::vector<std::string>& items) {
        std::vector<OrvaneOtlp::Span> spans;
        for (const std::string& item : items)
            spans.push_back(SpanOf(EventBytes::Read(item), withOpenId));
        return OrvaneOtlp::TracesMessage(resource, Orvane::Plugin::kCoreModule, spans);
    });
    _logs = MakeExporter(settings.logs, [resource, withOpenId](const std::vector<std::string>& items) {
        std::vector<OrvaneOtlp::LogRecord> records;
        for (const std::string& item : items)
            records.push_back(LogRecordOf(EventBytes::Read(item), withOpenId));
        return OrvaneOtlp::LogsMessage(resource, records);
    });
}

bool Forwarder::Wants(const char* eventName) const {
    return strcmp(eventName, kSpanEventName) == 0 ? _spans != nullptr : _logs != nullptr;
}

void Forwarder::Send(const EventBytes& event, bool isSpan) {
    OrvaneOtlp::Exporter* const exporter = isSpan ? _spans.get() : _logs.get();
    if (exporter) exporter->Offer(event.ReportedAt(OrvaneOtlp::NanosSinceEpoch()));
}

void Forwarder::Flush(std::chrono::milliseconds deadline) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    for (OrvaneOtlp::Exporter* const exporter : {_spans.get(), _logs.get()}) {
        const auto left = end - std::chrono::steady_clock::now();
        if (exporter) exporter->Flush(std::chrono::duration_cast<std::chrono::milliseconds>(left));
    }
}

ForwardedEvent::ForwardedEvent(Forwarder& forwarder, int source, const char* name)
    : _forwarder(forwarder), _bytes(source, name), _isSpan(strcmp(name, kSpanEventName) == 0) {}

void ForwardedEvent::Add(const char* key, const char* value, int length) {
    _bytes.Add(key, value, length);
    if (!_isSpan || !key || !value || length <= 0) return;
    _hasTrace = _hasTrace || strcmp(key, "tid") == 0;
    _hasId = _hasId || strcmp(key, "sid") == 0;
}

}  // namespace Pell
