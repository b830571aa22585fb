// Judges whether a header begins a record, and hands out the record's text.
//
// A record has no checksum, and bytes in a payload may look like a header by chance. So a header is believed only as
// far as the bytes around it bear it out: the end byte, what follows, whether the payload inflates to whole lines.
#ifndef ORVANE_TOOLS_LOG_RECORD_DECODER_H
#define ORVANE_TOOLS_LOG_RECORD_DECODER_H

#include <array>
#include <string>

#include "Log/KeyRing.h"
#include "Log/PayloadReader.h"
#include "Log/ReadEvents.h"

namespace OrvaneLog {

// How the length that a header claims agrees with the bytes around it.
enum class Framing {
    kWhole,        // the payload fits, and the end byte stands behind it
    kWholeInRow,   // and behind that the source ends or another record seems to begin
    kCutOff,       // the source ends before the payload does
    kNoEnd,        // the byte behind the payload is no end byte, or the length is none
    kMappedBlock,  // in a mapped block, whose end byte was never written
};

// One decoder serves one walk, record by record: Open, then Deliver if that gave true. One thread.
class RecordDecoder {
public:
    // All borrowed.
    RecordDecoder(ByteWindow& window, KeyRing& keys) : _window(window), _keys(keys), _reader(window) {}

    // Judges the record at `offset`. False, with the reason in Why(), if this is no record or none that gives anything.
    // Moves the window.
    bool Open(const RecordHeader& header, uint64_t offset, Framing framing);
    // After Open gave true, and before the window is moved: hands the record to `events`, its report included, and
    // returns that report.
    RecordReport Deliver(ReadEvents& events);

    // Why the last Open gave false, in words for the user.
    const std::string& Why() const { return _why; }
    // Whether what was opened shows by itself that it is a record, so that its length can be relied on if all of it
    // turns out sound.
    bool Convinces() const { return _convinces; }
    // Bytes of payload that were looked at by all calls so far: the measure of the work done, by which a search in
    // hostile data is ended.
    uint64_t Work() const { return _work; }

private:
    // One for each kind of payload. Each decides whether this is a record.
    bool OpenPlain();
    bool OpenCompressed();
    bool OpenEncrypted();
    void MeasurePayload();
    // Whether the payload inflates to its very end, with a flush there.
    bool EndsWhereItShould();
    const KeyRing::Candidate* FindKey(KeyRing::Agreement& agreement);
    // Whether a compressed payload is that of a record: of a whole one, or of a torn one.
    bool JudgeWhole();
    bool JudgeTorn();
    bool ShowsText(std::string_view text) const;
    // Notes the reason, and gives false.
    bool Refuse(std::string why);
    // Begins on a payload, and takes its first piece of text.
    void Read(const Payload& payload, uint64_t textLimit = PayloadReader::kAllText);
    bool IsTorn() const { return _framing == Framing::kCutOff || _framing == Framing::kNoEnd; }
    bool IsInPlace() const { return _framing == Framing::kWholeInRow || _framing == Framing::kMappedBlock; }
    uint64_t TornSize();
    void JudgeDelivered(bool isBinary);
    std::string TornWhy() const;

    ByteWindow& _window;
    KeyRing& _keys;
    PayloadReader _reader;

    Framing _framing = Framing::kWhole;
    Payload _payload;
    uint64_t _available = 0;        // bytes behind the header, as far as a block reaches; of torn records and blocks
    uint64_t _tornSize = 0;         // bytes of them that a torn record takes
    std::array<uint8_t, 64> _head;  // the payload's first bytes, as stored
    size_t _headSize = 0;           // how many of them there are
    std::string_view _first;        // the first piece of the text; in the window or the reader
    RecordReport _report;           // of the record that is open
    std::string _why;
    bool _convinces = false;
    uint64_t _work = 0;
};

}  // namespace OrvaneLog

#endif
