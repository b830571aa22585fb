// Why a read of a setting gives what it gives.
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

struct Explanation {
    std::optional<std::string> server;  // the stored text, as the library reads it
    std::string manifest;               // the value and what it is; empty if there is none
    std::string manifestSection;        // where it was looked for
    std::vector<ExplainedRead> reads;
};

// `stored` is the server's kept answer, or null if there is none; `manifest` is the application's. That stays in force,
// and the console silent, for the process. Each read is given of `defaultText` what is of its type, and else its zero.
Explanation Explain(const Quern::IniText* stored, Quern::InfoValue manifest, const std::string& section,
                    const std::string& key, const std::string& defaultText);

std::string AsText(const Explanation& explanation, const std::string& defaultText);
Json::Value AsJson(const Explanation& explanation, const std::string& defaultText);

}  // namespace OrvaneStore

#endif
