#include "Log/RecordDecoder.h"

#include <algorithm>
#include <utility>

#include "Log/LogLine.h"

namespace OrvaneLog {
namespace {

// Less than this of a torn record, or under a key that is only tried, could be text by chance.
constexpr size_t kConvincingText = 24;

bool Convinces(std::string_view text) {
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

bool RecordDecoder::Open(const RecordHeader& header, uint64_t offset, Framing framing, uint64_t available) {
    _framing = framing;
    _why.clear();
    _report = RecordReport{};
    _report.offset = offset;
    _report.header = header;
    _first = {};
    _payload = Payload{};
    _payload.offset = offset + LogRecord::kHeaderLength;
    _payload.compressed = header.IsCompressed();
    _payload.size = std::min<uint64_t>(header.length, available);
    // The length of a record without an end is not to be believed; no block can hold more than this.
    if (framing == Framing::kNoEnd)
        _payload.size = std::min<uint64_t>(available, kBlockSize - LogRecord::kHeaderLength);
    if (IsTorn() && !header.IsPlausible()) return Refuse("no record begins here");

    _headSize = _window.Peek(_payload.offset, _head.data(),
                             static_cast<size_t>(std::min<uint64_t>(_payload.size, _head.size())));
    if (header.IsEncrypted()) return OpenEncrypted();
    return header.IsCompressed() ? OpenCompressed() : OpenPlain();
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
    const bool text = LooksLikeText(_first.substr(0, _first.find('\0')));
    if (IsTorn()) {
        if (_first.empty() || !text) return Refuse(TornWhy());
        _report.verdict = Verdict::kTorn;
        _report.why = TornWhy();
        return true;
    }
    return text || _report.header.IsPlausible() ? true : Refuse("a false header: what follows is no text");
}

bool RecordDecoder::OpenCompressed() {
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
    // Whole groups are enciphered, the rest of a whole payload is not; of a torn one it is unknown where it ended.
    _payload.enciphered = _payload.size / Quern::kLogTeaGroup * Quern::kLogTeaGroup;
    if (IsTorn()) {
        const uint64_t whole = _report.header.length / Quern::kLogTeaGroup * Quern::kLogTeaGroup;
        const bool plainTail = _framing == Framing::kCutOff && _payload.size >= whole;
        if (!plainTail) _payload.size = _payload.enciphered;
    }
    for (size_t i = 0; i < agreement.candidates.size(); ++i) {
        _payload.key = &agreement.candidates[i].key;
        _report.keyName = agreement.candidates[i].name;
        if (!agreement.proven) {
            Read(_payload);
            const bool fits = _reader.Failed() ? Convinces(_first) : !_first.empty() && LooksLikeText(_first);
            if (!fits) continue;
            agreement.Prove(i);
            _payload.key = &agreement.candidates[0].key;
        }
        return OpenCompressed();
    }
    _payload.key = nullptr;
    _report.keyName.clear();
    _first = {};
    if (IsTorn()) return Refuse(TornWhy() + ", and no key opens it");
    _report.verdict = Verdict::kEncrypted;
    return true;
}

bool RecordDecoder::JudgeWhole() {
    const bool plausible = _report.header.IsPlausible();
    const bool text = !_first.empty() && LooksLikeText(_first);
    if (!_reader.Failed())
        return text || plausible ? true : Refuse("a false header: what follows is no compressed text");
    if (text && (plausible || BeginsLine(_first))) return true;
    _first = {};
    const bool inPlace = _framing == Framing::kWholeInRow || _framing == Framing::kMappedBlock;
    return plausible && inPlace ? true : Refuse("a false header: what follows does not inflate");
}

bool RecordDecoder::JudgeTorn() {
    const uint64_t trusted = _reader.TextUpToLastFlush(_payload);
    _work += _reader.Consumed() + _payload.size;
    if (trusted == 0) return Refuse(TornWhy());
    Read(_payload, trusted);
    if (!Convinces(_first)) return Refuse(TornWhy());
    _report.verdict = Verdict::kTorn;
    _report.why = TornWhy();
    return true;
}

std::string RecordDecoder::TornWhy() const {
    const std::string claim = "a record at " + std::to_string(_report.offset) + " of " +
                              std::to_string(_report.header.length) + " bytes payload ";
    return claim + (_framing == Framing::kCutOff ? "is cut off by the end" : "has no end byte there");
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
    _report.size = LogRecord::kHeaderLength + (IsTorn() ? _reader.Consumed() : _payload.size);
    if (!IsTorn() && _framing != Framing::kMappedBlock) _report.size += LogRecord::kTailLength;
    if (_report.verdict == Verdict::kSound) {
        if (binary) {
            _report.verdict = Verdict::kDamaged;
            _report.why = "its text holds a zero byte, and is given up to that";
        } else if (_payload.compressed && _reader.Failed()) {
            _report.verdict = Verdict::kDamaged;
            _report.why = "its payload inflates no further than " + std::to_string(_report.textSize) + " bytes of text";
        } else if (_payload.compressed && _reader.Consumed() < _payload.size) {
            _report.verdict = Verdict::kDamaged;
            _report.why = "its deflate stream ends " + std::to_string(_payload.size - _reader.Consumed()) +
                          " bytes before its payload does";
        } else if (_framing == Framing::kMappedBlock && _payload.size < _report.header.length) {
            _report.verdict = Verdict::kDamaged;
            _report.why = "its header claims " + std::to_string(_report.header.length) +
                          " bytes payload, more than a block holds";
        }
    }
    events.OnRecordEnd(_report);
    return _report;
}

}  // namespace OrvaneLog
