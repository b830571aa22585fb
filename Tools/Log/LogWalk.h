// Reads one source from its start to its end, whatever kind it is of.
//
// A kind is a subclass and an entry in MakeWalk; everything above (filters, printers, following) knows the base alone.
#ifndef ORVANE_TOOLS_LOG_LOG_WALK_H
#define ORVANE_TOOLS_LOG_LOG_WALK_H

#include <memory>

#include "Log/ByteSource.h"
#include "Log/KeyRing.h"
#include "Log/ReadEvents.h"

namespace OrvaneLog {

enum class SourceKind {
    kRecords,      // records one after another: "*.xlog"
    kText,         // lines as they are: "*.log"
    kMappedBlock,  // the block of a logger, left over or live: "*.mmap3"
};

// Hands what it finds to the ReadEvents that it was made with, in the order of the source. One thread. A walk remembers
// how far it is, so that it can be called again as the source grows.
class LogWalk {
public:
    virtual ~LogWalk() = default;

    // Walks on to the end of what the source holds. While it is `growing`, what is incomplete at the end is waited for:
    // the next call goes on there. Otherwise it is the end, and what is incomplete is damage.
    virtual void Advance(bool growing) = 0;
};

// The walk for a source of that kind. It borrows the source, the keys and the events.
std::unique_ptr<LogWalk> MakeWalk(SourceKind kind, ByteSource& source, KeyRing& keys, ReadEvents& events);

// The kind that a name says, or, where the name says nothing, that the first bytes show. A ".log" file that begins with
// a record is taken for one of records: names get changed on the way.
SourceKind KindOf(const std::string& path, ByteSource& source);

}  // namespace OrvaneLog

#endif
