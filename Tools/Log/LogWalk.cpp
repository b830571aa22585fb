#include "Log/LogWalk.h"

#include <algorithm>

#include "Log/BlockWalk.h"
#include "Log/LogFileName.h"
#include "Log/RecordWalk.h"
#include "Log/TextWalk.h"

namespace OrvaneLog {
namespace {

constexpr size_t kSample = 4096;

bool IsText(std::span<const uint8_t> bytes) {
    return std::none_of(bytes.begin(), bytes.end(),
                        [](uint8_t byte) { return byte < 0x20 && (byte < '\t' || byte > '\r') && byte != 0x1B; });
}

}  // namespace

std::unique_ptr<LogWalk> MakeWalk(SourceKind kind, ByteSource& source, KeyRing& keys, ReadEvents& events) {
    switch (kind) {
        case SourceKind::kRecords:
            return std::make_unique<RecordWalk>(source, keys, events);
        case SourceKind::kText:
            return std::make_unique<TextWalk>(source, events);
        case SourceKind::kMappedBlock:
            return std::make_unique<BlockWalk>(source, keys, events);
    }
    return nullptr;
}

SourceKind KindOf(const std::string& path, ByteSource& source) {
    if (ParseLogFileName(path).isBlock) return SourceKind::kMappedBlock;
    if (path.ends_with(".xlog")) return SourceKind::kRecords;
    uint8_t sample[kSample];
    const size_t count = std::min(source.ReadAt(0, sample, kSmallestRecord, sizeof sample), sizeof sample);
    const bool record = count >= kSmallestRecord && RecordHeader::Parse(sample).IsPlausible();
    if (record && source.Size() == kBlockSize) return SourceKind::kMappedBlock;  // a copy of one under another name
    if (path.ends_with(".log")) return record ? SourceKind::kRecords : SourceKind::kText;
    return record || !IsText({sample, count}) ? SourceKind::kRecords : SourceKind::kText;
}

}  // namespace OrvaneLog
