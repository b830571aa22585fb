#include "Log/RecordDecoder.h"

#include <algorithm>
#include <utility>

#include "Log/LogLine.h"

namespace OrvaneLog {
namespace {

// Less than this could be text by chance: of a torn record, under a bad header, under a key that is only tried.
constexpr size_t kConvincingText = 24;

uint64_t WholeGroups(uint64_t size) {
    return size / Quern::kLogTeaGroup * Quern::kLogTeaGroup;
}

bool IsConvincing(std::string_view text) {
    return BeginsLine(text) || (text.size() >= kConvincingText && LooksLikeText(text));
}

}  // namespace

const char* VerdictWord(Verdict verdict) {
    switch (verdict) {
        case Verdict::kSound:
            return "sound";
        case Verdict::kEncrypted:
            return "encrypted";
        case Verdict::kDamaged:
            return "damaged";
        case Verdict::kTorn:
            return "torn";
    }
    return "";
}

bool RecordDecoder::Open(const RecordHeader& header, uint64_t offset, Framing framing) {
    _framing = framing;
    _why.clear();
    _convinces = false;
    _report = RecordReport{};
    _report.offset = offset;
    _report.header = header;
    _first = {};
    if (IsTorn() && !header.IsPlausible()) return Refuse("no record begins here");
    MeasurePayload();
    _headSize = _window.Peek(_payload.offset, _head.data(),
                             static_cast<size_t>(std::min<uint64_t>(_payload.size, _head.size())));
    if (header.IsEncrypted()) return OpenEncrypted();
    return header.IsCompressed() ? OpenCompressed() : OpenPlain();
}

// Where the payload lies, and which of it is enciphered, by the header and the framing.
void RecordDecoder::MeasurePayload() {
    _payload = Payload{};
    _payload.offset = _report.offset + LogRecord::kHeaderLength;
    _payload.size = _report.header.length;
    _payload.compressed = _report.header.IsCompressed();
    if (IsTorn() || _framing == Framing::kMappedBlock) {
        // A block holds no more than this, so that more than this does not matter.
        const size_t inBlock = std::min(_window.At(_report.offset, kBlockSize).size(), kBlockSize);
        _available = inBlock - LogRecord::kHeaderLength;
        // The length of a record without an end is not to be believed.
        _payload.size = _framing == Framing::kNoEnd ? _available : std::min(_payload.size, _available);
    }
    if (!_report.header.IsEncrypted()) return;
    // Whole groups are enciphered, the rest of a whole payload is not; of a torn one it is unknown where it ended.
    _payload.enciphered = WholeGroups(_payload.size);
    const bool hasPlainTail = _framing == Framing::kCutOff && _payload.size >= WholeGroups(_report.header.length);
    if (IsTorn() && !hasPlainTail) _payload.size = _payload.enciphered;
}

// Whether text says that a record begins here: a little is enough under a good header.
bool RecordDecoder::ShowsText(std::string_view text) const {
    return _report.header.IsPlausible() ? !text.empty() && LooksLikeText(text) : IsConvincing(text);
}

bool RecordDecoder::Refuse(std::string why) {
    _why = std::move(why);
    return false;
}

void RecordDecoder::Read(const Payload& payload, uint64_t textLimit) {
    _reader.Begin(payload, textLimit);
    _first = _reader.Next();
    _work += _reader.Consumed();
}

bool RecordDecoder::OpenPlain() {
    if (_framing == Framing::kNoEnd) return Refuse(TornWhy());
    Read(_payload);
    const std::string_view begin = _first.substr(0, _first.find('\0'));
    const bool text = ShowsText(begin);
    if (IsTorn()) {
        if (!text) return Refuse(TornWhy());
        _tornSize = _available;
        _report.verdict = Verdict::kTorn;
        _report.why = TornWhy();
        return true;
    }
    _convinces = text && IsInPlace();
    const bool isDue = _report.header.IsPlausible() && IsInPlace();
    return text || isDue ? true : Refuse("a false header: what follows is no text");
}

bool RecordDecoder::OpenCompressed() {
    if (_framing == Framing::kWhole && !EndsWhereItShould()) {
        // With nothing behind it to confirm its length, the end byte was there by chance.
        if (!_report.header.IsPlausible()) return Refuse("a false header: what follows is no compressed text");
        const Quern::LogTeaKey* const key = _payload.key;
        _framing = Framing::kNoEnd;
        MeasurePayload();
        _payload.key = key;
    }
    if (IsTorn()) return JudgeTorn();
    Read(_payload);
    return JudgeWhole();
}

bool RecordDecoder::OpenEncrypted() {
    KeyRing::Agreement& agreement = _keys.For(_report.header.publicKey);
    if (!agreement.isPoint) {
        if (_framing != Framing::kWholeInRow || !_report.header.IsPlausible())
            return Refuse("a false header: its public key is no point of the curve");
        _report.verdict = Verdict::kDamaged;
        _report.why = "its public key is no point of the curve";
        return true;
    }
    if (const KeyRing::Candidate* const key = FindKey(agreement)) {
        _payload.key = &key->key;
        _report.keyName = key->name;
        return OpenCompressed();
    }
    _payload.key = nullptr;
    _report.keyName.clear();
    _first = {};
    if (IsTorn()) return Refuse(TornWhy() + ", and no key opens it");
    _convinces = _framing == Framing::kWholeInRow;
    _report.verdict = Verdict::kEncrypted;
    return true;
}

// The key that opens the record. One that gives the head of a line is the right one for good. What else looks like text
// may have come of a wrong key: it is believed for this record if all of it inflates, and shows nothing for the next.
const KeyRing::Candidate* RecordDecoder::FindKey(KeyRing::Agreement& agreement) {
    if (agreement.proven) return &agreement.candidates[0];
    const KeyRing::Candidate* fitting = nullptr;
    for (size_t i = 0; i < agreement.candidates.size(); ++i) {
        _payload.key = &agreement.candidates[i].key;
        Read(_payload);
        if (BeginsLine(_first)) {
            agreement.Prove(i);
            return &agreement.candidates[0];
        }
        if (!fitting && !_first.empty() && LooksLikeText(_first) && EndsWhereItShould())
            fitting = &agreement.candidates[i];
    }
    return fitting;
}

bool RecordDecoder::EndsWhereItShould() {
    _reader.TextUpToLastFlush(_payload);
    _work += _reader.Consumed();
    return _reader.EndsAtFlush();
}

bool RecordDecoder::JudgeWhole() {
    _convinces = ShowsText(_first) && !_reader.Failed();
    if (ShowsText(_first)) return true;
    // What reads as nothing but noise is a record only where one is due, and even then its length may be wrong.
    if (_reader.Failed()) _first = {};
    return _report.header.IsPlausible() && IsInPlace() ? true
                                                       : Refuse("a false header: what follows is no compressed text");
}

bool RecordDecoder::JudgeTorn() {
    const uint64_t trusted = _reader.TextUpToLastFlush(_payload);
    _work += _reader.Consumed();
    if (trusted == 0) return Refuse(TornWhy());
    _tornSize = TornSize();
    Read(_payload, trusted);
    if (!IsConvincing(_first)) return Refuse(TornWhy());
    _report.verdict = Verdict::kTorn;
    _report.why = TornWhy();
    return true;
}

// What a torn record takes of the source: all that is left of one that is cut off, else what goes up to its last flush,
// and an end byte if there is one there.
uint64_t RecordDecoder::TornSize() {
    if (_framing == Framing::kCutOff && !_reader.Failed()) return _available;
    const uint64_t size = _reader.ConsumedAtFlush();
    uint8_t byte = 1;
    _window.Peek(_payload.offset + size, &byte, 1);
    return byte == LogRecord::kMagicEnd ? size + LogRecord::kTailLength : size;
}

std::string RecordDecoder::TornWhy() const {
    const std::string claim = "a record at " + std::to_string(_report.offset) + " of " +
                              std::to_string(_report.header.length) + " bytes payload ";
    return claim + (_framing == Framing::kCutOff ? "is cut off by the end" : "has no end byte there");
}

// All text is out: whether that was all there should be.
void RecordDecoder::JudgeDelivered(bool isBinary) {
    if (isBinary)
        _report.why = "its text holds a zero byte, and is given up to that";
    else if (_payload.compressed && _reader.Failed())
        _report.why = "its payload inflates no further than " + std::to_string(_report.textSize) + " bytes of text";
    else if (_payload.compressed && _reader.Consumed() < _payload.size)
        _report.why = "its deflate stream ends " + std::to_string(_payload.size - _reader.Consumed()) +
                      " bytes before its payload does";
    else if (!_reader.Lines().Fault().empty())
        _report.why = _reader.Lines().Fault();
    else if (_payload.compressed && _reader.Lines().IsWithinLine() && _payload.size + kSmallestRecord < kBlockSize)
        // A block that was filled to its last byte ends anywhere.
        _report.why = "its last line was not written to its end";
    else if (_framing == Framing::kMappedBlock && _payload.size < _report.header.length)
        _report.why =
            "its header claims " + std::to_string(_report.header.length) + " bytes payload, more than a block holds";
    if (!_report.why.empty()) _report.verdict = Verdict::kDamaged;
}

RecordReport RecordDecoder::Deliver(ReadEvents& events) {
    events.OnRecord(_report.header, {_head.data(), _headSize});
    const bool withheld = _report.verdict == Verdict::kEncrypted || _first.empty();
    bool binary = false;
    if (!withheld) {
        for (std::string_view piece = _first; !piece.empty() && !binary; piece = _reader.Next()) {
            if (!_payload.compressed) {
                const size_t noText = piece.find('\0');
                binary = noText != std::string_view::npos;
                piece = piece.substr(0, noText);
            }
            _report.textSize += piece.size();
            if (!piece.empty()) events.OnText(piece);
            if (_reader.AtEnd()) break;
        }
        _work += _reader.Consumed();
    }
    _report.size = LogRecord::kHeaderLength + (IsTorn() ? _tornSize : _payload.size);
    if (!IsTorn() && _framing != Framing::kMappedBlock) _report.size += LogRecord::kTailLength;
    if (_report.verdict == Verdict::kSound) JudgeDelivered(binary);
    events.OnRecordEnd(_report);
    return _report;
}

}  // namespace OrvaneLog
