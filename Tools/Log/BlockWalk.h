// Reads the block that a logger keeps in a mapped file: one open record, or nothing.
//
// The block has the layout of a record (Docs/LogFormat.md), but its end byte is not written yet, and nothing behind the
// payload counts. A block whose first byte is zero is empty.
#ifndef ORVANE_TOOLS_LOG_BLOCK_WALK_H
#define ORVANE_TOOLS_LOG_BLOCK_WALK_H

#include <vector>

#include "Log/LogWalk.h"

namespace OrvaneLog {

// Takes the whole block at one moment. A live logger may write meanwhile, so it is read until two readings agree; the
// last of a few is taken if they never do. At most kBlockSize bytes.
std::vector<uint8_t> SnapshotBlock(ByteSource& source);

// Hands out what a block holds: a record with its text, or a gap if the bytes are no block. An empty block gives
// nothing. `bytes` is a snapshot, and must not change during the call.
void WalkBlock(std::span<const uint8_t> bytes, KeyRing& keys, ReadEvents& events);

// The same as a walk, for a file that turned out to be a block. All references are borrowed.
class BlockWalk : public LogWalk {
public:
    BlockWalk(ByteSource& source, KeyRing& keys, ReadEvents& events) : _source(source), _keys(keys), _events(events) {}

    // Reads the block once; further calls do nothing. A block is replaced, not appended to, so whoever follows one
    // takes snapshots instead.
    void Advance(bool growing) override;

private:
    ByteSource& _source;
    KeyRing& _keys;
    ReadEvents& _events;
    bool _done = false;
};

}  // namespace OrvaneLog

#endif
