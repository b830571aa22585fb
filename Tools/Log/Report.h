// Collects what a reading found besides text: damage, records that no key opens, files that cannot be read. It says so
// as it goes, and gives the exit status at the end.
#ifndef ORVANE_TOOLS_LOG_REPORT_H
#define ORVANE_TOOLS_LOG_REPORT_H

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "Log/ReadEvents.h"

namespace OrvaneLog {

// Exit statuses, part of the command's interface. Where several apply, the first of 2, 1, 3 holds.
enum ExitStatus : int {
    kExitSound = 0,
    kExitDamage = 1,      // something was skipped, or a record gave only part of its text
    kExitUnreadable = 2,  // wrong use, or a file that cannot be read or written
    kExitNoKey = 3,       // all sound, but there are encrypted records that no key opens
};

// One for a run. One thread.
class Report {
public:
    // `say` gets each message, for standard error, without a newline.
    explicit Report(std::function<void(const std::string&)> say) : _say(std::move(say)) {}

    // Something that could not be done at all: the exit status is then kExitUnreadable.
    void Problem(const std::string& message);
    // Something worth knowing that is no fault of the log.
    void Note(const std::string& message) { _say(message); }

    // Counts a record, and says what is wrong with it, if anything is.
    void Record(const std::string& path, const RecordReport& record);
    // Counts bytes that gave nothing, and says where they are. Such a gap is damage.
    void Skipped(const std::string& path, uint64_t offset, uint64_t size, const std::string& why);
    // A source is over: says once what would have been noise for each record, namely how many are encrypted and how
    // many are missing by their numbers.
    void EndSource(const std::string& path);

    // Names the keys that have opened nothing of what is encrypted. Says nothing if nothing was.
    void SayIdleKeys(const std::vector<std::string>& keyFiles);
    // The findings in one line, without a newline.
    std::string Summary() const;
    // The same as one JSON object, with the exit status that is given.
    std::string SummaryAsJson(ExitStatus status) const;
    bool HasDamage() const { return _damaged + _torn + _gaps > 0; }
    // `needsNoKey`: encrypted records may stay closed, as in a check for which no key was given.
    ExitStatus Status(bool needsNoKey) const;

private:
    // Counts the numbers that are missing between this compressed record and the one before.
    void CheckSequence(const RecordHeader& header);

    std::function<void(const std::string&)> _say;
    // Of the whole run.
    uint64_t _sources = 0, _problems = 0;
    uint64_t _records = 0, _damaged = 0, _torn = 0, _encrypted = 0;
    std::set<std::string> _keysInUse;                // names of the keys that have opened a record
    uint64_t _gaps = 0, _skipped = 0, _missing = 0;  // places, bytes, and blocks by their numbers
    // Of the source being read.
    uint64_t _encryptedHere = 0, _encryptedBytesHere = 0, _missingHere = 0;
    uint16_t _lastSeq = 0;  // 0 before the first
};

// Stands between a walk and whoever takes its text: hands everything on, and tells the report of records and gaps.
class ReportingEvents : public ReadEvents {
public:
    // `next` and `report` are borrowed; `next` may be null, and then the report alone is told. `path`: what messages
    // call the source.
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
