// The rule id: a number that rises whenever what is served changes, across restarts of the server too. A client keeps
// the highest that it took.
#ifndef ORVANE_TOOLS_DEVSERVER_RULE_ID_H
#define ORVANE_TOOLS_DEVSERVER_RULE_ID_H

#include <json/json.h>

#include <cstdint>
#include <string>

namespace OrvaneDevServer {

// Kept with what it stands for in a file, {"rule_id":N,"served":{..}}: so an edit while the server is down counts as
// well. Not for two threads at once.
class RuleId {
public:
    // Reads the file. Where there is none, or a damaged one, the count starts anew.
    explicit RuleId(std::string path);

    // The id of what is served now: one more than before if that is something else. A file that cannot be written is
    // told in `problem`; the count goes on in memory.
    int32_t Of(const Json::Value& served, std::string& problem);
    // The id that Of gave last, in this run or an earlier one; 0 if it never did.
    int32_t Current() const { return _ruleId; }

private:
    std::string _path;
    int32_t _ruleId = 0;  // 0 before the first
    Json::Value _served;
};

}  // namespace OrvaneDevServer

#endif
