// Brings the entries of many files in order of time.
#ifndef ORVANE_TOOLS_LOG_MERGE_PRINTER_H
#define ORVANE_TOOLS_LOG_MERGE_PRINTER_H

#include <cstdint>
#include <string>
#include <vector>

#include "Log/Printer.h"

namespace OrvaneLog {

// Takes all entries first, and prints them at the end. Their texts wait in an unnamed file, so that the memory holds a
// few bytes of each. Entries of one time keep the order in which they came; one without a time of its own keeps its
// place behind the entry before it, or, at the begin of a source, in front of the one behind it.
class MergePrinter : public Printer {
public:
    // `next` is borrowed.
    explicit MergePrinter(Printer& next);
    ~MergePrinter() override;
    MergePrinter(const MergePrinter&) = delete;
    MergePrinter& operator=(const MergePrinter&) = delete;

    // What comes from now on is of another source.
    void BeginSource();
    void Print(const Entry& entry) override;
    // Prints what came. False, and errno tells why, if the file could not hold it all: the rest is printed.
    bool Release();

private:
    struct Kept {
        LocalStamp stamp;
        uint64_t offset;
        size_t size;
    };

    void Spool();

    Printer& _next;
    int _file;
    int _error = 0;
    std::vector<Kept> _kept;
    size_t _untimed = 0;  // entries at the end of _kept, and the begin of their source, whose time is yet to come
    LocalStamp _last = 0;
    std::string _pending;  // what is yet to be written to the file
    uint64_t _written = 0;
};

}  // namespace OrvaneLog

#endif
