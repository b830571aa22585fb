#include "Otlp/Environment.h"

#include <gmock/gmock.h>

namespace OrvaneOtlp {
namespace {

using Variables = std::map<std::string, std::string>;

// Names without their "OTEL_".
Settings Read(const Variables& variables, const std::string& base = "") {
    const auto find = [&](const char* name) {
        const auto found = variables.find(name + 5);
        return found == variables.end() ? nullptr : found->second.c_str();
    };
    return ReadEnvironment(find, base);
}

std::string ServiceOf(const Variables& variables) {
    return Read(variables).resource.List()[0].text;
}

TEST(OtlpEnvironment, EndpointsAreFoundAsPublished) {
    const std::string all = "EXPORTER_OTLP_ENDPOINT", traces = "EXPORTER_OTLP_TRACES_ENDPOINT";
    const struct {
        Variables variables;
        std::string traces, logs;
        size_t problems;
    } cases[] = {
        {{{all, " https://h/otlp/ "}}, "https://h/otlp/v1/traces", "https://h/otlp/v1/logs", 0},
        {{{all, "http://h?k=/"}, {traces, ""}}, "http://h/v1/traces?k=/", "http://h/v1/logs?k=/", 0},
        {{{all, "http://h"}, {traces, "http://t/x"}}, "http://t/x", "http://h/v1/logs", 0},
        {{{traces, "http://t"}}, "http://t", "", 0},
        {{{all, "h:4318"}}, "", "", 1},
        {{{all, "http:///v1"}}, "", "", 1},
        {{{all, "http://h"}, {"SDK_DISABLED", "TRUE"}}, "", "", 0},
        {{{all, "http://h"}, {"SDK_DISABLED", "1"}}, "http://h/v1/traces", "http://h/v1/logs", 1},
        {{{all, "http://h"}, {"EXPORTER_OTLP_PROTOCOL", "grpc"}}, "http://h/v1/traces", "http://h/v1/logs", 1},
    };
    for (const auto& one : cases) {
        const Settings settings = Read(one.variables);
        EXPECT_EQ(settings.traces.url, one.traces);
        EXPECT_EQ(settings.logs.url, one.logs);
        EXPECT_EQ(settings.problems.size(), one.problems) << testing::PrintToString(settings.problems);
    }
    EXPECT_EQ(Read({{traces, "http://t"}}, "http://given").traces.url, "http://given/v1/traces");
    EXPECT_EQ(ShownUrl("https://user:p@ss@h:1/v1/logs?key=1"), "https://h:1/v1/logs");
}

TEST(OtlpEnvironment, HeadersTimeoutAndResource) {
    const Settings settings = Read({{"EXPORTER_OTLP_ENDPOINT", "http://h"},
                                    {"EXPORTER_OTLP_HEADERS", "key = a%20b%2Cc ,,x=1=2, bad=1%0d%0aEvil: 1"},
                                    {"EXPORTER_OTLP_LOGS_HEADERS", "only=logs"},
                                    {"EXPORTER_OTLP_CERTIFICATE", "/all.pem"},
                                    {"EXPORTER_OTLP_LOGS_CERTIFICATE", "/logs.pem"},
                                    {"EXPORTER_OTLP_TIMEOUT", "0"},
                                    {"EXPORTER_OTLP_LOGS_TIMEOUT", "-5"}});
    EXPECT_THAT(settings.traces.headers, testing::ElementsAre("key: a b,c", "x: 1=2"));
    EXPECT_THAT(settings.logs.headers, testing::ElementsAre("only: logs"));
    EXPECT_EQ(settings.traces.certificate + settings.logs.certificate, "/all.pem/logs.pem");
    EXPECT_EQ(settings.traces.timeout, 0);
    EXPECT_EQ(settings.logs.timeout, 10000) << "a wrong one counts as not set";
    ASSERT_EQ(settings.problems.size(), 2u);
    EXPECT_EQ(settings.problems[0].find("Evil"), std::string::npos) << "headers hold secrets";
    EXPECT_EQ(ServiceOf({{"RESOURCE_ATTRIBUTES", "service.name=a%3D,x=y"}}), "a=");
    EXPECT_EQ(ServiceOf({{"RESOURCE_ATTRIBUTES", "service.name=a"}, {"SERVICE_NAME", "b"}}), "b");
    for (const char* wrong : {"service.name=a,b", "service.name=%2", "=1,service.name=a", "service.name=a,b=%zz"})
        EXPECT_EQ(ServiceOf({{"RESOURCE_ATTRIBUTES", wrong}}).substr(0, 16), "unknown_service:") << wrong;
}

}  // namespace
}  // namespace OrvaneOtlp
