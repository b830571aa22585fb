// A source of plain lines, handed on as it is.
#ifndef ORVANE_TOOLS_LOG_TEXT_WALK_H
#define ORVANE_TOOLS_LOG_TEXT_WALK_H

#include "Log/ByteWindow.h"
#include "Log/LogWalk.h"

namespace OrvaneLog {

// Zero bytes alone are withheld and reported as a gap.
class TextWalk : public LogWalk {
public:
    TextWalk(ByteSource& source, ReadEvents& events) : _window(source), _events(events) {}

    void Advance(bool growing) override;

private:
    ByteWindow _window;
    ReadEvents& _events;
    uint64_t _offset = 0;
    // Zero bytes met at the offset before: a file system leaves them where a write was lost.
    uint64_t _zeros = 0;
};

}  // namespace OrvaneLog

#endif
