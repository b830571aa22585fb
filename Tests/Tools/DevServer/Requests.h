// Requests as the client sends them, made by the library's own encoder: the server's check is another's.
#ifndef ORVANE_TESTS_TOOLS_DEVSERVER_REQUESTS_H
#define ORVANE_TESTS_TOOLS_DEVSERVER_REQUESTS_H

#include <ctime>
#include <string>

#include "DevServer/Message.h"
#include "Serializer/URLEncoder/URLEncoder.h"

namespace OrvaneDevServer {

constexpr time_t kNow = 1700000000;

inline std::string ComParams(const std::string& device) {
    return "{\"app_ver\":\"1.2.3.456\",\"bid\":\"com.example.game\",\"cid\":\"7\",\"did\":\"" + device +
           "\",\"gid\":\"30045\",\"mfrs\":\"Apple\",\"mtype\":\"Board9,4\",\"oid\":\"Zo\\u00eb \\\"~\",\"os\":\"iOS\","
           "\"os_ver\":\"17.5\",\"sdk_list\":{\"PELL\":{\"ver\":\"3.2\"},\"Sample\":{\"ver\":\"1.0.3\"}}}\n";
}

inline std::string ConfigTarget(const std::string& comParams, const std::string& bizParams, const std::string& time) {
    return "/cfgpush/getConfig?com_params=" + Quern::URLEncoder::Encode(comParams) +
           "&biz_params=" + Quern::URLEncoder::Encode(bizParams) + "&r=" + time;
}

inline Request Get(const std::string& target) {
    Request request;
    request.method = "GET";
    request.target = target;
    request.version = "HTTP/1.1";
    request.headers = {{"Host", "127.0.0.1:8765"}, {"User-Agent", "game/1"}, {"Accept", "*/*"}};
    return request;
}

inline Request ConfigFetch(const std::string& device) {
    return Get(ConfigTarget(ComParams(device), "{\"rule_id\":0}\n", std::to_string(kNow)));
}

inline Request TraceIdFetch() {
    return Get("/traceids?buzid=30045&setid=0&pritype=0&pubtype=1&count=30");
}

}  // namespace OrvaneDevServer

#endif
