// Whether a deflated text is what a writer puts in: a line for each flush.
#ifndef ORVANE_TOOLS_LOG_LINE_WATCH_H
#define ORVANE_TOOLS_LOG_LINE_WATCH_H

#include <cstdint>
#include <string>
#include <string_view>

namespace OrvaneLog {

// There is no checksum over a record, so that damage may inflate to other text. It shows where it moves the ends of
// lines: each flush stands behind a newline, and where the first line has a head (date, level, module) so has each.
class LineWatch {
public:
    void Begin() { *this = LineWatch(); }
    void Text(std::string_view piece);
    void Flush();

    // What was found wrong first; empty if nothing was.
    const std::string& Fault() const { return _fault; }
    // Whether text came behind the last flush: a line that was not written to its end.
    bool IsWithinLine() const { return _size > _lineBegin; }

private:
    void Find(const char* what);

    std::string _start;  // of the line, as much as a head needs
    uint64_t _lineBegin = 0;
    uint64_t _size = 0;
    char _last = '\n';
    bool _hasHeads = false;
    std::string _fault;
};

}  // namespace OrvaneLog

#endif
