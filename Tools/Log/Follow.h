// Follows logs as they grow: those of all modules below some paths. A live block grows in memory, of which the system
// tells no one, so everything is polled.
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

// All modules that are followed, each by a follower of its own. Modules that appear later are found and followed, too;
// none is ever given up. One thread.
class FollowSet {
public:
    // All borrowed. The printer gets the entries of all modules.
    FollowSet(const Arguments& arguments, KeyRing& keys, Report& report, Printer& printer)
        : _arguments(arguments), _keys(keys), _report(report), _printer(printer) {}

    // Whether every path named can be followed; the report says which cannot. A folder may still be empty. Call it
    // before the first Poll.
    bool Check();
    // Looks for new modules, and shows what is new of all.
    void Poll();

private:
    // Follows the file, or all logs of the folder.
    void Find(const std::string& path);
    // Follows the module that the file belongs to. `isNamed`: the user named this very file, so reading begins with it.
    // Otherwise, and for a block, it begins with the module's newest file.
    void FollowFile(const std::string& path, bool isNamed);
    // Adds a follower, unless the module in that folder has one already.
    void Add(const std::string& folder, const std::string& module, const std::string& first, const std::string& block);

    const Arguments& _arguments;
    KeyRing& _keys;
    Report& _report;
    Printer& _printer;
    std::map<std::pair<std::string, std::string>, std::unique_ptr<ModuleFollower>> _modules;  // by folder and module
};

// Shows the last entries (as many as --lines says, else 10), then what comes, until the process is ended or the output
// fails. Returns at once, with the problems in the report, if one of the paths does not exist.
void Follow(const Arguments& arguments, Look look, KeyRing& keys, DescriptorOutput& output, Report& report);

}  // namespace OrvaneLog

#endif
