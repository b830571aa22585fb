// Answers that no honest server gives, for the proof that the client bears them.
#ifndef ORVANE_TOOLS_DEVSERVER_HOSTILE_JSON_H
#define ORVANE_TOOLS_DEVSERVER_HOSTILE_JSON_H

#include <cstdint>
#include <string>
#include <vector>

#include "DevServer/Message.h"

namespace OrvaneDevServer {

// One such answer's body.
struct HostileDocument {
    std::string name;  // by which it is ordered: "config:1:hostile:merged-null"
    std::string text;
};

// Documents with one thing wrong each: a member of another type, one out of range, one that is missing, very deep
// nesting, bytes that are no UTF-8. Made at the first call, valid for the process. Any thread.
const std::vector<HostileDocument>& HostileDocuments(Protocol protocol);
// Null if there is none of that name.
const HostileDocument* FindHostile(Protocol protocol, const std::string& name);

// A text with some of its bytes or pieces changed, dropped, doubled or cut off; the same for the same seed.
std::string Mutate(std::string text, uint64_t seed);

}  // namespace OrvaneDevServer

#endif
