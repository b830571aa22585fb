// The header of a record, taken apart. Docs/LogFormat.md tells the format; the offsets are those of the writer.
#ifndef ORVANE_TOOLS_LOG_RECORD_HEADER_H
#define ORVANE_TOOLS_LOG_RECORD_HEADER_H

#include <cstdint>
#include <cstring>

#include "Serializer/Codec/EllipticCurve.h"
#include "Storage/Log/LogRecord.h"

namespace OrvaneLog {

namespace LogRecord = Quern::LogRecord;

constexpr size_t kSmallestRecord = LogRecord::kHeaderLength + LogRecord::kTailLength;  // bytes, without a payload
constexpr size_t kBlockSize = LogRecord::kBlockLength;                                 // bytes of a mapped block
// A writer puts a record together in a buffer of 20 MiB, so a larger length cannot be true.
constexpr uint32_t kLargestPayload = 20 * 1024 * 1024 - kSmallestRecord;

// The fields as they stand, unchecked: the file is not trusted, and each reader decides what it can bear.
struct RecordHeader {
    uint8_t magic = 0;                  // 6 to 9: how the payload is stored
    uint16_t seq = 0;                   // 1 to 65535, counted by the writer; 0 in a record that is no compressed block
    int8_t beginHour = 0;               // local hour, 0 to 23, when the record was begun
    int8_t endHour = 0;                 // and when it was closed
    uint32_t length = 0;                // bytes of the payload
    Quern::CurvePublicKey publicKey{};  // the writer's; of no meaning where nothing is encrypted

    // Reads kHeaderLength bytes, which need no alignment.
    static RecordHeader Parse(const uint8_t* bytes) {
        RecordHeader header;
        header.magic = bytes[LogRecord::kMagicAt];
        header.seq = LogRecord::LoadU16(bytes + LogRecord::kSeqAt);
        header.beginHour = static_cast<int8_t>(bytes[LogRecord::kBeginHourAt]);
        header.endHour = static_cast<int8_t>(bytes[LogRecord::kEndHourAt]);
        header.length = LogRecord::LoadU32(bytes + LogRecord::kLenAt);
        memcpy(header.publicKey.data(), bytes + LogRecord::kPublicKeyAt, header.publicKey.size());
        return header;
    }

    bool IsCompressed() const { return LogRecord::IsCompressed(magic); }
    bool IsEncrypted() const { return magic == LogRecord::kMagicCompressedEncrypted; }

    // Whether the magic, the number and the hours hold what a writer puts there. Random bytes seldom do.
    bool IsPlausible() const {
        const bool hours = beginHour >= 0 && beginHour < 24 && endHour >= 0 && endHour < 24;
        return LogRecord::IsMagic(magic) && hours && (IsCompressed() ? seq != 0 : seq == 0);
    }
};

}  // namespace OrvaneLog

#endif
