#include "Otlp/Environment.h"

#include <gmock/gmock.h>

namespace OrvaneOtlp {
namespace {

using testing::ElementsAre;

Settings Read(const std::map<std::string, std::string>& variables, const std::string& base = "") {
    return ReadEnvironment(
        [&](const char* name) -> const char* {
            const auto found = variables.find(name);
            return found == variables.end() ? nullptr : found->second.c_str();
        },
        base);
}

std::string ResourceOf(const Settings& settings, const std::string& key) {
    for (const Attribute& attribute : settings.resource.List())
        if (attribute.key == key) return attribute.text;
    return "(none)";
}

TEST(OtlpEnvironment, EndpointsAreFoundAsPublished) {
    const std::string all = "OTEL_EXPORTER_OTLP_ENDPOINT", traces = "OTEL_EXPORTER_OTLP_TRACES_ENDPOINT";
    const struct {
        std::map<std::string, std::string> variables;
        std::string traces, logs;
        size_t problems;
    } cases[] = {
        {{}, "", "", 0},
        {{{all, ""}}, "", "", 0},
        {{{all, "http://h:4318"}}, "http://h:4318/v1/traces", "http://h:4318/v1/logs", 0},
        {{{all, " https://h/otlp/ "}}, "https://h/otlp/v1/traces", "https://h/otlp/v1/logs", 0},
        {{{all, "http://h?k=/"}}, "http://h/v1/traces?k=/", "http://h/v1/logs?k=/", 0},
        {{{all, "http://h"}, {traces, "http://t/x"}}, "http://t/x", "http://h/v1/logs", 0},
        {{{traces, "http://t"}}, "http://t", "", 0},
        {{{all, "h:4318"}}, "", "", 1},
        {{{all, "http:///v1"}}, "", "", 1},
        {{{all, "http://h"}, {"OTEL_SDK_DISABLED", "TRUE"}}, "", "", 0},
        {{{all, "http://h"}, {"OTEL_SDK_DISABLED", "1"}}, "http://h/v1/traces", "http://h/v1/logs", 1},
        {{{all, "http://h"}, {"OTEL_EXPORTER_OTLP_PROTOCOL", "grpc"}}, "http://h/v1/traces", "http://h/v1/logs", 1},
    };
    for (const auto& one : cases) {
        const Settings settings = Read(one.variables);
        EXPECT_EQ(settings.traces.url, one.traces);
        EXPECT_EQ(settings.logs.url, one.logs);
        EXPECT_EQ(settings.problems.size(), one.problems) << testing::PrintToString(settings.problems);
    }
    EXPECT_EQ(Read({{"OTEL_EXPORTER_OTLP_LOGS_ENDPOINT", "http://l"}}, "http://given").logs.url,
              "http://given/v1/logs");
    EXPECT_EQ(ShownUrl("https://user:p@ss@h:1/v1/logs?key=1"), "https://h:1/v1/logs");
    EXPECT_EQ(ShownUrl("http://h/a@b"), "http://h/a@b");
}

TEST(OtlpEnvironment, HeadersTimeoutAndResource) {
    const Settings settings = Read({{"OTEL_EXPORTER_OTLP_ENDPOINT", "http://h"},
                                    {"OTEL_EXPORTER_OTLP_HEADERS", "api-key = a%20b%2Cc ,,x=1=2, bad=1%0d%0aEvil: 1"},
                                    {"OTEL_EXPORTER_OTLP_LOGS_HEADERS", "only=logs"},
                                    {"OTEL_EXPORTER_OTLP_TIMEOUT", "0"},
                                    {"OTEL_EXPORTER_OTLP_LOGS_TIMEOUT", "-5"},
                                    {"OTEL_EXPORTER_OTLP_COMPRESSION", "brotli"},
                                    {"OTEL_EXPORTER_OTLP_LOGS_COMPRESSION", "gzip"},
                                    {"OTEL_RESOURCE_ATTRIBUTES", "service.name=given,device.id=320FC%3D"},
                                    {"OTEL_SERVICE_NAME", "game"}});
    EXPECT_THAT(settings.traces.headers, ElementsAre("api-key: a b,c", "x: 1=2"));
    EXPECT_THAT(settings.logs.headers, ElementsAre("only: logs"));
    EXPECT_EQ(settings.traces.timeout, 0);
    EXPECT_EQ(settings.logs.timeout, 10000) << "a wrong one counts as not set";
    EXPECT_TRUE(settings.logs.isCompressed && !settings.traces.isCompressed);
    EXPECT_EQ(settings.problems.size(), 3u) << testing::PrintToString(settings.problems);
    EXPECT_EQ(settings.problems[0].find("Evil"), std::string::npos) << "headers hold secrets";
    EXPECT_EQ(ResourceOf(settings, "service.name"), "game");
    EXPECT_EQ(ResourceOf(settings, "device.id"), "320FC=");
    EXPECT_EQ(ResourceOf(Read({{"OTEL_RESOURCE_ATTRIBUTES", "service.name=given"}}), "service.name"), "given");
    for (const char* wrong : {"a=1,b", "a=%2", "=1", "a=1,b=%zz"}) {
        const Settings broken = Read({{"OTEL_RESOURCE_ATTRIBUTES", wrong}});
        EXPECT_EQ(ResourceOf(broken, "a"), "(none)") << wrong << ": all of it is left out";
        EXPECT_EQ(broken.problems.size(), 1u);
        EXPECT_EQ(ResourceOf(broken, "service.name").substr(0, 16), "unknown_service:");
    }
}

}  // namespace
}  // namespace OrvaneOtlp
