// Remembers what was shown of the blocks of a live logger, so that no line is shown twice.
//
// A logger collects its lines in a block, which is a mapped file, and appends the block to its log file as a record
// from time to time. Following shows the block while it grows; the same lines come again with the record.
#ifndef ORVANE_TOOLS_LOG_BLOCK_MEMORY_H
#define ORVANE_TOOLS_LOG_BLOCK_MEMORY_H

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Log/RecordHeader.h"

namespace OrvaneLog {

// Tells the blocks apart. A block has no name, so that this takes what its header and its first bytes show. Two blocks
// that agree in all of this count as one.
struct BlockIdentity {
    uint8_t magic = 0;                  // how the payload is stored
    uint16_t seq = 0;                   // the writer's number of the block
    int8_t beginHour = 0;               // local hour in which the block was begun
    Quern::CurvePublicKey publicKey{};  // drawn anew at each start of a writer, where it encrypts
    std::string head;                   // the first bytes of its payload, those that cannot change any more

    // `payload` is what is at hand of the block's payload, as it is stored; a few bytes are enough.
    static BlockIdentity Of(const RecordHeader& header, std::span<const uint8_t> payload);
    // Whether `later` is the same block, grown since.
    bool IsStartOf(const BlockIdentity& later) const;
};

// One object serves one module. It counts text, not stored bytes, since the text is what is shown. All calls come from
// the one thread of the reader; `now` is passed in, so that a test need not wait.
class BlockMemory {
public:
    using Clock = std::chrono::steady_clock;

    // Takes what the mapped file holds now; nothing if it is empty. If another block was there before and was shown,
    // that one has left the mapped file, and its record is still to come.
    void See(std::optional<BlockIdentity> block, Clock::time_point now);
    // How many bytes of text were shown of the block seen last; 0 for a new one.
    uint64_t Shown() const { return _current ? _current->shown : 0; }
    // Notes that so many bytes of its text are shown now. A smaller number than before changes nothing.
    void SetShown(uint64_t textSize);

    // A record of the log file begins. Gives how many bytes of its text were shown already, from its block; the caller
    // leaves them out. The block is forgotten, for it comes once.
    uint64_t TakeRecord(const BlockIdentity& record);
    // Whether the mapped file's block, as last seen, has come as a record since: what was seen is out of date. Also if
    // there was none.
    bool HasArrived() const { return !_current; }
    // Whether a block shown in part has still to come as a record. Newer text must wait for it, or the lines would get
    // out of order. After two seconds it is given up, since a writer may drop a block.
    bool IsWaiting(Clock::time_point now);

private:
    struct Block {
        BlockIdentity identity;
        uint64_t shown = 0;      // bytes of its text
        Clock::time_point left;  // when it was no more in the mapped file
    };
    std::optional<Block> _current;  // in the mapped file as last seen; nothing if empty, or come as a record since
    std::vector<Block> _waiting;    // shown in part, gone from the mapped file, not come as a record yet
};

}  // namespace OrvaneLog

#endif
