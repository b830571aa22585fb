// JSON as the library sends it.
#ifndef ORVANE_BASE_COMPACT_JSON_H
#define ORVANE_BASE_COMPACT_JSON_H

#include <json/forwards.h>

#include <string>

namespace Quern {

// The value in one line: members in byte order, no blanks, "\u" for what is not ASCII, and a newline at the end, which
// is sent with it.
std::string WriteCompactJson(const Json::Value& value);

}  // namespace Quern

#endif
