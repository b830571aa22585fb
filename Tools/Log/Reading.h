// One run of the reader over a list of files, from the first file to the last; following is in Follow.h.
#ifndef ORVANE_TOOLS_LOG_READING_H
#define ORVANE_TOOLS_LOG_READING_H

#include <filesystem>
#include <map>
#include <memory>

#include "Log/Arguments.h"
#include "Log/KeyRing.h"
#include "Log/LogWalk.h"
#include "Log/MergePrinter.h"
#include "Log/Output.h"
#include "Log/Printer.h"
#include "Log/Progress.h"
#include "Log/Report.h"

namespace OrvaneLog {

// Reads the key files into the ring. False if one of them is not in order; the report says why, and the others are
// added all the same. A key file that others may read is worth a note, no more.
bool LoadKeys(const std::vector<std::string>& files, KeyRing& ring, Report& report);

// The printer that the arguments ask for; null where text may go to the output untouched, which saves the work of
// cutting it into entries. What it has to say goes to `report`. The arguments, the output and the report are borrowed.
std::unique_ptr<Printer> MakePrinter(const Arguments& arguments, Look look, Output& output, Report& report);

// Runs once. One thread: the caller's.
class Reading {
public:
    // All borrowed. `progress` may be null.
    Reading(const Arguments& arguments, Look look, KeyRing& keys, Output& output, Report& report, Progress* progress)
        : _arguments(arguments), _look(look), _keys(keys), _output(output), _report(report), _progress(progress) {}

    // Prints, lists or verifies what the arguments name, to the output; what goes wrong goes to the report. A file that
    // cannot be read does not keep the next ones from being read.
    void Run();

private:
    // Notes the files that end in a part of a record which a journal has whole.
    void FindTornFiles(const std::vector<std::string>& files);
    // `printer` is null where text goes out untouched, and `merge` where the order is that of the files.
    void ReadFile(const std::string& path, Printer* printer, MergePrinter* merge);
    // `events` is null where only the report wants to know.
    void Walk(const std::string& path, SourceKind kind, ByteSource& source, ReadEvents* events);

    const Arguments& _arguments;
    Look _look;  // of text; JSON does not ask for it
    KeyRing& _keys;
    Output& _output;
    Report& _report;
    Progress* _progress;
    std::map<std::filesystem::path, uint64_t> _tornFrom;  // where a torn record begins that the journal has whole
    uint64_t _done = 0;                                   // bytes of the files before the one being read
};

}  // namespace OrvaneLog

#endif
