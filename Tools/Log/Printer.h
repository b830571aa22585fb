// How entries are shown.
#ifndef ORVANE_TOOLS_LOG_PRINTER_H
#define ORVANE_TOOLS_LOG_PRINTER_H

#include <string>
#include <string_view>

#include "Log/Entry.h"
#include "Log/Output.h"

namespace OrvaneLog {

class Printer {
public:
    virtual ~Printer() = default;
    virtual void Print(const Entry& entry) = 0;
    // Nothing more comes.
    virtual void End() {}
};

// How text is shown.
enum class Look {
    kAsItStands,  // byte for byte: for a file or a program
    kPrintable,   // for a terminal: what could command it is escaped
    kColoured,    // the same, with the level coloured
};

class TextPrinter : public Printer {
public:
    explicit TextPrinter(Output& output, Look look = Look::kAsItStands) : _output(output), _look(look) {}
    void Print(const Entry& entry) override;

private:
    Output& _output;
    Look _look;
};

// One JSON object a line: "time", "level", "module", "thread", "file", "line", "function", "text"; of an entry that is
// no line of the logger's format only "text".
class JsonPrinter : public Printer {
public:
    explicit JsonPrinter(Output& output) : _output(output) {}
    void Print(const Entry& entry) override;

private:
    Output& _output;
    std::string _object;
};

// Appends a JSON string with its quotes. Bytes that are no UTF-8 become U+FFFD, one each.
void AppendJsonString(std::string& out, std::string_view text);

}  // namespace OrvaneLog

#endif
