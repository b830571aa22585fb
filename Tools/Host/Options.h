// The host's command line.
#ifndef ORVANE_TOOLS_HOST_OPTIONS_H
#define ORVANE_TOOLS_HOST_OPTIONS_H

#include <cstdint>
#include <string>

namespace OrvaneHost {

struct Options {
    std::string pluginFolder;        // every *.so in it is opened; empty: none
    std::string infoPlistPath;       // the manifest; empty: left to the library
    std::string serverUrl;           // the configuration server; empty: the manifest's
    std::string scriptPath;          // the events' file; empty: standard input
    std::string module = "Game";     // the name of the host's logger
    int logMode = 2;                 // "LogMode" of that logger
    int consoleOutput = 0;           // "LogConsoleOutput" of that logger
    unsigned threads = 0;            // load threads, started by the launch; 0: no load
    uint64_t lines = 1000;           // lines that each of them logs; 0: until killed
    uint64_t firstSequence = 1;      // number of each thread's first line
    unsigned linesPerSecond = 0;     // pace of each thread that feeds lines; 0: as fast as it goes
    int acknowledgeDescriptor = -1;  // where returned log calls are acknowledged; -1: nowhere
};

enum class ParseResult { kRun, kHelp, kVersion, kWrong };

// Fills `options`. A wrong command line is told on standard error.
ParseResult ParseOptions(int count, char** arguments, Options& options);

// Writes the usage to standard output.
void PrintUsage();

// Reads a whole decimal number within the bounds. False, and `out` untouched, for anything else.
bool ParseNumber(const std::string& text, uint64_t least, uint64_t most, uint64_t& out);

}  // namespace OrvaneHost

#endif
