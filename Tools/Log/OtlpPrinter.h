// Sends entries to an OTLP receiver (OpenTelemetry, JSON over HTTP) in place of showing them.
#ifndef ORVANE_TOOLS_LOG_OTLP_PRINTER_H
#define ORVANE_TOOLS_LOG_OTLP_PRINTER_H

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "Log/Arguments.h"
#include "Log/Printer.h"
#include "Log/Report.h"
#include "Otlp/Exporter.h"

namespace OrvaneLog {

// Makes log records of entries, in their order: what has no time of its own gets that of the line before it. The
// module becomes the scope; the thread, file, line and function become attributes. One thread at a time.
class LogRecords {
public:
    // `now`: when the entry is read, in nanoseconds since 1970. The line's own time is local without a zone, and is
    // taken for that of this machine.
    OrvaneOtlp::LogRecord Of(const Entry& entry, uint64_t now);

private:
    uint64_t _lastTime = 0;  // nanoseconds since 1970; 0 before the first line
};

// Waits where the receiver is slow, since nothing of a log is to be left out. When the receiver has refused entries, or
// has not taken them for a minute, the rest is not sent either. Following goes on all the same.
//
// One thread prints. The exporter has a thread of its own, which encodes, sends and leaves its messages here.
class OtlpPrinter : public Printer {
public:
    // Borrows the report, which is told of what goes wrong, on the thread that calls. Where the arguments and the
    // environment give no receiver, that is a problem for the report, and nothing is sent.
    OtlpPrinter(const Arguments& arguments, Report& report);
    // Takes a copy of the entry, and waits while the exporter's queue is full.
    void Print(const Entry& entry) override;
    // Waits until everything is sent, or has failed, and says how it went.
    void End() override;

private:
    // Hands the sender's messages to the report.
    void SayMessages();
    bool HasFailed() const { return !_isFollowing && _exporter->Counts().refused > 0; }

    Report& _report;
    const bool _isFollowing;
    std::mutex _mutex;                                // guards _messages alone
    std::vector<std::string> _messages;               // of the sender's thread, not said yet
    uint64_t _entries = 0;                            // printed so far
    std::unique_ptr<OrvaneOtlp::Exporter> _exporter;  // null without an endpoint
};

}  // namespace OrvaneLog

#endif
