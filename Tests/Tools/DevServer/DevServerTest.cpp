#include "DevServer/DevServer.h"

#include <future>

#include "Tools/DevServer/Requests.h"

namespace OrvaneDevServer {
namespace {

class DevServerTest : public ServedTest {
protected:
    void Start(std::vector<std::string> orders = {}, bool isStrict = false) {
        ServerOptions options{"", {}, {}, isStrict, 2};
        std::string error;
        for (const std::string& order : orders)
            EXPECT_TRUE(ParseFault(order, options.faults.emplace_back(), error)) << error;
        ServedTest::Start(options);
    }
    bool WaitUntilOneIsHeld() {
        return OrvaneTest::WaitFor([&] { return Ask("GET", "status").body.find("\"held\":1") != std::string::npos; });
    }
    // The journal's lines of that kind.
    std::vector<Json::Value> Lines(const std::string& kind) const {
        std::vector<Json::Value> lines;
        std::ifstream file(folder / "served/journal.jsonl");
        for (std::string text, error; std::getline(file, text);) {
            Json::Value line;
            if (ReadStrictly(text, line, error) && line["kind"] == kind) lines.push_back(line);
        }
        return lines;
    }
};

TEST_F(DevServerTest, ServesANewFolderAndKeepsAJournal) {
    Start();
    const std::string body = Fetch().body;
    EXPECT_THAT(body, HasSubstr("{\"OrvaneCore\":{\"YarrowUrl\":\"http://127.0.0.1:8765/traceids\"}},\"rule_id\":1"));
    folder.Write("served/devices/D1/Upload.json", R"({"k":"v"})");
    EXPECT_THAT(Fetch().body, HasSubstr("\"Upload\":{\"k\":\"v\"}},\"rule_id\":2"));
    server->Handle(TraceIdFetch());
    Request broken = ConfigFetch("D2");
    broken.target += "&x=1";
    EXPECT_THAT(server->Handle(broken).body, HasSubstr("\"ret\":0"));  // told, and answered all the same
    EXPECT_THAT(server->Handle(Get("//cfgpush/getConfig?x")).body, HasSubstr("must not end in \"/\""));
    EXPECT_THAT(server->Handle(Get("/cfgpush/getConfig")).body,
                HasSubstr("{\"err\":\"the query holds nothing; it must"));
    server->NoteRefused("WHAT", "/x", 400);

    const std::vector<Json::Value> lines = Lines("config");
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0]["client"], "will replace the file: 1 module, 1 key; takes rule id 1");
    EXPECT_EQ(lines[1]["client"], "will replace the file: 2 modules, 2 keys; takes rule id 2");
    EXPECT_EQ(lines[1]["problems"].size(), 0u);
    EXPECT_EQ(lines[1]["right"]["merged_cfg"]["Upload"]["k"], "v");
    EXPECT_EQ(lines[2]["problems"].size(), 1u);
    EXPECT_THAT(lines[3]["client"].asString(), StartsWith("will keep the old file: the server's error 1, \"the query"));
    EXPECT_EQ(Lines("traceids").at(0)["client"], "will add 30 ids to its stock");
    EXPECT_EQ(Lines("modules").size(), 2u);
    EXPECT_EQ(Lines("unknown").at(0)["status"], 404);
    EXPECT_EQ(Lines("refused").at(0)["target"], "/x");
}

TEST_F(DevServerTest, StrictnessRefusesWhatBreaksTheProtocolAndAHurtJournalGoesOn) {
    folder.Write("served/journal.jsonl", "{\"kind\":\"config\"}\n{\"cut");
    Start({}, true);
    EXPECT_THAT(Fetch().body, HasSubstr("\"ret\":0"));
    Request broken = ConfigFetch("D1");
    broken.headers.emplace_back("Cookie", "a");
    EXPECT_THAT(server->Handle(broken).body, HasSubstr("\"ret\":1"));
    broken = TraceIdFetch();
    broken.method = "HEAD";
    EXPECT_THAT(server->Handle(broken).body, HasSubstr("\"retcode\":1"));
    EXPECT_EQ(Lines("config").size(), 3u);  // the line that was cut spoils no other
}

