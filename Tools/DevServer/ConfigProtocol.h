// The configuration protocol: what a client must send, and the answer's shape.
//
//     GET /cfgpush/getConfig?com_params=..&biz_params=..&r=..
//
// "com_params" is the compact writer's object of the members "bid", "cid", "oid", "did", "mtype", "mfrs", "os",
// "os_ver", "app_ver", "gid" (strings; "os" is "iOS") and "sdk_list" (one object per plugin, with the one string
// "ver"). "biz_params" is {"rule_id":0} and a newline, always. "r" is the time in seconds since the epoch.
#ifndef ORVANE_TOOLS_DEVSERVER_CONFIG_PROTOCOL_H
#define ORVANE_TOOLS_DEVSERVER_CONFIG_PROTOCOL_H

#include <json/json.h>

#include <cstdint>
#include <ctime>
#include <string>

#include "DevServer/Message.h"
#include "DevServer/Query.h"

namespace OrvaneDevServer {

constexpr char kConfigPath[] = "/cfgpush/getConfig";
constexpr int64_t kMostClockDifference = 120;  // seconds between "r" and this machine's clock, either way

struct ConfigRequest {
    Problems problems;
    Json::Value comParams;  // null if they cannot be read
    std::string device;     // "did"; empty if it cannot be read
};

// Looks at a request as a whole. Nothing refuses it here: each departure from the protocol is a problem, in the order
// of the request. `now` is this machine's time. Any thread.
ConfigRequest CheckConfigRequest(const Request& request, const Target& target, time_t now);

// {"ret":0,"err":"","biz_data":{"rule_id":..,"merged_cfg":{..}}}
std::string ConfigAnswer(int64_t ruleId, const Json::Value& mergedConfig);
// {"ret":..,"err":".."}
std::string ConfigError(int64_t code, const std::string& message);

}  // namespace OrvaneDevServer

#endif
