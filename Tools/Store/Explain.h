// Explains why a read of a setting gives what it gives. The values come from the library's own reader, not from a
// second telling of its rules; only the reasons are worked out here.
#ifndef ORVANE_TOOLS_STORE_EXPLAIN_H
#define ORVANE_TOOLS_STORE_EXPLAIN_H

#include <json/json.h>

#include <optional>
#include <string>
#include <vector>

#include "Storage/Bundle/InfoValue.h"
#include "Storage/Bundle/IniText.h"

namespace OrvaneStore {

// What one of the typed reads gives.
struct ExplainedRead {
    const char* type;   // int, long, double, bool, string
    Json::Value value;  // of that type
    const char* from;   // server, manifest, default
    std::string why;    // one reason, or several with "; " between; empty where there is nothing to say
};

// What there is to read from, and what all five typed reads make of it.
struct Explanation {
    std::optional<std::string> server;  // the stored text, as the library reads it
    std::string manifest;               // the value and what it is; empty if there is none
    std::string manifestSection;        // where it was looked for
    std::vector<ExplainedRead> reads;   // one for each type
};

// `stored` is the server's kept answer, or null if there is none; `manifest` is the application's. The manifest stays
// in force, and the console silent, for the rest of the process. The default of each read is `defaultText` as a value
// of the read's type: 0, false or "" where it is none.
Explanation Explain(const Quern::IniText* stored, Quern::InfoValue manifest, const std::string& section,
                    const std::string& key, const std::string& defaultText);

// The same for people and for programs. `defaultText` is that of Explain. The text ends with a newline.
std::string AsText(const Explanation& explanation, const std::string& defaultText);
Json::Value AsJson(const Explanation& explanation, const std::string& defaultText);

}  // namespace OrvaneStore

#endif
