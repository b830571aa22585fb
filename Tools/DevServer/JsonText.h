// JSON as both sides write and read it.
#ifndef ORVANE_TOOLS_DEVSERVER_JSON_TEXT_H
#define ORVANE_TOOLS_DEVSERVER_JSON_TEXT_H

#include <json/json.h>

#include <string>
#include <string_view>

namespace OrvaneDevServer {

// The compact writer's text: members in byte order of their names, no blanks, "\u" for what is not ASCII, and a newline
// at the end.
std::string WriteCompact(const Json::Value& value);

// Reads a whole document by the letter of JSON: no comments, no doubled members, nothing behind it. False, and why in
// `error`, if it is none. Nesting is limited; nothing throws.
bool ReadStrictly(std::string_view text, Json::Value& value, std::string& error);

// Reads as the client does: comments are allowed, and what stands behind the document is not looked at.
bool ReadAsTheClient(std::string_view text, Json::Value& value);

// Reads as the client reads the answer to an upload: by the letter of JSON, but of two members of one name the last
// counts.
bool ReadAsTheClientsUpload(std::string_view text, Json::Value& value);

// "a string", "an array" and so on.
const char* KindOf(const Json::Value& value);

}  // namespace OrvaneDevServer

#endif
