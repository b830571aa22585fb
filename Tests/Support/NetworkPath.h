// A real path of three hops, in network namespaces that end with the process:
//
//     this process -- r1 -- r2 == relay == target
//     10.9.1.2    10.9.1.1   10.9.2.2       10.9.3.2        (and fd09:1::2, fd09:1::1, fd09:2::2, fd09:3::2)
//
// The routers forward, on cables of the kernel. Behind r2 the packets pass through this process, which delays, drops or
// doubles them.
#ifndef ORVANE_TESTS_SUPPORT_NETWORK_PATH_H
#define ORVANE_TESTS_SUPPORT_NETWORK_PATH_H

#include "Support/Test.h"

namespace OrvaneTest {

class NetworkPath {
public:
    enum Place { kHere, kRouter1, kRouter2, kTarget, kPlaces };

    // Puts the calling thread, which must be the process's only one, into namespaces of its own. False without the
    // right to.
    static bool Enter();

    NetworkPath();
    ~NetworkPath();
    NetworkPath(const NetworkPath&) = delete;
    NetworkPath& operator=(const NetworkPath&) = delete;

    // Runs a shell command at a place; what it wrote. Throws if it fails.
    std::string Run(Place place, const std::string& command) const;

    // Lets this process have ping sockets, or not, so that it has to use raw ones.
    void AllowPingSockets(bool allow) const;

    // Of the relay, for packets of both directions.
    std::atomic<int> delay{0};           // milliseconds, each way
    std::atomic<unsigned> dropEvery{0};  // drops the packets of that number towards the target, from the first on
    std::atomic<bool> isDoubled{false};  // sends each packet twice

private:
    using Clock = std::chrono::steady_clock;

    int OpenTun(Place place, const char* name) const;
    void Forward(int from, int to);
    void SendDue();
    void Relay();

    int _namespaces[kPlaces];
    int _ends[2];
    unsigned _towardsTarget = 0;
    std::multimap<Clock::time_point, std::pair<int, std::vector<char>>> _waiting;  // by when they are due, with the end
    std::atomic<bool> _isEnding{false};
    std::thread _relay;
};

// After NetworkPath::Enter, and without a path: names are looked up at a server that takes questions and never answers.
void MuteNameServer();

}  // namespace OrvaneTest

#endif
