// One run of the reader over a list of files.
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

// Reads the key files into the ring. False if one of them is not in order; the report says why, and that `from`, an
// option or a variable, named it.
bool LoadKeys(const std::vector<std::string>& files, const std::string& from, KeyRing& ring, Report& report);

// The printer that the arguments ask for; null where text may go to the output untouched.
// What it has to say goes to `report`. The arguments, the output and the report are borrowed.
std::unique_ptr<Printer> MakePrinter(const Arguments& arguments, Look look, Output& output, Report& report);

class Reading {
public:
    // All borrowed. `progress` may be null.
    Reading(const Arguments& arguments, Look look, KeyRing& keys, Output& output, Report& report, Progress* progress)
        : _arguments(arguments), _look(look), _keys(keys), _output(output), _report(report), _progress(progress) {}

    // Prints, lists or verifies what the arguments name.
    void Run();

private:
    void FindTornFiles(const std::vector<std::string>& files);
    void ReadFile(const std::string& path, Printer* printer, MergePrinter* merge);
    void Walk(const std::string& path, SourceKind kind, ByteSource& source, ReadEvents* events);

    const Arguments& _arguments;
    Look _look;
    KeyRing& _keys;
    Output& _output;
    Report& _report;
    Progress* _progress;
    std::map<std::filesystem::path, uint64_t> _tornFrom;  // where a torn record begins that the journal has whole
    uint64_t _done = 0;                                   // bytes of the files before the one being read
};

}  // namespace OrvaneLog

#endif
