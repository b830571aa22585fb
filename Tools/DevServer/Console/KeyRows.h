// What a device was sent, key by key, beside what the game gets to read.
#ifndef ORVANE_TOOLS_DEVSERVER_CONSOLE_KEY_ROWS_H
#define ORVANE_TOOLS_DEVSERVER_CONSOLE_KEY_ROWS_H

#include <json/json.h>

#include <string>

#include "DevServer/Lint/Finding.h"

namespace OrvaneDevServer {

// [{"severity","rule","module","key","text"},..]
Json::Value FindingList(const Findings& findings);

// Adds a row for each key of the module: {"module","key","sent","kind","stored","changed","type","effective","reads":
// {"int","long","double","bool","string"},"findings":[..]}. "sent" is the text of the value as JSON, since a browser's
// numbers are shorter than ours; "changed" tells whether the client keeps something else. "type" is that by which the
// library reads the key, and "effective" what it then gets; both are missing for a key that the library does not read.
// Who answers in the place of the server is told in brackets: "(manifest)", "(default)".
void AddKeyRows(const std::string& module, const Json::Value& keys, Json::Value& rows);

}  // namespace OrvaneDevServer

#endif
