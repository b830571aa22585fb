// A game whose data plugin forwards to a receiver of OTLP.

#include "Orvane/TraceParent.h"
#include "Support/Container.h"
#include "Support/OtlpReceiver.h"
#include "Support/Test.h"

namespace EndToEnd {
namespace {

using namespace OrvaneTest;

std::map<std::string, OtlpRecord> ByName(const OtlpReceiver& receiver) {
    std::map<std::string, OtlpRecord> records;
    for (const OtlpRecord& record : receiver.Records())
        records[record.json.get("name", record.json["eventName"]).asString()] = record;
    return records;
}

// What is left to the process's end, and what a take-down sends.
enum class End { kQuit, kTakeDown };

// Runs a game that makes a span when the condition holds of it, and ends; what it says.
std::string Play(const Container& container, std::vector<std::pair<std::string, std::string>> environment, End end,
                 const std::function<bool(const Process&)>& isTime) {
    WriteFile(container.Outside() / "Info.plist",
              "<plist version=\"1.0\"><dict><key>Orvane</key><dict><key>GameId</key><string>30045</string></dict>"
              "<key>OrvaneCore</key><dict><key>YarrowEnable</key><string>true</string></dict></dict></plist>\n");
    Command command = container.Host({"--plugins", ORVANE_PLUGIN_FOLDER, "--info-plist", "Info.plist"});
    for (auto& variable : environment)
        command.environment.push_back(variable);
    Process host(command);
    host.Send("launch\n");
    EXPECT_TRUE(WaitFor([&] { return isTime(host); })) << host.Error();
    host.Send("span Login attempt=2\n");
    EXPECT_TRUE(host.WaitForError("in trace ")) << host.Error();
    host.Send(end == End::kTakeDown ? "pre-shutdown\nshutdown\nquit\n" : "quit\n");
    EXPECT_EQ(host.Wait().status, 0);
    return host.Error();
}

TEST(Forwarding, SpansAndEventsReachTheReceiver) {
    for (const End end : {End::kTakeDown, End::kQuit}) {
        const Container container;
        OtlpReceiver receiver;
        const std::string said =
            Play(container,
                 {{"OTEL_EXPORTER_OTLP_ENDPOINT", receiver.Url()},
                  {"OTEL_EXPORTER_OTLP_HEADERS", "api-key=s3cret"},
                  {"OTEL_SERVICE_NAME", "harbour"}},
                 end, [&](const Process&) {
                     const auto records = ByName(receiver);
                     return records.count("OrvaneCore_OnStartup") && records.count("OrvaneSDK_Versions");
                 });
        EXPECT_EQ(receiver.Problems(), "");
        std::map<std::string, OtlpRecord> records = ByName(receiver);
        const OtlpRecord &login = records["Login"], &versions = records["OrvaneSDK_Versions"];
        // What the game tells others of the span, and what the receiver is told, are one.
        const size_t at = said.find("span ") + 5;
        const std::string context = said.substr(at, said.find(" in trace", at) - at);
        EXPECT_EQ("00-" + login.json["traceId"].asString() + "-" + login.json["spanId"].asString() + "-01",
                  Orvane::Plugin::sg_traceparent(context.c_str()))
            << context;
        EXPECT_EQ(login.attributes.at("attempt"), "2");
        EXPECT_EQ(login.attributes.at("service.name"), "harbour");
        EXPECT_EQ(versions.attributes.at("orvane.field.PELL"), "3.2.0.418");
        for (const HttpRequest& request : receiver.Requests()) {
            EXPECT_EQ(request.Header("api-key"), "s3cret");
            EXPECT_TRUE(request.target == "/v1/traces" || request.target == "/v1/logs") << request.target;
            EXPECT_EQ(request.body.find("openid"), std::string::npos);
            EXPECT_EQ(request.body.find("110002"), std::string::npos);
        }
        EXPECT_FALSE(std::filesystem::exists(container.EventsFile())) << "nothing else is written";
    }
}

TEST(Forwarding, ADeadReceiverHoldsUpNoOneForLong) {
    const Container container;
    // Takes connections and never answers.
    std::atomic<bool> isOver{false};
    OtlpReceiver receiver([&](const HttpRequest&) -> std::string {
        WaitFor([&] { return isOver.load(); });
        return "";
    });
    // Spans alone are forwarded; events go to the file as ever.
    const std::string said = Play(
        container,
        {{"OTEL_EXPORTER_OTLP_TRACES_ENDPOINT", receiver.Url("/v1/traces")}, {"OTEL_EXPORTER_OTLP_TIMEOUT", "300"}},
        End::kTakeDown, [](const Process& host) {
            return host.Error().find("Timeout was reached; it is tried again") != std::string::npos;
        });
    isOver = true;
    EXPECT_THAT(said, ContainsRegex("it is time to end; not sent: [1-9]"));
    const std::string events = ReadFile(container.EventsFile());
    EXPECT_THAT(events, HasSubstr("OrvaneSDK_Versions"));
    EXPECT_EQ(events.find("YarrowClient"), std::string::npos);
}

}  // namespace
}  // namespace EndToEnd
