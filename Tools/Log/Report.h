// What a reading found besides text: damage, records that no key opens, files that cannot be read. Says so as it goes
// and gives the exit status.
#ifndef ORVANE_TOOLS_LOG_REPORT_H
#define ORVANE_TOOLS_LOG_REPORT_H

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "Log/ReadEvents.h"

namespace OrvaneLog {

// Exit statuses, part of the command's interface.
enum ExitStatus : int {
    kExitSound = 0,
    kExitDamage = 1,      // something was skipped, or a record gave only part of its text
    kExitUnreadable = 2,  // wrong use, or a file that cannot be read or written
    kExitNoKey = 3,       // all sound, but there are encrypted records that no key opens
};

class Report {
public:
    // `say` gets each message, without a newline.
    explicit Report(std::function<void(const std::string&)> say) : _say(std::move(say)) {}

    // Something that could not be done at all.
    void Problem(const std::string& message);
    // Something worth knowing that is no fault of the log.
    void Note(const std::string& message) { _say(message); }

    void Record(const std::string& path, const RecordReport& record);
    void Skipped(const std::string& path, uint64_t offset, uint64_t size, const std::string& why);
    // A source is over: says once what would have been noise for each record.
    void EndSource(const std::string& path);

    // Names the keys that have opened nothing of what is encrypted.
    void SayIdleKeys(const std::vector<std::string>& keyFiles);
    std::string Summary() const;
    // The same as one JSON object, with the exit status that is given.
    std::string SummaryAsJson(ExitStatus status) const;
    bool HasDamage() const { return _damaged + _torn + _gaps > 0; }
    // `needsNoKey`: records may stay closed.
    ExitStatus Status(bool needsNoKey) const;

private:
    void CheckSequence(const RecordHeader& header);

    std::function<void(const std::string&)> _say;
    uint64_t _sources = 0, _problems = 0;
    uint64_t _records = 0, _damaged = 0, _torn = 0, _encrypted = 0;
    std::set<std::string> _keysInUse;
    uint64_t _gaps = 0, _skipped = 0, _missing = 0;
    // Of the source being read.
    uint64_t _encryptedHere = 0, _encryptedBytesHere = 0, _missingHere = 0;
    uint16_t _lastSeq = 0;
};

// Reports on the way what it hands on.
class ReportingEvents : public ReadEvents {
public:
    // `next` and `report` are borrowed; `next` may be null.
    ReportingEvents(Report& report, std::string path, ReadEvents* next)
        : _report(report), _path(std::move(path)), _next(next) {}

    void OnRecord(const RecordHeader& header, std::span<const uint8_t> payloadHead) override;
    void OnText(std::string_view piece) override;
    void OnRecordEnd(const RecordReport& record) override;
    void OnSkipped(uint64_t offset, uint64_t size, const std::string& why) override;
    void OnTextRead(uint64_t offset) override;

private:
    Report& _report;
    std::string _path;
    ReadEvents* _next;
};

}  // namespace OrvaneLog

#endif
