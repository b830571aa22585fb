#include "Log/RecordWalk.h"

#include <algorithm>

namespace OrvaneLog {
namespace {

// What may be spent on false and torn records, over the bytes of the file: a file made to be slow must end some time.
constexpr uint64_t kSearchAllowance = 64u << 20;
constexpr uint64_t kSearchFactor = 16;

// The first byte that could be a header's, of those with a whole smallest record behind them.
size_t FindMagic(std::span<const uint8_t> bytes) {
    const auto end = bytes.end() - (kSmallestRecord - 1);
    return static_cast<size_t>(std::find_if(bytes.begin(), end, LogRecord::IsMagic) - bytes.begin());
}

}  // namespace

void RecordWalk::Advance(bool growing) {
    for (;;) {
        const auto bytes = _window.At(_offset, kSmallestRecord);
        if (bytes.size() < kSmallestRecord) {
            if (!growing) CloseGap(_offset + bytes.size());
            return;
        }
        if (const size_t noise = FindMagic(bytes); noise > 0) {
            _offset += noise;
            continue;
        }
        switch (TryRecord(RecordHeader::Parse(bytes.data()), growing)) {
            case Step::kWait:
                return;
            case Step::kNoRecord:
                ++_offset;
                break;
            case Step::kTaken:
                _window.Source().Forget(_offset);
                break;
        }
    }
}

RecordWalk::Step RecordWalk::TryRecord(const RecordHeader& header, bool growing) {
    const Framing framing = FrameAt(header);
    const bool framed = framing == Framing::kWhole || framing == Framing::kWholeInRow;
    if (framing == Framing::kCutOff && growing && header.IsPlausible()) return Step::kWait;
    if (!framed && (!header.IsPlausible() || !MaySearchInside())) return Step::kNoRecord;

    if (!_decoder.Open(header, _offset, framing)) {
        if (header.IsPlausible() && _gapReason.empty() && _offset >= _covered) _gapReason = _decoder.Why();
        return Step::kNoRecord;
    }
    CloseGap(_offset);
    const RecordReport report = _decoder.Deliver(_events);
    const uint64_t end = _offset + report.size;
    _covered = std::max(_covered, end);
    // A length that lies may have swallowed good records: unless all is well the search goes on inside.
    const bool isWhole = report.verdict == Verdict::kSound || report.verdict == Verdict::kEncrypted;
    _offset = (isWhole && _decoder.Convinces()) || !MaySearchInside() ? end : _offset + 1;
    return Step::kTaken;
}

Framing RecordWalk::FrameAt(const RecordHeader& header) {
    if (header.length > kLargestPayload) return Framing::kNoEnd;
    const uint64_t tail = _offset + LogRecord::kHeaderLength + header.length;
    uint8_t byte = 0;
    if (_window.Peek(tail, &byte, 1) == 0) return Framing::kCutOff;
    if (byte != LogRecord::kMagicEnd) return Framing::kNoEnd;
    return SeemsToFollow(tail + LogRecord::kTailLength) ? Framing::kWholeInRow : Framing::kWhole;
}

bool RecordWalk::SeemsToFollow(uint64_t offset) {
    uint8_t bytes[LogRecord::kHeaderLength] = {};
    const size_t count = _window.Peek(offset, bytes, LogRecord::kLenAt);
    return count == 0 || (count == LogRecord::kLenAt && RecordHeader::Parse(bytes).IsPlausible());
}

bool RecordWalk::MaySearchInside() const {
    return _decoder.Work() < kSearchAllowance + kSearchFactor * _offset;
}

void RecordWalk::CloseGap(uint64_t end) {
    if (end > _covered) {
        _events.OnSkipped(_covered, end - _covered, _gapReason.empty() ? "no record begins here" : _gapReason);
        _covered = end;
    }
    _gapReason.clear();
}

}  // namespace OrvaneLog
