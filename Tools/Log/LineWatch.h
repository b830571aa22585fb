// Checks whether an inflated text is what a writer puts in: whole lines, with a flush of the deflate stream behind
// each.
#ifndef ORVANE_TOOLS_LOG_LINE_WATCH_H
#define ORVANE_TOOLS_LOG_LINE_WATCH_H

#include <cstdint>
#include <string>
#include <string_view>

namespace OrvaneLog {

// A record has no checksum, so damaged bytes may inflate to another text without an error. Such damage shows where it
// moves the ends of lines: in a sound text each flush stands right behind a newline, and if the first line has a head
// (date, level, module), each line has one, but for a notice of lost lines.
class LineWatch {
public:
    // Starts on another text. Text() and Flush() then tell of it in its order.
    void Begin() { *this = LineWatch(); }
    // The next piece of the text; cut anywhere.
    void Text(std::string_view piece);
    // The stream has a flush behind the text so far: a line must end here.
    void Flush();

    // What was found wrong first; empty if nothing was.
    const std::string& Fault() const { return _fault; }
    // Whether text came behind the last flush: a line that was not written to its end.
    bool IsWithinLine() const { return _size > _lineBegin; }

private:
    void Find(const char* what);

    std::string _start;       // of the line, as much as a head needs
    uint64_t _lineBegin = 0;  // bytes of the text in front of the line
    uint64_t _size = 0;       // bytes of the text so far
    char _last = '\n';        // of the text so far
    bool _hasHeads = false;   // the first line has a head, so that each must have one
    std::string _fault;
};

}  // namespace OrvaneLog

#endif
