#include "Pell/OtlpMapping.h"

#include <gmock/gmock.h>

#include "Orvane/TraceParent.h"

namespace Pell {
namespace {

using testing::ElementsAre;
using Pairs = std::map<std::string, std::string>;

Pairs AttributesOf(const OrvaneOtlp::Attributes& attributes) {
    Pairs pairs;
    for (const OrvaneOtlp::Attribute& one : attributes.List())
        pairs[one.key] = one.isNumber ? "#" + std::to_string(one.number) : one.text;
    return pairs;
}

// A span as the library reports it, with some of its fields otherwise.
OrvaneOtlp::Span SpanWith(const Pairs& changes, bool withOpenId = false) {
    Pairs fields = changes;
    fields.insert({{"tid", "T"},
                   {"sid", "S"},
                   {"pid", "P"},
                   {"kind", "1"},
                   {"pritype", "7"},
                   {"name", "Login"},
                   {"ts", "1000"},
                   {"dur", "500"},
                   {"errcode", "0"},
                   {"errmsg", "no"},
                   {"openid", "me"},
                   {"rmtname", "account"}});
    EventBytes bytes(2000, kSpanEventName);
    bytes.Add(100001, 3);
    bytes.Add(110002, "me", 2);
    for (const auto& [key, value] : fields)
        bytes.Add(key.c_str(), value.c_str(), static_cast<int>(value.size()));
    return SpanOf(EventBytes::Read(bytes.ReportedAt(9000000)), withOpenId);
}

TEST(OtlpMapping, ASpan) {
    const OrvaneOtlp::Span span = SpanWith({{"tags", R"({"scene":"a]b","orvane.tid":"forged","deep":{}})"}});
    EXPECT_EQ("00-" + span.traceId + "-" + span.spanId + "-01", Orvane::Plugin::sg_traceparent("T-P-S-1"));
    EXPECT_EQ(span.parentSpanId, Orvane::Plugin::sg_traceparent("T--P-1").substr(36, 16)) << "the parent's own id";
    EXPECT_EQ(span.name, "Login");
    EXPECT_EQ(span.kind, OrvaneOtlp::kSpanClient);
    EXPECT_EQ(span.start, 1000000u);
    EXPECT_EQ(span.end, 1500000u);
    EXPECT_EQ(AttributesOf(span.attributes), (Pairs{{"orvane.tid", "T"},
                                                    {"orvane.sid", "S"},
                                                    {"orvane.pid", "P"},
                                                    {"orvane.pritype", "7"},
                                                    {"orvane.errcode", "0"},
                                                    {"orvane.errmsg", "no"},
                                                    {"peer.service", "account"},
                                                    {"scene", "a]b"},
                                                    {"orvane.field.100001", "#3"}}));
    const Pairs told = AttributesOf(SpanWith({}, true).attributes);
    EXPECT_EQ(told.at("orvane.openid") + told.at("orvane.field.110002"), "meme");
}

TEST(OtlpMapping, OutcomesAndTimesOfSpans) {
    const struct {
        Pairs changes;
        OrvaneOtlp::SpanStatus status;
        uint64_t start, end;
    } cases[] = {
        {{{"errcode", "-3"}}, OrvaneOtlp::kStatusError, 1000000, 1500000},
        {{{"errcode", ""}, {"dur", ""}}, OrvaneOtlp::kStatusUnset, 1000000, 9000000},
        {{{"errcode", ""}, {"dur", ""}, {"ts", "9001"}}, OrvaneOtlp::kStatusUnset, 9001000, 9001000},
        {{{"ts", ""}, {"dur", "7000"}}, OrvaneOtlp::kStatusOk, 7000000, 7000000},
        {{{"dur", "-5"}}, OrvaneOtlp::kStatusOk, 1000000, 1000000},
        {{{"ts", "99999999999999999999"}}, OrvaneOtlp::kStatusOk, 9223372036854775000u, 9223372036855275000u},
        {{{"tags", std::string(3000, '[')}}, OrvaneOtlp::kStatusOk, 1000000, 1500000},
    };
    for (const auto& one : cases) {
        const OrvaneOtlp::Span span = SpanWith(one.changes);
        EXPECT_EQ(span.status, one.status);
        EXPECT_EQ(span.statusMessage, one.status == OrvaneOtlp::kStatusError ? "no" : "");
        EXPECT_EQ(span.start, one.start);
        EXPECT_EQ(span.end, one.end);
    }
    const OrvaneOtlp::Span bare = SpanWith({{"name", ""}, {"rmtname", ""}, {"pid", ""}});
    EXPECT_EQ(bare.name, "unnamed");
    EXPECT_EQ(bare.kind, OrvaneOtlp::kSpanInternal);
    EXPECT_EQ(bare.parentSpanId, "");
}

TEST(OtlpMapping, AnEvent) {
    EventBytes bytes(17, "Bought");
    bytes.Add("item", "sword", 5);
    bytes.Add("item", "a shield", 3);
    bytes.Add("openid", "me", 2);
    bytes.Add("empty", nullptr, 4);
    bytes.Add(nullptr, "x", 1);
    bytes.Add(30001, -5);
    bytes.Add(110002, "me", 2);
    const OrvaneOtlp::LogRecord record = LogRecordOf(EventBytes::Read(bytes.ReportedAt(42)), false);
    EXPECT_EQ(record.time, 42u);
    EXPECT_EQ(record.eventName, "Bought");
    EXPECT_EQ(AttributesOf(record.attributes), (Pairs{{"orvane.source", "#17"},
                                                      {"orvane.field.item", "a s"},
                                                      {"orvane.field.empty", ""},
                                                      {"orvane.field.30001", "#-5"}}));
}

}  // namespace
}  // namespace Pell
