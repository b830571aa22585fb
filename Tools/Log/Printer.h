// How entries are shown: as text or as JSON. Printers form a chain: some keep or reorder entries and hand them to the
// next (TailPrinter, MergePrinter), and the last one writes (OtlpPrinter sends).
#ifndef ORVANE_TOOLS_LOG_PRINTER_H
#define ORVANE_TOOLS_LOG_PRINTER_H

#include <string>
#include <string_view>

#include "Log/Entry.h"
#include "Log/Output.h"

namespace OrvaneLog {

// The base of all printers. One thread, the one that reads.
class Printer {
public:
    virtual ~Printer() = default;
    // Takes one entry, which is valid during the call only.
    virtual void Print(const Entry& entry) = 0;
    // Nothing more comes. Called once at the end of a reading; a log that is followed has no end.
    virtual void End() {}
};

// How text is shown.
enum class Look {
    kAsItStands,  // byte for byte: for a file or a program
    kPrintable,   // for a terminal: what could command it is escaped
    kColoured,    // the same, with the level coloured
};

// The entry and a newline. The output is borrowed.
class TextPrinter : public Printer {
public:
    // `look` is for where the output leads: a log may hold what commands a terminal.
    explicit TextPrinter(Output& output, Look look = Look::kAsItStands) : _output(output), _look(look) {}
    void Print(const Entry& entry) override;

private:
    Output& _output;
    Look _look;
};

// One JSON object a line: "time", "level", "module", "thread", "file", "line", "function", "text"; of an entry that is
// no line of the logger's format only "text". "time" is local, as "2026-11-24T21:50:39.123"; "thread" and "line" are
// numbers, the rest are strings. The output is borrowed.
class JsonPrinter : public Printer {
public:
    explicit JsonPrinter(Output& output) : _output(output) {}
    void Print(const Entry& entry) override;

private:
    Output& _output;
    std::string _object;  // kept for its memory
};

// Appends a JSON string with its quotes. Bytes that are no UTF-8 become U+FFFD, one each.
void AppendJsonString(std::string& out, std::string_view text);

}  // namespace OrvaneLog

#endif
