// What the client makes of a value that it is sent, from the answer to the game's read.
//
// The client keeps an answer as a file of lines "key=text", and every read is of such a text. On its way there a text
// that is a number is turned into a number and back: "1.10" comes out as "1.100000".
#ifndef ORVANE_TOOLS_DEVSERVER_LINT_STORED_VALUE_H
#define ORVANE_TOOLS_DEVSERVER_LINT_STORED_VALUE_H

#include <json/json.h>

#include <cstdint>
#include <string>

namespace OrvaneDevServer {

struct StoredValue {
    bool isKept = false;   // a text or an integer; all else is dropped, as if the key were not there
    bool isFound = false;  // a read finds it; one that does not asks the manifest, then the caller's default
    std::string written;   // what stands behind the "="
    std::string text;      // what reads find: `written` without what follows a "#" and without blanks at its ends
};

StoredValue StoreValue(const Json::Value& value);

// Whether a text goes through a number: at most 18 characters, digits with at most one point and perhaps a minus.
bool IsNumberText(const std::string& text);

// Who answers a read.
enum class Answerer {
    kServer,
    kManifest,  // else the caller's default
    kDefault,   // the caller's, without a look into the manifest
};

struct ReadResult {
    Answerer answerer = Answerer::kServer;
    std::string text;  // of kServer: the value as one would print it
};

// What the five reads give. An int that equals the default that its caller gives counts as not there, which these do
// not know.
struct Reads {
    ReadResult asInt, asLong, asDouble, asBool, asString;
};

Reads ReadsOf(const StoredValue& value);

// The int of a value that is found and not empty; else 0. What does not fit becomes the nearest that does.
int32_t IntOf(const StoredValue& value);

}  // namespace OrvaneDevServer

#endif
