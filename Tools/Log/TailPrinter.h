// Keeps the last entries of many, for --lines and for the start of --follow.
#ifndef ORVANE_TOOLS_LOG_TAIL_PRINTER_H
#define ORVANE_TOOLS_LOG_TAIL_PRINTER_H

#include <deque>
#include <string>

#include "Log/Printer.h"

namespace OrvaneLog {

// A log is read from its beginning even if its end alone is asked for: its records have no index. Holds copies, because
// an entry's text lives during Print only.
class TailPrinter : public Printer {
public:
    // `next` is borrowed, and gets nothing before Release. `count`: how many entries to keep; 0 for none.
    TailPrinter(Printer& next, size_t count) : _next(next), _count(count) {}

    // Keeps a copy of the entry, or hands it on at once after Release.
    void Print(const Entry& entry) override {
        if (!_holding) {
            _next.Print(entry);
            return;
        }
        _kept.emplace_back(entry.whole);
        if (_kept.size() > _count) _kept.pop_front();
    }

    // Prints what is kept; what comes later is printed at once.
    void Release() {
        _holding = false;
        for (const std::string& whole : _kept)
            _next.Print(MakeEntry(whole));
        _kept.clear();
    }

private:
    Printer& _next;
    size_t _count;
    bool _holding = true;           // until Release
    std::deque<std::string> _kept;  // their texts, the oldest first
};

}  // namespace OrvaneLog

#endif
