// Faults on order: which request of which protocol gets what in the place of the right answer.
//
//     PROTOCOL:WHICH:WHAT[:MORE]
//
// What concerns bytes and connections (a cut answer, a slow one, a reset) is none of these: it happens between the
// client and the server, and a proxy there does it.
#ifndef ORVANE_TOOLS_DEVSERVER_FAULT_H
#define ORVANE_TOOLS_DEVSERVER_FAULT_H

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "DevServer/Message.h"

namespace OrvaneDevServer {

struct Fault {
    enum class Kind {
        kStatus,    // number: the status; keepsBody: with the right answer, else with a web server's error page
        kDelay,     // number: milliseconds
        kHold,      // until released
        kRedirect,  // text: the address; empty: the same request again
        kEmpty,     // no byte
        kObject,    // "{}"
        kHostile,  // text: the name of the document; empty: one after the other; isSeed: a mutated answer, number: seed
        kCode,     // number: "ret" or "retcode"
        kRuleId,   // number: the rule id; isRelative: added to the right one
        kBig,      // number: bytes
        kNextPos,  // number: "next_pos"; isRelative: added to the right one; text "same": where the part began
        kUploadUrl,  // text: "upload_url"; empty: another of this server's
    };

    Protocol protocol = Protocol::kConfig;
    uint64_t first = 1, last = UINT64_MAX;  // counted from 1
    bool isFromNow = false;                 // `first` counts from the next request on
    Kind kind = Kind::kStatus;
    int64_t number = 0;
    std::string text;
    bool keepsBody = false, isSeed = false, isRelative = false;
    std::string order;  // as it was ordered
};

// Reads an order. False, and what is wrong in `error`, if it is none.
bool ParseFault(const std::string& order, Fault& fault, std::string& error);

// The orders in force. Any thread.
class FaultList {
public:
    // `served` is how many requests of its protocol there were.
    void Add(Fault fault, uint64_t served);
    // What the request of that number gets, in the order in which it was ordered.
    std::vector<Fault> For(Protocol protocol, uint64_t number) const;
    std::vector<std::string> Orders() const;
    void Clear();

private:
    mutable std::mutex _mutex;  // guards the list
    std::vector<Fault> _faults;
};

}  // namespace OrvaneDevServer

#endif
