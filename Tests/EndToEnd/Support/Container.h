// An application's container in a temporary folder, with what the host leaves there.
#ifndef ORVANE_TESTS_END_TO_END_CONTAINER_H
#define ORVANE_TESTS_END_TO_END_CONTAINER_H

#include "Support/Process.h"
#include "Support/Test.h"

namespace EndToEnd {

using OrvaneTest::ReadFile;
using OrvaneTest::SplitLines;
using OrvaneTest::WriteFile;

// The text of the place in a line of the log behind the head that the logger puts in front; the whole line if it has
// no such head.
std::string TextOfLogLine(const std::string& line);

class Container {
public:
    // ORVANE_HOME of the hosts that are started here.
    std::filesystem::path Home() const { return _folder / "home"; }
    // A place outside of it for a test's own files.
    std::filesystem::path Outside() const { return _folder.Path(); }
    std::filesystem::path Caches() const { return Home() / "Library" / "Caches"; }
    std::filesystem::path LogFolder(const std::string& module) const { return Caches() / "OrvaneSDKLog" / module; }
    std::filesystem::path MappedFile(const std::string& module) const { return Caches() / (module + ".mmap3"); }

    // orvane-host with these arguments, in this container.
    Command Host(std::vector<std::string> arguments) const;
    // Every line that orvane-log gives of the module's files and of its block, in order.
    std::vector<std::string> ReadLog(const std::string& module) const;
    // Their texts, each with a newline behind it.
    std::string ReadTexts(const std::string& module) const;
    // The events that the data plugin wrote.
    std::filesystem::path EventsFile() const { return _folder / "events.jsonl"; }

private:
    OrvaneTest::TemporaryFolder _folder;
};

}  // namespace EndToEnd

#endif
