// The numbered lines of the load. A reader that knows the thread and the number knows every byte that must be there, so
// that a crash test can check a log to the byte without a copy of what was logged. The host and the crash tests share
// this header, so that writer and reader always agree.
#ifndef ORVANE_TOOLS_HOST_LOAD_LINE_H
#define ORVANE_TOOLS_HOST_LOAD_LINE_H

#include <cstdint>
#include <cstdio>
#include <string>

namespace OrvaneHost {

// A line of the length and variety of a game's log (70 to 280 bytes), without a newline. The same thread and number
// give the same line. It begins with "load THREAD NUMBER ", by which a reader tells which line it has.
inline std::string LoadLine(unsigned thread, uint64_t sequence) {
    // The numbers are mixed here, not drawn from the standard library, whose sequences differ between vendors. `draw`
    // gives a number below its bound, another one at each call.
    uint64_t mixed = (sequence + 1) * 0x9E3779B97F4A7C15u + thread * 0xD1B54A32D192ED03u;
    const auto draw = [&mixed](unsigned bound) {
        mixed ^= mixed >> 29;
        mixed *= 0xBF58476D1CE4E5B9u;
        mixed ^= mixed >> 32;
        return static_cast<unsigned>(mixed % bound);
    };
    char text[400];
    int length = snprintf(text, sizeof text, "load %u %llu ", thread, static_cast<unsigned long long>(sequence));
    char* at = text + length;
    const size_t room = sizeof text - static_cast<size_t>(length);
    switch (draw(5)) {
        case 0:
            snprintf(at, room, "frame %u took %u.%02u ms (render %u.%02u, physics %u.%02u, script %u.%02u)",
                     draw(1000000), draw(40), draw(100), draw(20), draw(100), draw(10), draw(100), draw(10), draw(100));
            break;
        case 1:
            snprintf(at, room, "net recv id=%u type=%u len=%u rtt=%ums session=%08x%08x from gate-%u.zone%u.example",
                     draw(1000000), draw(400), draw(4096), draw(300), draw(~0u), draw(~0u), draw(64), draw(12));
            break;
        case 2:
            snprintf(at, room,
                     "asset loaded: Assets/Scenes/Level%02u/props/object_%05u.bundle hash=%08x%08x%08x%08x bytes=%u",
                     draw(40), draw(100000), draw(~0u), draw(~0u), draw(~0u), draw(~0u), draw(20000000));
            break;
        case 3:
            snprintf(at, room, "player %u moved to (%d.%03u, %d.%03u, %d.%03u) state=%s", draw(100000000),
                     static_cast<int>(draw(4000)) - 2000, draw(1000), static_cast<int>(draw(4000)) - 2000, draw(1000),
                     static_cast<int>(draw(400)) - 200, draw(1000), draw(2) ? "running" : "in cover");
            break;
        default:
            snprintf(at, room,
                     "shop reply {\"code\":%u,\"items\":[{\"id\":%u,\"price\":%u},{\"id\":%u,\"price\":%u},"
                     "{\"id\":%u,\"price\":%u}],\"token\":\"%08x%08x%08x\"}",
                     draw(3), draw(90000), draw(5000), draw(90000), draw(5000), draw(90000), draw(5000), draw(~0u),
                     draw(~0u), draw(~0u));
            break;
    }
    return text;
}

}  // namespace OrvaneHost

#endif