TEST_F(DevServerTest, FaultsMeetInOneRequestAndComeWhileItRuns) {
    Start({"config:1:rule:-3", "config:1:500:json", "traceids:1:ret:9"});
    const Answer first = Fetch();
    EXPECT_EQ(first.status, 500);
    EXPECT_THAT(first.body, HasSubstr("\"rule_id\":-2"));
    EXPECT_THAT(server->Handle(TraceIdFetch()).body, HasSubstr("\"retcode\":9"));
    EXPECT_EQ(Lines("config").at(0)["faults"].size(), 2u);
    EXPECT_EQ(Fetch().status, 200);
    EXPECT_EQ(Ask("POST", "faults", "config:+1:rule:41\r\n\nconfig:+2:502\n").status, 200);
    EXPECT_THAT(Fetch().body, HasSubstr("\"rule_id\":41"));
    EXPECT_EQ(Ask("POST", "faults", "config:*:404\nnonsense").status, 400);
    EXPECT_EQ(Fetch().status, 502);
    EXPECT_EQ(Ask("POST", "faults", "config:*:404").status, 200);
    EXPECT_EQ(Ask("DELETE", "faults").body, "{\"faults\":[]}\n");
    EXPECT_EQ(Fetch().status, 200);
    EXPECT_EQ(Ask("GET", "release").status, 405);
    EXPECT_EQ(Ask("POST", "nosuch").status, 404);
}

TEST_F(DevServerTest, HoldsARequestAndSeesASecondOneOfTheDevice) {
    Start({"config:1:hold", "config:4:hold"});
    auto held = std::async(std::launch::async, [this] { return Fetch(); });
    ASSERT_TRUE(WaitUntilOneIsHeld());
    folder.Write("served/modules/Late.json", "{}");
    Fetch("D2");
    Fetch();
    EXPECT_EQ(Ask("POST", "release").body, "{\"released\":1}\n");
    EXPECT_THAT(held.get().body, HasSubstr("\"Late\""));  // as it stands when the answer goes
    EXPECT_EQ(Lines("config").at(0)["problems"].size(), 0u);
    EXPECT_THAT(Lines("config").at(1)["problems"][0].asString(),
                StartsWith("another fetch of this device still waits"));

    std::atomic<bool> hasLeft{false};
    auto left = std::async(std::launch::async, [this, &hasLeft] {
        Request request = ConfigFetch("D1");
        request.senderHasLeft = [&hasLeft] { return hasLeft.load(); };
        return server->Handle(request);
    });
    ASSERT_TRUE(WaitUntilOneIsHeld());
    hasLeft = true;
    left.get();
    EXPECT_THAT(Lines("config").at(3)["client"].asString(), StartsWith("has left without an answer"));
}

TEST_F(DevServerTest, LetsNoWebPageOrderAnything) {
    struct Case {
        std::vector<Header> headers;
        int control, config;  // the statuses
    };
    for (const Case& c : std::vector<Case>{
             {{{"Host", "127.0.0.1:1"}}, 200, 200},
             {{{"Host", "[::1]:8765"}}, 200, 200},
             {{{"Host", "127.0.0.1:1"}, {"Origin", "http://127.0.0.1:1"}, {"Sec-Fetch-Site", "same-origin"}}, 200, 200},
             {{{"Host", "127.0.0.1:1"}, {"Origin", "http://127.0.0.1:2"}}, 403, 403},
             {{{"Host", "127.0.0.1:1"}, {"origin", "null"}}, 403, 403},
             {{{"Host", "127.0.0.1:1"}, {"Sec-Fetch-Site", "cross-site"}}, 403, 403},
             {{{"Host", "evil.example"}, {"Origin", "http://evil.example"}}, 403, 200},  // a name that leads here
             {{{"Host", "127.0.0.1.evil.example"}}, 403, 200},
             {{{"Host", "localhost:x"}}, 403, 200},
             {{{"Host", "128.0.0.1"}}, 403, 200},
             {{{"Host", "127.0.0.1"}, {"Host", "evil.example"}}, 403, 200},
             {{}, 403, 200},
         }) {
        Start();
        const std::string name = c.headers.empty() ? "none" : c.headers.back().second;
        for (const char* method : {"POST", "DELETE"}) {
            const Request order{method, "/_orvane/faults", "HTTP/1.1", c.headers, "config:*:500:json", {}};
            EXPECT_EQ(server->Handle(order).status, c.control) << name;
        }
        Request fetch = ConfigFetch("D1");
        fetch.headers = c.headers;
        EXPECT_EQ(server->Handle(fetch).status, c.config) << name;
        EXPECT_THAT(Ask("GET", "status").body, HasSubstr(c.config == 200 ? "\"config\":1" : "\"config\":0")) << name;
    }
}

}  // namespace
}  // namespace OrvaneDevServer
