// The command line.
#ifndef ORVANE_TOOLS_NET_ARGUMENTS_H
#define ORVANE_TOOLS_NET_ARGUMENTS_H

#include <string>
#include <utility>
#include <vector>

namespace OrvaneNet {

struct Arguments {
    bool help = false;
    bool version = false;
    std::string command;             // state, ping, traceroute, lookup, get, post, download, diagnose
    std::vector<std::string> words;  // what the command takes: a host, a URL, a URL and a file

    bool json = false;
    bool verbose = false;
    bool watch = false;                                        // of state
    int count = 10;                                            // packets of a ping, 1 to 255
    int timeOut = 3;                                           // seconds of a ping, 1 to 255
    int maxTtl = 30;                                           // hops of a traceroute, 1 to 255
    int deadline = 0;                                          // in seconds; 0 stands for the command's own
    std::vector<std::pair<std::string, std::string>> headers;  // of get and post
    std::string body;                                          // of post
    std::string bodyFile;                                      // of post; "-" is standard input
    std::string output;                                        // where get and post put the body
    std::string url;                                           // of diagnose
    long long pauseAt = -1;                                    // of download, in bytes; -1 for never
};

// Reads the arguments behind the program's name. False, and what is wrong in `error`, if they make no sense.
bool ParseArguments(int count, char** arguments, Arguments& out, std::string& error);

extern const char kHelpText[];

}  // namespace OrvaneNet

#endif
