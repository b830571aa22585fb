// Runs orvane-devserver as a developer and as a hostile neighbour do.
#include <httplib.h>
#include <json/json.h>
#include <sys/socket.h>

#include <future>

#include "Support/Process.h"
#include "Support/TcpService.h"
#include "Support/Test.h"

namespace EndToEnd {
namespace {

// What the check of the query says of it is no matter here.
const std::string kFetch =
    "/cfgpush/getConfig?com_params=%7B%22did%22%3A%22D1%22%7D&biz_params=%7B%22rule_id%22%3A0%7D%0A&r=1";

class DevServerProgram : public testing::Test {
protected:
    void Start(std::vector<std::string> options) {
        options.insert(options.begin(), {ORVANE_DEVSERVER_PROGRAM, "--port", "0"});
        options.push_back(folder / "served");
        server = std::make_unique<Process>(Command{options, {}, ""});
        ASSERT_TRUE(OrvaneTest::WaitFor([this] { return server->Output().ends_with('\n'); }));
        const std::string ready = server->Output();
        ASSERT_THAT(ready, MatchesRegex("ready http://[^ ]+:[0-9]+\n"));
        address = ready.substr(6, ready.size() - 7);
        port = std::stoi(address.substr(address.rfind(':') + 1));
    }
    httplib::Result Get(const std::string& target, const httplib::Headers& headers = {}) {
        httplib::Client client(address);
        return client.Get(target, headers);
    }
    httplib::Result Post(const std::string& target, const std::string& body, const httplib::Headers& headers = {}) {
        httplib::Client client(address);
        return client.Post(target, headers, body, "text/plain");
    }
    bool WaitUntilOneIsHeld() {
        return OrvaneTest::WaitFor([this] {
            const httplib::Result status = Get("/_orvane/status");
            return status && status->body.find("\"held\":1") != std::string::npos;
        });
    }
    // All that comes back on a connection of which every byte is ours.
    std::string Exchange(const std::string& bytes) const {
        const int descriptor = OrvaneTest::ConnectTo(port);
        EXPECT_TRUE(OrvaneTest::SendAll(descriptor, bytes));
        std::string all;
        char part[4096];
        for (ssize_t count; (count = recv(descriptor, part, sizeof part, 0)) > 0;)
            all.append(part, static_cast<size_t>(count));
        close(descriptor);
        return all;
    }
    void EndInOrder(int signal) {
        server->Signal(signal);
        EXPECT_EQ(server->Wait().status, 0);
    }

