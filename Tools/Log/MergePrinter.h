// Brings the entries of many files in order of time.
#ifndef ORVANE_TOOLS_LOG_MERGE_PRINTER_H
#define ORVANE_TOOLS_LOG_MERGE_PRINTER_H

#include <cstdint>
#include <string>
#include <vector>

#include "Log/Printer.h"

namespace OrvaneLog {

// Takes all entries first, and prints them at the end. Their texts wait in an unnamed file, so that the memory holds
// only a few bytes of each. Entries of one time keep the order in which they came. An entry without a time of its own
// keeps its place behind the entry before it; at the beginning of a source it keeps its place in front of the first
// entry with a time. One thread.
class MergePrinter : public Printer {
public:
    // `next` is borrowed, and gets nothing before Release. If no file can be made, Release says so.
    explicit MergePrinter(Printer& next);
    ~MergePrinter() override;
    MergePrinter(const MergePrinter&) = delete;
    MergePrinter& operator=(const MergePrinter&) = delete;

    // What comes from now on is of another source. Call it before each one, the first included.
    void BeginSource();
    // Takes a copy of the entry's text.
    void Print(const Entry& entry) override;
    // Prints what came. False, and errno tells why, if the file could not hold it all: the rest is printed.
    bool Release();

private:
    // An entry that waits: its time, and where its text is, or will be, in the file. The last texts are still in
    // _pending.
    struct Kept {
        LocalStamp stamp;
        uint64_t offset;  // of the text in the file
        size_t size;      // of the text, in bytes
    };

    // Writes what is pending to the file.
    void Spool();

    Printer& _next;
    int _file;                // without a name; -1 if none could be made
    int _error = 0;           // the errno of what failed first; nothing is taken after that
    std::vector<Kept> _kept;  // in the order in which they came
    size_t _untimed = 0;      // entries at the end of _kept, first of their source, whose time is yet to come
    LocalStamp _last = 0;     // the last time in this source; 0 before the first
    std::string _pending;     // what is yet to be written to the file
    uint64_t _written = 0;    // bytes of the file
};

}  // namespace OrvaneLog

#endif
