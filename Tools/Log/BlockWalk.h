// The block that a logger keeps in a mapped file: one open record, or nothing.
#ifndef ORVANE_TOOLS_LOG_BLOCK_WALK_H
#define ORVANE_TOOLS_LOG_BLOCK_WALK_H

#include <vector>

#include "Log/LogWalk.h"

namespace OrvaneLog {

// Takes the whole block at one moment. A live logger may write meanwhile, so it is read until two readings agree; the
// last of a few is taken if they never do. At most kBlockSize bytes.
std::vector<uint8_t> SnapshotBlock(ByteSource& source);

// Hands out what a block holds. `bytes` is a snapshot.
void WalkBlock(std::span<const uint8_t> bytes, KeyRing& keys, ReadEvents& events);

class BlockWalk : public LogWalk {
public:
    BlockWalk(ByteSource& source, KeyRing& keys, ReadEvents& events) : _source(source), _keys(keys), _events(events) {}

    // Reads the block once.
    void Advance(bool growing) override;

private:
    ByteSource& _source;
    KeyRing& _keys;
    ReadEvents& _events;
    bool _done = false;
};

}  // namespace OrvaneLog

#endif
