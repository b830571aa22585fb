// The end of a file of lines that may be large and may grow.
#ifndef ORVANE_TOOLS_DEVSERVER_CONSOLE_FILE_END_H
#define ORVANE_TOOLS_DEVSERVER_CONSOLE_FILE_END_H

#include <string>
#include <vector>

namespace OrvaneDevServer {

struct FileEnd {
    std::vector<std::string> lines;  // without their newlines; one that has none yet is left out
    bool isCut = false;              // there was more before them
};

// The whole lines in the last `mostBytes` of a regular file. None if it cannot be read, or is no regular file. Any
// thread; the file may grow meanwhile.
FileEnd LinesAtEnd(const std::string& path, size_t mostBytes);

}  // namespace OrvaneDevServer

#endif
