// Finds the records of a file. Where all is well each record begins behind the one before; past damage the next header
// is searched byte by byte.
#ifndef ORVANE_TOOLS_LOG_RECORD_WALK_H
#define ORVANE_TOOLS_LOG_RECORD_WALK_H

#include "Log/LogWalk.h"
#include "Log/RecordDecoder.h"

namespace OrvaneLog {

// No length is trusted. Unless all of a record is well, the search goes on inside it, since a length that lies may have
// swallowed good records. An allowance limits that work, so that a file made to be slow is done some time. One thread;
// all references are borrowed.
class RecordWalk : public LogWalk {
public:
    RecordWalk(ByteSource& source, KeyRing& keys, ReadEvents& events)
        : _window(source), _decoder(_window, keys), _events(events) {}

    // Hands out the records up to the end of the source. A record that a growing source does not have whole yet, and
    // whose header looks right, is waited for.
    void Advance(bool growing) override;

private:
    enum class Step {
        kTaken,     // a record was given
        kNoRecord,  // none begins here
        kWait       // one seems to, but the growing file does not have all of it yet
    };

    // Tries the header at _offset, and moves _offset on if a record begins there.
    Step TryRecord(const RecordHeader& header, bool growing);
    Framing FrameAt(const RecordHeader& header);
    // Whether the source ends there, or a header seems to begin.
    bool SeemsToFollow(uint64_t offset);
    // Whether the allowance for work is not used up.
    bool MaySearchInside() const;
    // Reports what lies between _covered and `end` as skipped, if anything does.
    void CloseGap(uint64_t end);

    ByteWindow _window;
    RecordDecoder _decoder;
    ReadEvents& _events;

    uint64_t _offset = 0;    // where the search stands
    uint64_t _covered = 0;   // everything in front of this has been accounted for
    std::string _gapReason;  // why what lies between the two was no record, as far as there was more to say
};

}  // namespace OrvaneLog

#endif