    const OrvaneTest::TemporaryFolder folder;
    std::unique_ptr<Process> server;
    std::string address;
    int port = 0;
};

TEST_F(DevServerProgram, GivesTheFaultsThatWereOrdered) {
    std::vector<std::string> options;
    for (const char* order : {"2:500", "3:empty", "4:{}", "5:redirect:http://127.0.0.1:1/x", "6:big", "7:204",
                              "8:delay:300", "9:hostile:no-utf8"})
        options.insert(options.end(), {"--fault", std::string("config:") + order});
    Start(options);
    const httplib::Result right = Get(kFetch);
    EXPECT_THAT(right->body, HasSubstr("{\"YarrowUrl\":\"" + address + "/traceids\"}"));
    EXPECT_EQ(Get(kFetch)->status, 500);
    EXPECT_EQ(Get(kFetch)->body, "");
    EXPECT_EQ(Get(kFetch)->body, "{}");
    EXPECT_EQ(Get(kFetch)->get_header_value("Location"), "http://127.0.0.1:1/x");
    EXPECT_EQ(Get(kFetch)->body.size(), 104857600u);
    EXPECT_EQ(Get(kFetch)->status, 204);
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(Get(kFetch)->body, right->body);
    EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(300));
    EXPECT_THAT(Get(kFetch)->body, HasSubstr("\xED\xA0\x80"));
    EXPECT_TRUE(server->WaitForError("config #9, device D1: 200, will replace the file"));
    EndInOrder(SIGTERM);
}

TEST_F(DevServerProgram, HoldsUntilToldAndSeesWhoLeaves) {
    Start({"--fault", "config:1-2:hold"});
    auto held = std::async(std::launch::async, [this] { return Get(kFetch); });
    ASSERT_TRUE(WaitUntilOneIsHeld());
    // As curl does: a POST without a word about a body has none.
    EXPECT_THAT(Exchange("POST /_orvane/release HTTP/1.1\r\nHost: localhost\r\n\r\n"), HasSubstr("{\"released\":1}"));
    EXPECT_EQ(held.get()->status, 200);
    httplib::Client impatient(address);
    impatient.set_read_timeout(0, 100000);
    EXPECT_FALSE(impatient.Get(kFetch));
    EXPECT_TRUE(server->WaitForError("has left without an answer"));
    EXPECT_EQ(Post("/_orvane/faults", "config:+1:hold")->status, 200);
    auto last = std::async(std::launch::async, [this] { return Get(kFetch); });
    ASSERT_TRUE(WaitUntilOneIsHeld());
    EndInOrder(SIGINT);  // whoever waits is answered first
    EXPECT_EQ(last.get()->status, 200);
}

TEST_F(DevServerProgram, TakesABigPartByteByByte) {
    Start({"-q"});
    const std::string boundary = "----WebKitFormBoundaryftnnT7s3iF7wV5q6", part(5 << 20, '\x1F');
    const std::string sha1 = "c05a25b70b404478d021e4e9cf11d623834d6ef8";
    httplib::Client client(address);
    const auto prepared = client.Put(
        "/upload/prepareFile?com_params=%7B%22did%22:%22D1%22%7D&biz_params=%7B%22upload_id%22:%22u%22,"
        "%22total_size%22:5242880,%22total_sha1%22:%22" +
            sha1 + "%22%7D",
        "", "text/plain");
    ASSERT_TRUE(prepared);
    Json::Value answer;
    ASSERT_TRUE(Json::Reader().parse(prepared->body, answer));
    const std::string url = answer["biz_data"]["upload_url"].asString();
    ASSERT_THAT(url, StartsWith(address));
    const auto sent = client.Post(url.substr(address.size()),
                                  "--" + boundary + "\r\nContent-Disposition: form-data; name=\"part_sha1\"\r\n\r\n" +
                                      sha1 + "\r\n--" + boundary +
                                      "\r\nContent-Disposition: form-data; name=\"myfile\"; filename=\"u.zip\"\r\n"
                                      "Content-Type: application/octet-stream\r\n\r\n" +
                                      part + "\r\n--" + boundary + "--\r\n",
                                  "multipart/form-data; boundary=" + boundary);
    ASSERT_TRUE(sent);
    EXPECT_THAT(sent->body, HasSubstr("\"next_pos\":5242880"));
    EXPECT_EQ(std::filesystem::file_size(folder / "served/uploads/D1/u/upload.zip"), part.size());
    EXPECT_EQ(Post("/upload/else", part)->status, 413);
}

TEST_F(DevServerProgram, TakesOrdersFromThisMachineAlone) {
    Start({});
    const std::string order = "config:*:404";
    EXPECT_EQ(Post("/_orvane/faults", order, {{"Origin", "http://evil.example"}})->status, 403);
    // An order hidden in the body of a refused request must not be taken for a request of its own.
    const std::string hidden = "POST /_orvane/faults HTTP/1.1\r\nHost: localhost\r\nContent-Length: 12\r\n\r\n" + order;
    for (const char* method : {"POST", "GET"})
        Exchange(method +
                 std::string(" /_orvane/status HTTP/1.1\r\nHost: localhost\r\nOrigin: null\r\nContent-Length: ") +
                 std::to_string(hidden.size()) + "\r\n\r\n" + hidden);
    EXPECT_THAT(Get("/_orvane/status")->body, HasSubstr("\"faults\":[]"));
    EXPECT_EQ(Post("/_orvane/faults", order, {{"Origin", address}})->status, 200);
    EXPECT_EQ(Get(kFetch)->status, 404);
}

TEST_F(DevServerProgram, ServesTheConsoleAndTakesItsEdits) {
    Start({"-q"});
    httplib::Client browser(address);
    browser.set_follow_location(true);
    const httplib::Result page = browser.Get("/", {{"Accept", "text/html"}});
    ASSERT_TRUE(page);
    EXPECT_THAT(page->body, HasSubstr("src=\"main.js\""));
    EXPECT_THAT(page->get_header_value("Content-Security-Policy"), HasSubstr("default-src 'none'"));
    for (const auto& [file, type] : std::map<std::string, std::string>{
             {"main.js", "text/javascript"}, {"console.css", "text/css"}, {"icon.svg", "image/svg+xml"}})
        EXPECT_THAT(Get("/_orvane/console/" + file)->get_header_value("Content-Type"), StartsWith(type));
    const std::string data = "/_orvane/console/data/";
    const std::string now = Get(data + "changes?after=0")->body;
    auto waiting = std::async(std::launch::async, [&] {
        return Get(data + "changes?after=" + now.substr(now.rfind(':') + 1, now.rfind('}') - now.rfind(':') - 1));
    });
    const auto put =
        httplib::Client(address).Put(data + "module?name=M&was=", {{"Origin", address}}, "{\"a\":1}", "text/plain");
    EXPECT_EQ(put->status, 200);
    EXPECT_NE(waiting.get()->body, now);
    EXPECT_THAT(Get(kFetch)->body, HasSubstr("\"M\":{\"a\":1}"));
    EndInOrder(SIGTERM);
}

TEST_F(DevServerProgram, LintsByItsStatus) {
    folder.Write("served/modules/M.json", R"({"LogMode":1})");
    const auto lint = [this](std::vector<std::string> words, int status) {
        words.insert(words.begin(), {ORVANE_DEVSERVER_PROGRAM, "lint"});
        words.push_back(folder / "served");
        const Outcome run = RunToEnd({words, {}, ""});
        EXPECT_EQ(run.status, status) << run.output << run.error;
        return run.output;
    };
    EXPECT_THAT(lint({}, 0), HasSubstr("M.json: LogMode: note: "));
    lint({"--strict"}, 1);
    folder.Write("served/modules/N.json", "{\"a\":\"\\u001b#\"}");
    EXPECT_THAT(lint({}, 1), HasSubstr("\\x1B"));
    lint({folder / "absent"}, 2);
}

TEST_F(DevServerProgram, BearsHostileBytes) {
    Start({});
    for (const std::string& bytes :
         {std::string("\r\n\r\n"), std::string("nonsense\r\n\r\n"), std::string(100000, 'a') + "\r\n\r\n",
          "GET /" + std::string(9000, 'a') + " HTTP/1.1\r\nHost: a\r\n\r\n",
          "POST /" + std::string(7000, 'a') + " HTTP/1.1\r\nHost: a\r\nContent-Length: 1\r\n\r\nx",
          std::string("POST /%0a HTTP/1.1\r\nHost: a\r\nContent-Length: 99999999999\r\n\r\n"),
          "GET /cfgpush/getConfig?com_params=" + std::string(6000, '[') + " HTTP/1.1\r\nHost: a\r\n\r\n",
          std::string("GET /cfgpush/getConfig?%00%&&&=&===%zz HTTP/1.1\r\n\x01: \xFF\r\n\r\n")})
        Exchange(bytes);
    EXPECT_EQ(Get(kFetch)->status, 200);
    EXPECT_TRUE(server->WaitForError("is too long for this server"));
    EXPECT_EQ(server->Error().find('\x01'), std::string::npos);
    EndInOrder(SIGTERM);
}

TEST_F(DevServerProgram, SharesNeitherItsPortNorItsFolder) {
    Start({"--host", "::1"});
    EXPECT_EQ(Get(kFetch)->status, 200);
    const std::string number = std::to_string(port);
    for (const auto& [first, second, path, complaint] : std::vector<std::array<std::string, 4>>{
             {"--port", "0", folder / "served", "another server has this folder"},
             {"--host=::1", "--port=" + number, folder / "other", "port " + number},
             {"--port", "0", "/dev/null/folder", "/dev/null/folder"},
             {"--key", "/nowhere", folder / "third", "--key: /nowhere: No such file"}}) {
        const Outcome run = RunToEnd({{ORVANE_DEVSERVER_PROGRAM, first, second, path}, {}, ""});
        EXPECT_EQ(run.status, 1);
        EXPECT_THAT(run.error, HasSubstr(complaint));
    }
}

TEST_F(DevServerProgram, SaysWhatIsWrongWithItsArguments) {
    for (const char* word : {"--port=65536", "--port=x", "--port", "--host=0.0.0.0", "--host=example.com",
                             "--fault=config:x:500", "--nosuch", ""}) {
        const Outcome run = RunToEnd({{ORVANE_DEVSERVER_PROGRAM, word}, {}, folder.Path()});
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.status, 2) << word;
        EXPECT_THAT(run.error, StartsWith("orvane-devserver: "));
    }
    EXPECT_THAT(RunToEnd({{ORVANE_DEVSERVER_PROGRAM, "-h"}, {}, ""}).output, HasSubstr("usage: orvane-devserver"));
    EXPECT_THAT(RunToEnd({{ORVANE_DEVSERVER_PROGRAM, "--version"}, {}, ""}).output,
                MatchesRegex("orvane-devserver [0-9.]+\n"));
}

}  // namespace
}  // namespace EndToEnd
