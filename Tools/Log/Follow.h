// Following logs as they grow, of all modules below some paths.
#ifndef ORVANE_TOOLS_LOG_FOLLOW_H
#define ORVANE_TOOLS_LOG_FOLLOW_H

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "Log/Arguments.h"
#include "Log/KeyRing.h"
#include "Log/ModuleFollower.h"
#include "Log/Output.h"
#include "Log/Printer.h"
#include "Log/Report.h"

namespace OrvaneLog {

class FollowSet {
public:
    // All borrowed.
    FollowSet(const Arguments& arguments, KeyRing& keys, Report& report, Printer& printer)
        : _arguments(arguments), _keys(keys), _report(report), _printer(printer) {}

    // Whether every path named can be followed; the report says which cannot. A folder may still be empty.
    bool Check();
    // Looks for new modules, and shows what is new of all.
    void Poll();

private:
    void Find(const std::string& path);
    void FollowFile(const std::string& path, bool isNamed);
    void Add(const std::string& folder, const std::string& module, const std::string& first, const std::string& block);

    const Arguments& _arguments;
    KeyRing& _keys;
    Report& _report;
    Printer& _printer;
    std::map<std::pair<std::string, std::string>, std::unique_ptr<ModuleFollower>> _modules;  // by folder and module
};

// Follows until the process is ended or the output fails.
void Follow(const Arguments& arguments, Look look, KeyRing& keys, DescriptorOutput& output, Report& report);

}  // namespace OrvaneLog

#endif
