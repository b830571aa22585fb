// What was shown of the blocks of a live logger.
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

// Which block of which writer a record is, as far as a reader can tell.
struct BlockIdentity {
    uint8_t magic = 0;
    uint16_t seq = 0;
    int8_t beginHour = 0;
    Quern::CurvePublicKey publicKey{};
    std::string head;  // the first bytes of its payload, those that cannot change any more

    static BlockIdentity Of(const RecordHeader& header, std::span<const uint8_t> payload);
    // Whether `later` is the same block, grown since.
    bool IsStartOf(const BlockIdentity& later) const;
};

// A block is shown while it grows in the mapped file, and comes again as a record of the log file. This remembers how
// much of it was shown, so that only the rest is shown then.
class BlockMemory {
public:
    using Clock = std::chrono::steady_clock;

    // What the mapped file holds now; nothing if it is empty. A block that it no longer holds has a record to come.
    void See(std::optional<BlockIdentity> block, Clock::time_point now);
    // How much text of that block was shown.
    uint64_t Shown() const { return _current ? _current->shown : 0; }
    void SetShown(uint64_t textSize);

    // A record of the log file begins. Gives how much of its text was shown already.
    uint64_t TakeRecord(const BlockIdentity& record);
    // Whether the mapped file's block, as last seen, has come as a record since: what was seen is out of date.
    bool HasArrived() const { return !_current; }
    // Whether a block shown in part has still to come as a record: newer text must wait for it. Not for ever, since a
    // writer may drop a block.
    bool IsWaiting(Clock::time_point now);

private:
    struct Block {
        BlockIdentity identity;
        uint64_t shown = 0;
        Clock::time_point left;  // when it was no more in the mapped file
    };
    std::optional<Block> _current;
    std::vector<Block> _waiting;
};

}  // namespace OrvaneLog

#endif
