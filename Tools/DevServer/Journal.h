// The journal: one JSON object a line, for people and for scripts. Docs/DevServer.md lists the members.
#ifndef ORVANE_TOOLS_DEVSERVER_JOURNAL_H
#define ORVANE_TOOLS_DEVSERVER_JOURNAL_H

#include <json/json.h>

#include <mutex>
#include <string>

namespace OrvaneDevServer {

// A file that grows over all runs; no line of it is ever removed. Its lock keeps a second server out of the folder.
class Journal {
public:
    Journal() = default;
    ~Journal();
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    // False, and why in `error`, if the file cannot be written, or another server has it.
    bool Open(const std::string& path, std::string& error);
    // The "time" of a line that is written now: UTC, to the millisecond.
    static std::string Now();
    // Writes the line in one piece, whole or not at all. False if it could not be written (a full disk): the next may.
    // Any thread.
    bool Write(const Json::Value& line);

private:
    // Ends a line that a killed server left without its end. False, and errno, if that fails.
    bool Repair();

    std::mutex _mutex;     // guards the file's end
    int _descriptor = -1;  // -1 before Open; holds the lock
};

}  // namespace OrvaneDevServer

#endif
