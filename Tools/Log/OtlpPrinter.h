// Sends entries to an OTLP receiver in place of showing them.
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

// Makes log records of entries, in their order: what has no time of its own gets that of the line before it.
class LogRecords {
public:
    // `now`: when it is read.
    OrvaneOtlp::LogRecord Of(const Entry& entry, uint64_t now);

private:
    uint64_t _lastTime = 0;
};

// Waits where the receiver is slow, since nothing of a log is to be left out. When the receiver has refused entries, or
// has not taken them for a minute, the rest is not sent either, but for a log that is followed.
class OtlpPrinter : public Printer {
public:
    // Borrows the report, which is told of what goes wrong, on the thread that calls.
    OtlpPrinter(const Arguments& arguments, Report& report);
    void Print(const Entry& entry) override;
    // Waits until everything is sent, or has failed, and says how it went.
    void End() override;

private:
    void SayMessages();
    bool HasFailed() const { return !_isFollowing && _exporter->Counts().refused > 0; }

    Report& _report;
    const bool _isFollowing;
    std::mutex _mutex;
    std::vector<std::string> _messages;  // of the sender's thread, not said yet
    uint64_t _entries = 0;
    std::unique_ptr<OrvaneOtlp::Exporter> _exporter;  // null without an endpoint
};

}  // namespace OrvaneLog

#endif
