// orvane-log --otlp: a log that is sent in place of shown.
#include "Support/OtlpReceiver.h"
#include "Support/Process.h"
#include "Support/Test.h"

namespace EndToEnd {
namespace {

using namespace OrvaneTest;

Outcome Send(const std::string& url, const std::string& file, std::vector<std::string> options = {}) {
    options.insert(options.begin(), {ORVANE_LOG_PROGRAM, "--otlp", url, file});
    return RunToEnd({options, {{"TZ", "UTC"}, {"OTEL_RESOURCE_ATTRIBUTES", "device.id=320FC"}}, ""});
}

// Scope, severity, time, thread, file, line, function, device and text.
std::string Shown(OtlpRecord log) {
    auto& has = log.attributes;
    return log.scope + " " + log.json["severityNumber"].asString() + " " + log.json["severityText"].asString() + " " +
           log.json["timeUnixNano"].asString() + " " + has["thread.id"] + " " + has["code.file.path"] + ":" +
           has["code.line.number"] + " " + has["code.function.name"] + " " + has["device.id"] + ": " +
           log.json["body"]["stringValue"].asString();
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
    OtlpReceiver receiver(
        [&](const HttpRequest&) -> std::string { return ++number == 1 ? HttpAnswer("503 Later", "") : "200"; });
    const Outcome sent = Send(receiver.Url(), file);
    EXPECT_EQ(sent.status, 0) << sent.error;
    EXPECT_EQ(sent.output, "");
    EXPECT_THAT(sent.error, HasSubstr("3003 of 3003 entries sent"));
    EXPECT_EQ(receiver.Problems(), "");
    // A message puts together what has one scope, so the three that are no lines of "Sample" may stand anywhere.
    std::vector<std::string> lines, others;
    for (const OtlpRecord& log : receiver.Records())
        (log.scope == "Sample" ? lines : others).push_back(Shown(log));
    ASSERT_EQ(lines.size(), 3000u);
    for (size_t i = 0; i < lines.size(); ++i)
        ASSERT_EQ(lines[i], "Sample 9 Info 1795557039123000000 4711 Sample.cpp:7 Run 320FC: line " + std::to_string(i));
    EXPECT_THAT(others, testing::UnorderedElementsAre(
                            "Pell 12 Event 1795557040001000000 7 a.cpp:-3 F 320FC: of\ntwo \xEF\xBF\xBD lines",
                            " 17  1795557040001000000  :  320FC: [F][ sg_buffer_async.Length() >= "
                            "BUFFER_BLOCK_LENTH*4/5, len: 9",
                            "Pell 17 Error 1795557041000000000 7 a.cpp:8 F 320FC: "));

    EXPECT_EQ(Send(receiver.Url(), file, {"--level", "Error"}).status, 0);
    EXPECT_EQ(receiver.Records().size(), 3005u);
    EXPECT_EQ(Send(receiver.Url(), file, {"--json"}).status, 2);
    EXPECT_EQ(Send("ftp://h", file).status, 2);

    OtlpReceiver compressed([](const auto&) { return HttpAnswer("202 Accepted", "{}"); });
    setenv("OTEL_EXPORTER_OTLP_COMPRESSION", "gzip", 1);
    EXPECT_EQ(Send(compressed.Url(), file, {"--lines", "2"}).status, 0);
    unsetenv("OTEL_EXPORTER_OTLP_COMPRESSION");
    ASSERT_EQ(compressed.Requests().size(), 1u);
    EXPECT_EQ(compressed.Requests()[0].Header("Content-Encoding"), "gzip");
    const Outcome gzip = RunToEnd({{"gzip", "-dc", folder.Write("b.gz", compressed.Requests()[0].body)}, {}, ""});
    EXPECT_EQ(gzip.status, 0) << gzip.error;
    EXPECT_THAT(gzip.output, HasSubstr("logRecords"));

    OtlpReceiver refusing([](const auto&) { return HttpAnswer("403 No", R"({"message":"no such tenant"})"); });
    const Outcome refused = Send(refusing.Url(), file);
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.error, HasSubstr("the answer 403, no such tenant"));
    EXPECT_THAT(refused.error, HasSubstr("only 0 of 3003 entries sent"));
}

TEST(LogToolSends, WhatComesToALogThatIsFollowed) {
    const TemporaryFolder folder;
    const std::string head = "[2026-11-24 21:50:39 123] | Info | [Sample] |4711| Sample.cpp:7|Run| ";
    const std::string file = folder.Write("Sample_2026112421.log", head + "before\n");
    std::atomic<int> number{0};
    OtlpReceiver receiver([&](const HttpRequest&) -> std::string {
        return ++number == 2 ? HttpAnswer("403 No", "") : "200";  // which ends no such sending
    });
    Process sender({{ORVANE_LOG_PROGRAM, "--otlp", receiver.Url(), "--follow", file}, {}, ""});
    for (const auto& [requests, records] : {std::pair(1, 1u), {2, 1u}, {3, 2u}}) {
        ASSERT_TRUE(WaitFor([&, asked = requests, known = records] {
            return number == asked && receiver.Records().size() == known;
        })) << requests
            << sender.Error();
        folder.Write("Sample_2026112421.log", head + "more\n", true);
    }
}

}  // namespace
}  // namespace EndToEnd
