// Says what the client will do with an answer, in plain words. The client itself is silent about most of what it
// refuses, so without this a developer sees only that nothing happens.
#ifndef ORVANE_TOOLS_DEVSERVER_CLIENT_VERDICT_H
#define ORVANE_TOOLS_DEVSERVER_CLIENT_VERDICT_H

#include <json/json.h>

#include <cstdint>
#include <string>

#include "DevServer/Message.h"

namespace OrvaneDevServer {

// Reads the answer as the client does: the body decides, and not the status. `highestRuleId` is the highest that the
// device was sent before and took, 0 if there is none; it is raised if the client takes a higher one. `modules`, if it
// is not null, receives what the client keeps from now on, and stays as it is if that does not change. Nothing throws.
std::string ConfigVerdict(const Answer& answer, int32_t& highestRuleId, Json::Value* modules = nullptr);

// The same for a batch of trace ids; the body decides here as well.
std::string TraceIdVerdict(const Answer& answer);

struct UploadOutcome {
    bool isTaken = false;  // the client goes on with the next part, or is done
    std::string text;      // what the client does, for people
};

// Here the status counts, and the answer must be JSON to the letter, of 64 KiB at the most.
UploadOutcome UploadVerdict(const Answer& answer, bool isPrepare);

}  // namespace OrvaneDevServer

#endif
