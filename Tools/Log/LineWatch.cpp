#include "Log/LineWatch.h"

#include "Log/LogLine.h"

namespace OrvaneLog {

void LineWatch::Text(std::string_view piece) {
    if (piece.empty()) return;
    if (_start.size() < kLineStartLength) _start += piece.substr(0, kLineStartLength - _start.size());
    _last = piece.back();
    _size += piece.size();
}

void LineWatch::Flush() {
    // Two flushes may follow each other: nothing stands between them.
    if (!IsWithinLine()) return;
    const bool hasHead = BeginsLine(_start);
    if (_lineBegin == 0) _hasHeads = hasHead;
    if (_hasHeads && !hasHead && !BeginsLossNotice(_start)) Find("has lost its head");
    if (_last != '\n') Find("has lost its end");
    _lineBegin = _size;
    _start.clear();
}

void LineWatch::Find(const char* what) {
    if (_fault.empty()) _fault = "the line at byte " + std::to_string(_lineBegin) + " of its text " + what;
}

}  // namespace OrvaneLog
