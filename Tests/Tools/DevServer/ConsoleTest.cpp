// The console's data over real HTTP, and who is kept from it.
#include <gmock/gmock.h>

#include <filesystem>
#include <future>

#include "DevServer/Console/Changes.h"
#include "DevServer/Console/Console.h"
#include "DevServer/Console/DeviceBook.h"
#include "DevServer/Console/UploadShelf.h"
#include "DevServer/DevServer.h"
#include "DevServer/JsonText.h"
#include "DevServer/Sha1Text.h"
#include "Log/KeyFile.h"
#include "Support/LogWriter.h"
#include "Support/TemporaryFolder.h"
#include "Support/WaitFor.h"
#include "Tools/DevServer/Requests.h"

namespace OrvaneDevServer {
namespace {

using testing::HasSubstr;

const std::string kData = "/_orvane/console/data/";

class ConsoleTest : public testing::Test {
protected:
    ConsoleTest() { Start(); }

    void Start(const std::vector<std::string>& keyFiles = {}) {
        server.reset();
        ServerOptions options;
        options.keyFiles = keyFiles;
        options.folder = folder / "served";
        options.now = [] { return kNow; };
        server = std::make_unique<DevServer>(options);
        std::string error;
        EXPECT_TRUE(server->Open(error)) << error;
    }
    Answer Ask(const std::string& method, const std::string& what, const std::string& body = "") {
        Request request = Get(kData + what);
        request.method = method;
        request.body = body;
        return server->Handle(request);
    }
    Json::Value Read(const std::string& what) {
        Json::Value value;
        std::string error;
        EXPECT_TRUE(ReadStrictly(Ask("GET", what).body, value, error)) << what;
        return value;
    }

