// A server of this process, and requests as the client sends them, made by the library's own encoder: the server's
// check is another's.
#ifndef ORVANE_TESTS_TOOLS_DEVSERVER_REQUESTS_H
#define ORVANE_TESTS_TOOLS_DEVSERVER_REQUESTS_H

#include "DevServer/DevServer.h"
#include "DevServer/JsonText.h"
#include "Serializer/URLEncoder/URLEncoder.h"
#include "Support/Test.h"

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
    const std::vector<Header> headers = {{"Host", "127.0.0.1:8765"}, {"User-Agent", "game/1"}, {"Accept", "*/*"}};
    return {"GET", target, "HTTP/1.1", headers, "", {}};
}

inline Request ConfigFetch(const std::string& device) {
    return Get(ConfigTarget(ComParams(device), "{\"rule_id\":0}\n", std::to_string(kNow)));
}

inline Request TraceIdFetch() {
    return Get("/traceids?buzid=30045&setid=0&pritype=0&pubtype=1&count=30");
}

// What must be sound JSON.
inline Json::Value Parsed(const std::string& text) {
    Json::Value value;
    std::string error;
    EXPECT_TRUE(ReadStrictly(text, value, error)) << error << ": " << text;
    return value;
}

// A server over a folder of the test's own, always at the same time.
class ServedTest : public testing::Test {
protected:
    void Start(ServerOptions options = {}) {
        server.reset();
        options.folder = folder / "served";
        options.now = [] { return kNow; };
        server = std::make_unique<DevServer>(options);
        std::string error;
        EXPECT_TRUE(server->Open(error)) << error;
    }
    Answer Fetch(const std::string& device = "D1") { return server->Handle(ConfigFetch(device)); }
    // A request to the server's own pages.
    Answer Ask(const std::string& method, const std::string& path, const std::string& body = "") {
        Request request = Get("/_orvane/" + path);
        request.method = method;
        request.body = body;
        return server->Handle(request);
    }

    const OrvaneTest::TemporaryFolder folder;
    std::unique_ptr<DevServer> server;
};

}  // namespace OrvaneDevServer

#endif
