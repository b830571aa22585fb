// Runs orvane-net as a developer does.
#include <json/json.h>

#include "Support/HttpServer.h"
#include "Support/Process.h"
#include "Support/Test.h"

namespace EndToEnd {
namespace {

using namespace OrvaneTest;

Outcome RunTool(std::vector<std::string> words, const std::vector<std::string>& front = {}) {
    words.insert(words.begin(), ORVANE_NET_PROGRAM);
    words.insert(words.begin(), front.begin(), front.end());
    return RunToEnd({words, {{"ORVANE_HOME", "/nowhere"}}, ""});
}

Json::Value ObjectOf(const Outcome& run) {
    Json::Value object;
    std::istringstream(run.output) >> object;
    return object;
}

TEST(NetTool, SaysWhatItWants) {
    for (const auto& [words, complaint] : std::vector<std::pair<std::vector<std::string>, const char*>>{
             {{}, "a command is wanted"},
             {{"fly"}, "fly: no such command"},
             {{"ping"}, "ping: wrong number of words"},
             {{"ping", "h", "--count", "256"}, "--count takes a number from 1 to 255, not \"256\""},
             {{"lookup", "h", "--count", "3"}, "lookup takes no --count"},
             {{"lookup", "h", "--cuont", "3"}, "--cuont: no such option"},
             {{"get", "http://a/ b"}, "not a URL"},
             {{"ping", "a#b"}, "ping: no host's name or address"},
             {{"post", "http://a/", "--data-file", "/"}, "cannot be read"}}) {
        const Outcome result = RunTool(words);
        EXPECT_EQ(result.status, 2) << complaint;
        EXPECT_THAT(result.error, HasSubstr(complaint));
    }
    EXPECT_THAT(RunTool({"--help"}).output, HasSubstr("usage: orvane-net"));
}

TEST(NetTool, TalksHttp) {
    const HttpServer server([](const HttpRequest& request) {
        return HttpAnswer(request.target == "/missing" ? "404 Not Found" : "200 OK",
                          request.method + request.Header("X-Mark") + request.body);
    });
    const Outcome got = RunTool({"get", server.Url(), "--header", "X-Mark: 7"});
    EXPECT_EQ(got.output, "GET7");
    EXPECT_EQ(got.error, "orvane-net: status 200, 4 bytes\n") << "the library's own lines stay away";
    EXPECT_EQ(RunTool({"post", server.Url(), "--data", "body"}).output, "POSTbody");
    const Outcome missing = RunTool({"get", server.Url("/missing"), "--json"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(ObjectOf(missing)["status"], 404);
    const Outcome refused = RunTool({"get", "http://127.0.0.1:1/", "--json"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(ObjectOf(refused)["error"], 1);
}

TEST(NetTool, DownloadsWithAPauseInBetween) {
    ServedFile file{std::string(3 << 20, '\0'), "\"v1\""};
    for (size_t i = 0; i < file.content.size(); ++i)
        file.content[i] = static_cast<char>(i * 7 + i / 251);
    const HttpServer server([&](const HttpRequest& request) { return file.Answer(request); });
    const std::string path = testing::TempDir() + "net-tool-" + std::to_string(getpid());
    const Outcome result = RunTool({"download", server.Url(), path, "--pause-at", "1000"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.error, AllOf(HasSubstr("paused at"), HasSubstr("goes on"), HasSubstr("3145728 bytes")));
    std::ifstream in(path, std::ios::binary);
    EXPECT_TRUE(std::string(std::istreambuf_iterator<char>(in), {}) == file.content);
    unlink(path.c_str());
    EXPECT_EQ(RunTool({"download", server.Url(), "/nowhere/file"}).status, 2);
}

TEST(NetTool, DiagnosesTheMachineItself) {
    const Outcome pinged = RunTool({"ping", "127.0.0.1", "--count", "3", "--timeout", "1"});
    if (pinged.status == 2) {
        EXPECT_EQ(pinged.error, "orvane-net: ping needs net.ipv4.ping_group_range or CAP_NET_RAW\n");
        GTEST_SKIP() << "needs ping sockets (net.ipv4.ping_group_range) or CAP_NET_RAW";
    }
    EXPECT_THAT(pinged.output, HasSubstr("3 sent, 3 received, 0 % lost"));
    const HttpServer server([](const HttpRequest&) { return HttpAnswer("200 OK", "hello"); });
    const Json::Value report =
        ObjectOf(RunTool({"diagnose", "127.0.0.1", "--url", server.Url(), "--json", "--timeout", "1"}));
    EXPECT_TRUE(report["state"]["state"].isInt());
    EXPECT_EQ(report["lookup"]["addresses"][0], "127.0.0.1");
    EXPECT_EQ(report["ping"]["received"], 10);
    EXPECT_EQ(report["traceroute"]["hops"][0]["address"], "127.0.0.1");
    EXPECT_EQ(report["get"]["status"], 200);
    EXPECT_GE(report["get"]["total_ms"].asDouble(), report["get"]["first_byte_ms"].asDouble());
    EXPECT_EQ(RunTool({"ping", "no-such-host.invalid", "--timeout", "1"}).status, 1);
}

TEST(NetTool, SaysWhichRightIsMissing) {
    if (geteuid() != 0) GTEST_SKIP() << "needs root, to give up its rights";
    // Without the leak sanitizer, which needs one of them.
    const std::vector<std::string> inOwnNetwork = {"env",     "ASAN_OPTIONS=detect_leaks=0", "unshare",        "-n",
                                                   "setpriv", "--bounding-set=-all",         "--inh-caps=-all"};
    for (const char* command : {"ping", "traceroute"}) {
        const Outcome result = RunTool({command, "127.0.0.1"}, inOwnNetwork);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.error,
                  std::string("orvane-net: ") + command + " needs net.ipv4.ping_group_range or CAP_NET_RAW\n");
    }
}

}  // namespace
}  // namespace EndToEnd
