// The page of the console: the files of Web/, compiled into the program, so that the server is one file and the page
// always fits it.
#ifndef ORVANE_TOOLS_DEVSERVER_CONSOLE_CONSOLE_FILES_H
#define ORVANE_TOOLS_DEVSERVER_CONSOLE_CONSOLE_FILES_H

#include <span>
#include <string_view>

namespace OrvaneDevServer {

// Both are literals.
struct ConsoleFile {
    std::string_view name;  // "main.js"
    std::string_view content;
};

// All of them, in no order that counts; the build makes the list. Any thread.
std::span<const ConsoleFile> ConsoleFiles();

}  // namespace OrvaneDevServer

#endif
