// What a walk over a source tells as it goes: records with their text, and what it had to skip. All calls come on the
// thread that walks, in the order of the source.
#ifndef ORVANE_TOOLS_LOG_READ_EVENTS_H
#define ORVANE_TOOLS_LOG_READ_EVENTS_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "Log/RecordHeader.h"

namespace OrvaneLog {

// How far a record is what its header says.
enum class Verdict {
    kSound,      // all of its text was given, as far as can be seen
    kEncrypted,  // whole as far as one can tell, but no key at hand opens it
    kDamaged,    // framed well, but its payload gives only part of the text, or none
    kTorn,       // not framed as its header says; what its payload still gave was saved
};
// The word for messages and tables, such as "torn". Never null.
const char* VerdictWord(Verdict verdict);

// What is known of a record when its text is out.
struct RecordReport {
    uint64_t offset = 0;  // of the header in the source
    RecordHeader header;
    uint64_t size = 0;      // bytes of the source that it accounts for
    uint64_t textSize = 0;  // bytes of text that were given
    Verdict verdict = Verdict::kSound;
    std::string why;      // where the verdict wants a reason
    std::string keyName;  // of the key that opened it
};

// Implemented by whoever takes part in a reading: what shows text, what lists records, what counts damage. One may hand
// on to the next.
class ReadEvents {
public:
    virtual ~ReadEvents() = default;

    // A record begins. `payloadHead` holds a few bytes of its payload as they are stored; valid during the call.
    virtual void OnRecord(const RecordHeader& header, std::span<const uint8_t> payloadHead) {
        (void)header;
        (void)payloadHead;
    }
    // The next piece of text: of the record begun, or of a source that is plain text. Cut anywhere.
    virtual void OnText(std::string_view piece) = 0;
    // The record's text is over; for each OnRecord once. The report is valid during the call.
    virtual void OnRecordEnd(const RecordReport& report) = 0;
    // Bytes that gave nothing, and the reason, in words for the user. Never within a record.
    virtual void OnSkipped(uint64_t offset, uint64_t size, const std::string& why) = 0;
    // A plain-text source went on to this offset. Not called for records, which tell their place themselves.
    virtual void OnTextRead(uint64_t offset) { (void)offset; }
};

}  // namespace OrvaneLog

#endif
