// An entry is what is filtered, counted and shown as one: a line of the logger's format with the further lines that its
// text held, or any one line that belongs to no such line. This also cuts text into entries.
#ifndef ORVANE_TOOLS_LOG_ENTRY_H
#define ORVANE_TOOLS_LOG_ENTRY_H

#include <functional>
#include <string>
#include <string_view>

#include "Log/LogLine.h"

namespace OrvaneLog {

enum class EntryKind {
    kLine,        // of the logger's format: `line` is filled
    kLossNotice,  // the logger's word that the block was full and a line was lost
    kOther,       // anything else: tips around a restored block, what damage left of a line
};

// A view: the fields point into the text that it was made of, and are valid as long as that is.
struct Entry {
    EntryKind kind = EntryKind::kOther;
    std::string_view whole;  // as it stands in the log, newlines inside; without the last one
    LogLine line;            // of a kLine only
};

// Makes an entry of a text that is one. The entry points into `whole`.
Entry MakeEntry(std::string_view whole);

// Takes text in pieces cut anywhere, and gives it on entry by entry. It cannot tell where an entry ends before the next
// one begins, so it may hold the last entry back until End. Memory is bounded: an entry longer than any logger writes
// is given in parts. One thread.
class EntrySplitter {
public:
    static constexpr size_t kLongestEntry = 64u << 10;  // bytes

    // `take` gets each entry, within Feed or End; the entry is valid during that call only. `splitGlued`: the lines
    // come from a plain-text file, in which a line of full length has lost its newline, so that the next one is glued
    // to it.
    EntrySplitter(std::function<void(const Entry&)> take, bool splitGlued)
        : _take(std::move(take)), _splitGlued(splitGlued) {}

    void Feed(std::string_view piece);
    // The text ends here, or the record does: nothing that follows belongs to the entry before.
    void End();

private:
    // Gives on the entries that are complete, and puts what is left at the front of `_pending`.
    void Scan(bool atEnd);
    void Give(std::string_view text);

    std::function<void(const Entry&)> _take;  // where entries go
    bool _splitGlued;
    std::string _pending;  // begins with the entry that is not complete yet
    size_t _scanned = 0;   // up to here no further entry begins
};

}  // namespace OrvaneLog

#endif
