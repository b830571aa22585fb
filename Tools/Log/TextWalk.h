// Walks over a source of plain lines, and hands them on as they are.
#ifndef ORVANE_TOOLS_LOG_TEXT_WALK_H
#define ORVANE_TOOLS_LOG_TEXT_WALK_H

#include "Log/ByteWindow.h"
#include "Log/LogWalk.h"

namespace OrvaneLog {

// Zero bytes alone are withheld and reported as a gap: a file system leaves them where a write was lost. One thread;
// the references are borrowed.
class TextWalk : public LogWalk {
public:
    TextWalk(ByteSource& source, ReadEvents& events) : _window(source), _events(events) {}

    // Hands on all that there is. The last line may lack its newline: whoever takes the text waits for it or not.
    void Advance(bool growing) override;

private:
    ByteWindow _window;
    ReadEvents& _events;
    uint64_t _offset = 0;  // how far the source was read
    uint64_t _zeros = 0;   // zero bytes in front of that, not reported yet: more may follow
};

}  // namespace OrvaneLog

#endif
