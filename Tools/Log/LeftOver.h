// Reads what a logger that died left beside its files, as its next start would bring it back.
//
// A killed logger leaves its block, a mapped file with the lines not yet appended, and a journal beside it. The journal
// puts the block right where the kill hit a write, and holds a closed block that was on its way to the log file.
#ifndef ORVANE_TOOLS_LOG_LEFT_OVER_H
#define ORVANE_TOOLS_LOG_LEFT_OVER_H

#include <cstdint>
#include <string>
#include <vector>

#include "Log/ByteSource.h"
#include "Log/KeyRing.h"
#include "Log/ReadEvents.h"

namespace OrvaneLog {

struct LeftOver {
    // A closed block that had left the mapped file and has not wholly reached its log file. Empty if there is none.
    std::vector<uint8_t> staged;
    // The log file that ends in a part of that block, and the offset of the part. Empty if none does. The part is of no
    // use beside the whole block.
    std::string tornFile;
    uint64_t tornFrom = 0;
    std::vector<uint8_t> block;  // the mapped block, with what the journal beside it puts right
};

// `path` is that of the block, which says where its journal and its files are; or that of the journal, if the block is
// gone, and then `block` is not read. A journal that is missing or damaged counts as empty. A block under a
// name without the extension of blocks is read alone. Changes nothing on the disk.
LeftOver ReadLeftOver(const std::string& path, ByteSource& block);

// Hands out what is left over, oldest first: the staged record, then the block.
void WalkLeftOver(const LeftOver& leftOver, KeyRing& keys, ReadEvents& events);

}  // namespace OrvaneLog

#endif
