// orvane-log --otlp: a log that is sent in place of shown.
#include <gmock/gmock.h>

#include "Support/OtlpReceiver.h"
#include "Support/Process.h"
#include "Tools/Log/TemporaryFolder.h"

namespace EndToEnd {
namespace {

using OrvaneLog::TemporaryFolder;
using OrvaneTest::HttpAnswer;
using OrvaneTest::OtlpReceiver;
using testing::HasSubstr;

struct Result {
    int status = -1;
    std::string output, error;
};

Result Send(const std::string& url, const std::string& file, std::vector<std::string> options = {}) {
    std::vector<std::string> words = {ORVANE_LOG_PROGRAM, "--otlp", url, file};
    words.insert(words.end(), options.begin(), options.end());
    Result result;
    Ending ending;
    result.output =
        RunToEnd({words, {{"TZ", "UTC"}, {"OTEL_RESOURCE_ATTRIBUTES", "device.id=320FC"}}, ""}, &ending, &result.error);
    result.status = ending.exitStatus;
    return result;
}

TEST(LogToolSends, EachEntryOnceWithItsFields) {
    const TemporaryFolder folder;
    std::string text;
    for (int i = 0; i < 3000; ++i)
        text += "[2026-11-24 21:50:39 123] | Info | [Sample] |4711| Sample.cpp:7|Run| line " + std::to_string(i) + "\n";
    text +=
        "[2026-11-24 21:50:40 001] | Event | [Pell] |7| a.cpp:-3|F| of\ntwo \xFF lines\n"
        "[F][ sg_buffer_async.Length() >= BUFFER_BLOCK_LENTH*4/5, len: 9\n"
        "[2026-11-24 21:50:41 000] | Error | [Pell] |7| a.cpp:8|F| \n";
    const std::string file = folder.Write("Sample_2026112421.log", text);
    std::atomic<int> number{0};
    OtlpReceiver receiver([&](const OrvaneTest::HttpRequest&) -> std::string {
        return ++number == 1 ? HttpAnswer("503 Later", "") : "200";
    });
    const Result sent = Send(receiver.Url(), file);
    EXPECT_EQ(sent.status, 0) << sent.error;
    EXPECT_EQ(sent.output, "");
    EXPECT_THAT(sent.error, HasSubstr("3003 of 3003 entries sent"));
    EXPECT_EQ(receiver.Problems(), "");
    const auto logs = receiver.Logs();
    ASSERT_EQ(logs.size(), 3003u);
    for (size_t i = 0; i < 3000; ++i)
        ASSERT_EQ(logs[i].json["body"]["stringValue"].asString(), "line " + std::to_string(i));
    EXPECT_EQ(logs[0].scope, "Sample");
    EXPECT_EQ(logs[0].json["timeUnixNano"].asString(), "1795557039123000000");
    EXPECT_EQ(logs[0].json["severityNumber"].asInt(), 9);
    EXPECT_EQ(logs[0].resource.at("device.id"), "320FC");
    const std::map<std::string, std::string> attributes = {{"thread.id", "4711"},
                                                           {"code.file.path", "Sample.cpp"},
                                                           {"code.line.number", "7"},
                                                           {"code.function.name", "Run"}};
    EXPECT_EQ(logs[0].attributes, attributes);
    // The last batch puts what has no module first.
    std::map<std::string, Json::Value> last;
    for (size_t i = 0; i < logs.size(); ++i)
        if (logs[i].scope != "Sample") last[logs[i].json["body"]["stringValue"].asString()] = logs[i].json;
    ASSERT_EQ(last.size(), 3u);
    const Json::Value event = last["of\ntwo \xEF\xBF\xBD lines"], error = last[""];
    EXPECT_EQ(event["severityNumber"].asInt(), 12);
    EXPECT_EQ(event["severityText"].asString(), "Event");
    EXPECT_EQ(error["severityNumber"].asInt(), 17);
    last.erase("");
    last.erase("of\ntwo \xEF\xBF\xBD lines");
    EXPECT_EQ(last.begin()->second["severityNumber"].asInt(), 17) << "a line is lost";
    EXPECT_EQ(last.begin()->second["timeUnixNano"], event["timeUnixNano"]) << "that of the line before";

    EXPECT_EQ(Send(receiver.Url(), file, {"--level", "Error"}).status, 0);
    EXPECT_EQ(receiver.Logs().size(), 3005u);
    EXPECT_EQ(Send(receiver.Url(), file, {"--json"}).status, 2);
    EXPECT_EQ(Send("ftp://h", file).status, 2);

    OtlpReceiver refusing([](const auto&) { return HttpAnswer("403 No", R"({"message":"no such tenant"})"); });
    const Result refused = Send(refusing.Url(), file);
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.error, HasSubstr("the answer 403, no such tenant"));
    EXPECT_THAT(refused.error, HasSubstr("only 0 of 3003 entries sent"));
}

}  // namespace
}  // namespace EndToEnd
