// Brings the text of a source to the output: untouched, or entry by entry through filter and printer. Text that goes
// untouched costs no more than its copy, which is what a large log without options asks for.
#ifndef ORVANE_TOOLS_LOG_TEXT_EVENTS_H
#define ORVANE_TOOLS_LOG_TEXT_EVENTS_H

#include <memory>

#include "Log/Entry.h"
#include "Log/Filter.h"
#include "Log/Output.h"
#include "Log/Printer.h"
#include "Log/ReadEvents.h"

namespace OrvaneLog {

// Takes one source's text. The next source gets an object of its own, since a line may not continue across files. One
// thread.
class TextEvents : public ReadEvents {
public:
    // Text goes on untouched. The output is borrowed.
    explicit TextEvents(Output& output) : _output(&output) {}
    // Entries that `filter` lets pass are printed. The printer and the filter's options are borrowed. `sourceModule`:
    // the module that the file's name tells. `plainFile`: the source holds lines as they are.
    TextEvents(Printer& printer, const FilterOptions& filter, std::string sourceModule, bool plainFile);

    void OnText(std::string_view piece) override;
    void OnRecordEnd(const RecordReport&) override { End(); }
    // What comes after a gap continues no line before it.
    void OnSkipped(uint64_t, uint64_t, const std::string&) override { End(); }

    // The source is over, or the text so far stands for itself. A line that lacks its newline gets one.
    void End();
    // Does what End does if the text taken last ends with a newline, else nothing. For a file that may grow, and has
    // not grown for a while.
    void Pause();

private:
    // The way through filter and printer. On the heap, since the splitter's callback points back at it.
    struct Entries {
        Entries(Printer& printer, const FilterOptions& options, std::string sourceModule, bool plainFile);
        Printer& printer;
        Filter filter;
        EntrySplitter splitter;
    };

    Output* _output = nullptr;          // or null, and then there are _entries
    std::unique_ptr<Entries> _entries;  // null where text goes on untouched
    char _last = '\n';                  // of the text taken so far
};

}  // namespace OrvaneLog

#endif
