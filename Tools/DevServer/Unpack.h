// Takes a device's zip apart. Nothing in it is trusted.
#ifndef ORVANE_TOOLS_DEVSERVER_UNPACK_H
#define ORVANE_TOOLS_DEVSERVER_UNPACK_H

#include <cstdint>
#include <string>
#include <vector>

namespace OrvaneDevServer {

struct UnpackLimits {
    uint64_t mostBytes = 16ULL << 30;  // of all entries together
    uint64_t mostRatio = 1100;         // unpacked to packed, of the whole; deflate itself cannot do more
    size_t mostEntries = 100000;
};

// Writes the entries as files into `folder`, which is made. An entry whose name is no plain file name ("..", one with a
// slash or a control character, an empty one or one of more than 255 bytes), a folder and a link are left out; of two
// entries of one name the second gets ".2" behind it, and so on; if that is too long, it is left out. Gives what is
// worth knowing, one line each; the first says how many there are. Where a limit is passed, unpacking ends there.
std::vector<std::string> Unpack(const std::string& zip, const std::string& folder, const UnpackLimits& limits = {});

}  // namespace OrvaneDevServer

#endif
