// Finds the records of a file, by the headers and, past damage, byte by byte.
#ifndef ORVANE_TOOLS_LOG_RECORD_WALK_H
#define ORVANE_TOOLS_LOG_RECORD_WALK_H

#include "Log/LogWalk.h"
#include "Log/RecordDecoder.h"

namespace OrvaneLog {

// No length is trusted: unless all of a record is well, the search goes on inside it, within an allowance for its work.
// One thread; all references are borrowed.
class RecordWalk : public LogWalk {
public:
    RecordWalk(ByteSource& source, KeyRing& keys, ReadEvents& events)
        : _window(source), _decoder(_window, keys), _events(events) {}

    void Advance(bool growing) override;

private:
    enum class Step { kTaken, kNoRecord, kWait };

    Step TryRecord(const RecordHeader& header, bool growing);
    Framing FrameAt(const RecordHeader& header);
    bool SeemsToFollow(uint64_t offset);
    bool MaySearchInside() const;
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
