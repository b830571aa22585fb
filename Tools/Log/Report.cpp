#include "Log/Report.h"

#include <utility>

namespace OrvaneLog {
namespace {

std::string Count(uint64_t count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

}  // namespace

void Report::Problem(const std::string& message) {
    ++_problems;
    _say(message);
}

void Report::Record(const std::string& path, const RecordReport& record) {
    ++_records;
    if (record.header.IsCompressed()) CheckSequence(record.header);
    if (!record.keyName.empty()) _keysInUse.insert(record.keyName);
    switch (record.verdict) {
        case Verdict::kSound:
            return;
        case Verdict::kEncrypted:
            ++_encrypted;
            ++_encryptedHere;
            _encryptedBytesHere += record.size;
            return;
        case Verdict::kDamaged:
            ++_damaged;
            break;
        case Verdict::kTorn:
            ++_torn;
            break;
    }
    _say(path + ": offset " + std::to_string(record.offset) + ": a " + VerdictWord(record.verdict) + " record of " +
         Count(record.size, "byte", "bytes") + ", of which " + Count(record.textSize, "byte", "bytes") +
         " of text were saved: " + record.why);
}

void Report::Skipped(const std::string& path, uint64_t offset, uint64_t size, const std::string& why) {
    ++_gaps;
    _skipped += size;
    _say(path + ": offset " + std::to_string(offset) + ": skipped " + Count(size, "byte", "bytes") + ": " + why);
}

// Numbers run 1, 2, ... 65535, 1 and start over with each start of the writer.
void Report::CheckSequence(const RecordHeader& header) {
    if (_lastSeq != 0 && header.seq > _lastSeq) _missingHere += static_cast<uint64_t>(header.seq - _lastSeq - 1);
    _lastSeq = header.seq;
}

void Report::EndSource(const std::string& path) {
    ++_sources;
    if (_encryptedHere > 0)
        _say(path + ": " + Count(_encryptedHere, "encrypted record", "encrypted records") + " of " +
             Count(_encryptedBytesHere, "byte", "bytes") + ", and no key at hand opens " +
             (_encryptedHere == 1 ? "it" : "them"));
    if (_missingHere > 0)
        _say(path + ": by the numbers of its records " + Count(_missingHere, "block is", "blocks are") + " missing");
    _missing += _missingHere;
    _encryptedHere = _encryptedBytesHere = _missingHere = 0;
    _lastSeq = 0;
}

std::string Report::Summary() const {
    std::string summary = Count(_sources, "file", "files") + ", " + Count(_records, "record", "records");
    if (_encrypted > 0) summary += ", " + std::to_string(_encrypted) + " encrypted and not looked into";
    if (_damaged > 0) summary += ", " + std::to_string(_damaged) + " damaged";
    if (_torn > 0) summary += ", " + std::to_string(_torn) + " torn";
    if (_gaps > 0)
        summary += ", " + Count(_skipped, "byte", "bytes") + " skipped in " + Count(_gaps, "place", "places");
    if (_problems > 0) summary += ", " + Count(_problems, "problem", "problems");
    if (HasDamage() || _problems > 0) return summary;
    return summary + (_encrypted > 0 ? ": sound as far as can be told without a key" : ": sound");
}

std::string Report::SummaryAsJson(ExitStatus status) const {
    const std::pair<const char*, uint64_t> counts[] = {
        {"files", _sources},     {"records", _records},     {"encrypted", _encrypted},   {"damaged", _damaged},
        {"torn", _torn},         {"skipped_places", _gaps}, {"skipped_bytes", _skipped}, {"missing_blocks", _missing},
        {"problems", _problems},
    };
    std::string object = "{";
    for (const auto& [name, count] : counts)
        object += std::string("\"") + name + "\":" + std::to_string(count) + ",";
    return object + "\"sound\":" + (HasDamage() || _problems > 0 ? "false" : "true") +
           ",\"status\":" + std::to_string(status) + "}";
}

void Report::SayIdleKeys(const std::vector<std::string>& keyFiles) {
    if (_encrypted == 0 && _keysInUse.empty()) return;
    for (const std::string& file : keyFiles)
        if (!_keysInUse.contains(file)) _say(file + ": this key opens none of the encrypted records");
}

ExitStatus Report::Status(bool needsNoKey) const {
    if (_problems > 0) return kExitUnreadable;
    if (HasDamage()) return kExitDamage;
    return _encrypted > 0 && !needsNoKey ? kExitNoKey : kExitSound;
}

void ReportingEvents::OnRecord(const RecordHeader& header, std::span<const uint8_t> payloadHead) {
    if (_next) _next->OnRecord(header, payloadHead);
}

void ReportingEvents::OnText(std::string_view piece) {
    if (_next) _next->OnText(piece);
}

void ReportingEvents::OnRecordEnd(const RecordReport& record) {
    if (_next) _next->OnRecordEnd(record);
    _report.Record(_path, record);
}

void ReportingEvents::OnSkipped(uint64_t offset, uint64_t size, const std::string& why) {
    if (_next) _next->OnSkipped(offset, size, why);
    _report.Skipped(_path, offset, size, why);
}

void ReportingEvents::OnTextRead(uint64_t offset) {
    if (_next) _next->OnTextRead(offset);
}

}  // namespace OrvaneLog
