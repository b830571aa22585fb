// The page of the console: the files of Web/, compiled into the program.
#ifndef ORVANE_TOOLS_DEVSERVER_CONSOLE_CONSOLE_FILES_H
#define ORVANE_TOOLS_DEVSERVER_CONSOLE_CONSOLE_FILES_H

#include <span>
#include <string_view>

namespace OrvaneDevServer {

struct ConsoleFile {
    std::string_view name;  // "main.js"
    std::string_view content;
};

std::span<const ConsoleFile> ConsoleFiles();

}  // namespace OrvaneDevServer

#endif
