#include "Log/BlockWalk.h"

#include <algorithm>
#include <string>

#include "Log/RecordDecoder.h"

namespace OrvaneLog {
namespace {

constexpr int kReadings = 5;

std::vector<uint8_t> ReadBlock(ByteSource& source) {
    std::vector<uint8_t> bytes(kBlockSize);
    bytes.resize(source.ReadAt(0, bytes.data(), bytes.size(), bytes.size()));
    return bytes;
}

}  // namespace

std::vector<uint8_t> SnapshotBlock(ByteSource& source) {
    std::vector<uint8_t> bytes = ReadBlock(source);
    for (int i = 1; i < kReadings; ++i) {
        std::vector<uint8_t> again = ReadBlock(source);
        const bool same = bytes == again;
        bytes = std::move(again);
        if (same) break;
    }
    return bytes;
}

void WalkBlock(std::span<const uint8_t> bytes, KeyRing& keys, ReadEvents& events) {
    // A zero says empty, whatever a logger that died while it cleared the block has left behind it.
    if (bytes.empty() || bytes[0] == 0) return;
    if (bytes.size() < kSmallestRecord || !LogRecord::IsMagic(bytes[0])) {
        events.OnSkipped(0, bytes.size(), "no block: it begins with no header");
        return;
    }
    const RecordHeader header = RecordHeader::Parse(bytes.data());
    MemorySource memory(bytes);
    ByteWindow window(memory);
    RecordDecoder decoder(window, keys);
    if (decoder.Open(header, 0, Framing::kMappedBlock))
        decoder.Deliver(events);
    else
        events.OnSkipped(0, bytes.size(), decoder.Why());
}

void BlockWalk::Advance(bool) {
    if (_done) return;
    _done = true;
    WalkBlock(SnapshotBlock(_source), _keys, _events);
}

}  // namespace OrvaneLog
