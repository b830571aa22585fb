// Takes the query of a request apart, and checks whether its values are encoded as the client encodes them.
#ifndef ORVANE_TOOLS_DEVSERVER_QUERY_H
#define ORVANE_TOOLS_DEVSERVER_QUERY_H

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "DevServer/Message.h"

namespace OrvaneDevServer {

// The two parts of a request's target.
struct Target {
    std::string path;                                        // in front of the "?"
    std::vector<std::pair<std::string, std::string>> query;  // names and values in their order, not decoded
};

// Never fails: a piece without "=" is a name with an empty value.
Target SplitTarget(const std::string& target);

// The first value of that name; null if there is none.
const std::string* FindValue(const Target& target, std::string_view name);

// Reports names that are missing, unknown, doubled or in another order.
void CheckNames(const Target& target, const std::vector<std::string>& expected, Problems& problems);

// Decodes a value of the URL encoding: letters, digits and "-._~" as they are, "+" for a space, "%" and two upper-case
// hexadecimal digits for every other byte. Each kind of departure from it is reported once, with the position in
// `value` and the name, and decoded by what it most likely means.
std::string DecodeValue(const std::string& name, const std::string& value, Problems& problems);

// Reads a decimal number as the client prints it: digits alone, no sign, no zero in front. False for anything else.
bool ReadDecimal(const std::string& text, uint64_t& number);

}  // namespace OrvaneDevServer

#endif