    const OrvaneTest::TemporaryFolder folder;
    std::unique_ptr<DevServer> server;
};

TEST_F(ConsoleTest, KeepsPagesOfOthersOut) {
    for (const std::string& target :
         {std::string("/_orvane/console/"), kData + "devices", kData + "module?name=M&was="})
        for (const char* method : {"GET", "PUT", "DELETE", "POST"})
            for (const auto& header : {Header{"Origin", "http://evil.example"}, Header{"Sec-Fetch-Site", "cross-site"},
                                       Header{"Host", "evil.example:8765"}}) {
                Request request = Get(target);
                request.method = method;
                request.body = "{}";
                request.headers.push_back(header);
                EXPECT_EQ(server->Handle(request).status, 403) << method << " " << target << " " << header.first;
            }
    EXPECT_FALSE(std::filesystem::exists(folder / "served/modules/M.json"));
    const Answer page = server->Handle(Get("/_orvane/console/"));
    EXPECT_THAT(page.body, HasSubstr("<!doctype html>"));
    std::string policy;
    for (const auto& [name, value] : page.headers)
        if (name == "Content-Security-Policy") policy = value;
    EXPECT_THAT(policy, HasSubstr("script-src 'self';"));
    EXPECT_THAT(policy, HasSubstr("frame-ancestors 'none'"));
    EXPECT_EQ(page.body.find("<script>"), std::string::npos);
    EXPECT_EQ(server->Handle(Get("/_orvane/console/../main.js")).status, 404);
    EXPECT_EQ(server->Handle(Get("/_orvane/console")).status, 302);
    Request typed = Get("/");
    const Answer unknown = server->Handle(typed);  // no browser: somebody's broken client, or who looks around
    EXPECT_EQ(unknown.status, 404);
    for (const char* path : {"\"/cfgpush/getConfig\"", "\"/traceids\"", "\"/upload/prepareFile\"", "/_orvane/console/"})
        EXPECT_THAT(unknown.body, HasSubstr(path));
    typed.headers[2].second = "text/html,*/*";
    EXPECT_EQ(server->Handle(typed).status, 302);
}

TEST_F(ConsoleTest, ShowsWhatADeviceTookAcrossARestart) {
    folder.Write("served/modules/Sample.json", R"({"version":"1.10","LogMode":0,"flag":true,"LogHoursLimit":"12"})");
    server->Handle(ConfigFetch("D1"));
    Request order = Get("/_orvane/faults");
    order.method = "POST";
    order.body = "config:*:500";
    EXPECT_EQ(server->Handle(order).status, 200);
    folder.Write("served/modules/Sample.json", "{}");
    folder.Write("served/devices/D1/Sample.json", "{}");
    server->Handle(ConfigFetch("D1"));  // the answer is spoilt: the device keeps what it had
    for (const bool isAnew : {false, true}) {
        if (isAnew) Start();
        const Json::Value devices = Read("devices");
        ASSERT_EQ(devices.size(), 1u);
        EXPECT_EQ(devices[0]["fetches"], 2);
        EXPECT_EQ(devices[0]["com_params"]["bid"], "com.example.game");
        EXPECT_THAT(devices[0]["client"].asString(), HasSubstr("will keep the old file"));
        const Json::Value device = Read("device?did=D1");
        EXPECT_EQ(device["own_modules"][0], "Sample");
        EXPECT_LT(device["modules_rule_id"].asInt(), device["served_rule_id"].asInt());
        std::map<std::string, Json::Value> rows;
        for (const Json::Value& row : device["keys"])
            rows[row["module"].asString() + "." + row["key"].asString()] = row;
        ASSERT_EQ(rows.size(), 5u);
        EXPECT_EQ(rows["Sample.version"]["sent"], "\"1.10\"");
        EXPECT_EQ(rows["Sample.version"]["stored"], "1.100000");
        EXPECT_EQ(rows["Sample.version"]["findings"][0]["rule"], "changed-number");
        EXPECT_TRUE(rows["Sample.version"]["changed"].asBool());
        EXPECT_FALSE(rows["Sample.LogHoursLimit"]["changed"].asBool());
        EXPECT_TRUE(rows["Sample.flag"]["stored"].isNull());
        EXPECT_EQ(rows["Sample.flag"]["reads"]["bool"], "(manifest)");
        EXPECT_EQ(rows["Sample.LogMode"]["effective"], "(manifest, else 0)");
        EXPECT_EQ(rows["Sample.LogHoursLimit"]["effective"], "12");
        EXPECT_EQ(rows["OrvaneCore.YarrowUrl"]["effective"], "http://127.0.0.1:8765/traceids");
        EXPECT_EQ(Read("requests?did=D1").size(), 2u);
    }
    EXPECT_EQ(Ask("GET", "device?did=D2").status, 404);
}

TEST_F(ConsoleTest, EditsModulesAndLosesNobodysEdit) {
    const std::string text = "{ \"LogLevel\": \"warn\" }\n";
    EXPECT_EQ(Ask("PUT", "module?device=D1&name=Sample&was=", text).status, 200);
    const Json::Value read = Read("module?device=D1&name=Sample");
    EXPECT_EQ(read["text"], text);
    EXPECT_EQ(read["digest"], Sha1Text(text));
    EXPECT_EQ(read["findings"][0]["rule"], "odd-log-level");
    EXPECT_THAT(server->Handle(ConfigFetch("D1")).body, HasSubstr("\"Sample\":{\"LogLevel\":\"warn\"}"));
    const std::string known = "module?device=D1&name=Sample&was=" + Sha1Text(text);
    EXPECT_EQ(Ask("PUT", known, "[]").status, 400);
    EXPECT_EQ(Ask("PUT", known, "{").status, 400);
    folder.Write("served/devices/D1/Sample.json", "{}");  // by hand
    EXPECT_EQ(Ask("PUT", known, text).status, 409);
    EXPECT_EQ(Ask("DELETE", known).status, 409);
    EXPECT_EQ(Ask("PUT", "module?device=D1&name=Sample&was=", text).status, 409);
    EXPECT_EQ(Read("module?device=D1&name=Sample")["text"], "{}");
    EXPECT_EQ(Ask("DELETE", "module?device=D1&name=Sample&was=" + Sha1Text("{}")).status, 200);
    EXPECT_FALSE(std::filesystem::exists(folder / "served/devices/D1/Sample.json"));
    for (const char* name : {"device=D1&name=", "device=..&name=M", "device=&name=..%2FM", "device=a%2Fb&name=M",
                             "device=&name=.M", "device=&name=M%00", "device=&name=%0A"})
        EXPECT_EQ(Ask("PUT", std::string("module?was=&") + name, "{}").status, 400) << name;
    EXPECT_THAT(Ask("POST", "lint?device=&name=Upload", R"({"upload_id":"a"})").body, HasSubstr("odd-part-size"));
    EXPECT_EQ(Read("modules").size(), 1u);
}

TEST_F(ConsoleTest, ReadsEventsAndTheLinesOfUploadsAsData) {
    folder.Write("served/events/a.jsonl", R"({"event":"E","source":1,"fields":[{"key":1,"text":"<b>"}]})"
                                          "\nnonsense\n"
                                          R"({"event":"YarrowClient","source":2000,"fields":[]})"
                                          "\n{\"event\":\"half");
    EXPECT_EQ(Read("events")["events"].size(), 2u);
    EXPECT_EQ(Read("events")["broken"], 1);
    EXPECT_EQ(Read("events?name=YarrowClient")["events"][0]["number"], 3);
    const auto line = [](const char* level, const char* text) {
        return std::string("[2026-11-24 21:50:39 123] | ") + level + " | [Sample] |4711| Sample.cpp:7|Run| " + text +
               "\n";
    };
    const std::string markup = "<img src=x onerror=alert(1)> \xFF";
    folder.Write("served/uploads/D1/42/upload.json", R"({"device":"D1","upload_id":"42","total_size":9})");
    folder.Write("served/uploads/D1/42/upload.zip", "123456789");
    folder.Write("served/uploads/D1/42/files/Sample_2026112421.log",
                 line("Debug", "one") + line("Error", markup.c_str()) + line("Info", "Two") + "stray\n");
    const Json::Value upload = Read("uploads")[0];
    EXPECT_TRUE(upload["whole"].asBool());
    EXPECT_EQ(upload["held"], 9);
    EXPECT_EQ(upload["files"][0]["name"], "Sample_2026112421.log");
    const std::string lines = "lines?device=D1&folder=42";
    EXPECT_EQ(Read(lines)["total"], 3);  // what follows a line without a head of its own belongs to it
    EXPECT_EQ(Read(lines)["levels"][4], "Error");
    EXPECT_EQ(Read(lines + "&level=4")["lines"][0]["text"], "<img src=x onerror=alert(1)> \xEF\xBF\xBD");
    EXPECT_EQ(Read(lines + "&text=tWO")["lines"][0]["line"], "7");
    EXPECT_EQ(Read(lines + "&module=Other")["total"], 0);
    EXPECT_EQ(Read(lines + "&from=1&most=1")["lines"].size(), 1u);
    EXPECT_EQ(Read(lines + "&from=2&most=1")["lines"][0]["text"], "Two\nstray");
    for (const char* name : {"device=..&folder=42", "device=D1&folder=..", "device=D1&folder=42&file=..%2Fupload.json"})
        EXPECT_EQ(Ask("GET", std::string("lines?") + name).status, 400) << name;
}

TEST_F(ConsoleTest, DecodesTheLogsThatDevicesSend) {
    const std::string keyFile = folder / "reader.key";
    Quern::CurvePublicKey key;
    std::string error;
    ASSERT_TRUE(OrvaneLog::MakeKeyFile(keyFile, key, error)) << error;
    const OrvaneTest::WriterKey writer = OrvaneTest::AgreeWith(std::string(key.begin(), key.end()));
    const std::vector<std::string> open = OrvaneTest::NumberedLines(0, 3), closed = OrvaneTest::NumberedLines(3, 4);
    folder.Write("served/uploads/D1/42/files/Sample_2026112421.xlog",
                 OrvaneTest::CompressedRecord(1, open) + OrvaneTest::EncryptedRecord(2, closed, writer));
    Json::Value read = Read("lines?device=D1&folder=42");
    EXPECT_EQ(read["total"], 3);
    EXPECT_EQ(read["notes"].size(), 1u);  // that a key is missing
    Start({keyFile});
    read = Read("lines?device=D1&folder=42");
    EXPECT_EQ(read["total"], 7);
    EXPECT_EQ(read["notes"].size(), 0u);
    EXPECT_THAT(closed[3], testing::EndsWith(read["lines"][6]["text"].asString()));
}

TEST_F(ConsoleTest, APageWaitsForTheNextChange) {
    const auto now = [this](const std::string& after) { return Read("changes?after=" + after)["now"].asString(); };
    folder.Write("a.jsonl", "{}\n");
    std::filesystem::create_directory(folder / "served/events");
    const std::string first = now("0");  // of another run: no wait
    auto waiting = std::async(std::launch::async, [&] { return now(first); });
    server->Handle(TraceIdFetch());
    const std::string second = waiting.get();
    EXPECT_NE(second, first);
    waiting = std::async(std::launch::async, [&] { return now(second); });
    std::filesystem::rename(folder / "a.jsonl", folder / "served/events/a.jsonl");  // without a request
    const std::string third = waiting.get();
    EXPECT_NE(third, second);
    waiting = std::async(std::launch::async, [&] { return now(third); });
    server->Stop();
    EXPECT_EQ(waiting.get(), third);
}

TEST(Changes, LetsFewWaitAndNoneWhoHasLeft) {
    Changes changes({}, 1);
    const uint64_t known = changes.WaitForOther(0, std::chrono::minutes(1), {}).now;
    std::atomic<bool> isThere{true}, hasAsked{false};
    auto waiting = std::async(std::launch::async, [&] {
        return changes.WaitForOther(known, std::chrono::minutes(1), [&] {
            hasAsked = true;
            return !isThere;
        });
    });
    EXPECT_TRUE(OrvaneTest::WaitFor([&] { return hasAsked.load(); }));
    EXPECT_TRUE(changes.WaitForOther(known, std::chrono::minutes(1), {}).isFull);
    isThere = false;
    EXPECT_EQ(waiting.get().now, known);
    EXPECT_FALSE(changes.WaitForOther(known, std::chrono::milliseconds(1), {}).isFull);
}

TEST(DeviceBook, ForgetsWhoWasNotSeenForTheLongestTime) {
    DeviceBook book;
    Json::Value line(Json::objectValue);
    line["kind"] = "config";
    for (size_t i = 0; i <= DeviceBook::kMostDevices; ++i) {
        line["device"] = "D0";
        if (i > 0) book.Take(line, nullptr);
        line["device"] = "D" + std::to_string(i);
        book.Take(line, nullptr);
    }
    EXPECT_EQ(book.Devices().size(), DeviceBook::kMostDevices);
    EXPECT_FALSE(book.Device("D0").isNull());
    EXPECT_TRUE(book.Device("D1").isNull());
    EXPECT_EQ(book.Requests("").size(), DeviceBook::kMostRequests);
}

}  // namespace
}  // namespace OrvaneDevServer
