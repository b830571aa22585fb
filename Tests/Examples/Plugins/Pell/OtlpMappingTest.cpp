#include "Pell/OtlpMapping.h"

#include "Orvane/TraceParent.h"
#include "Support/Test.h"

namespace Pell {
namespace {

// "key=text key=#number ", in order of the keys.
std::string TextOf(const OrvaneOtlp::Attributes& attributes) {
    std::map<std::string, std::string> sorted;
    for (const OrvaneOtlp::Attribute& one : attributes.List())
        sorted[one.key] = one.isNumber ? "#" + std::to_string(one.number) : one.text;
    std::string text;
    for (const auto& [key, value] : sorted)
        text += key + "=" + value + " ";
    return text;
}

// A span as the library reports it; `changes` are fields that it has otherwise, as "key=value key=value".
OrvaneOtlp::Span SpanWith(const std::string& changes, bool withOpenId = false) {
    std::istringstream fields(
        "tid=T sid=S pid=P kind=1 pritype=7 name=Login ts=1000 dur=500 errcode=0 errmsg=no openid=me rmtname=account "
        "tags={\"scene\":\"a]b\",\"orvane.tid\":\"forged\",\"deep\":{}} " +
        changes);
    EventBytes bytes(2000, kSpanEventName);
    bytes.Add(100001, 3);
    bytes.Add(110002, "me", 2);
    for (std::string field; fields >> field;) {
        const size_t equals = field.find('=');
        const std::string value = field.substr(equals + 1);
        bytes.Add(field.substr(0, equals).c_str(), value.c_str(), static_cast<int>(value.size()));
    }
    return SpanOf(EventBytes::Read(bytes.ReportedAt(9000000)), withOpenId);
}

TEST(OtlpMapping, ASpan) {
    const OrvaneOtlp::Span span = SpanWith("");
    EXPECT_EQ("00-" + span.traceId + "-" + span.spanId + "-01", Orvane::Plugin::sg_traceparent("T-P-S-1"));
    EXPECT_EQ(span.parentSpanId, Orvane::Plugin::sg_traceparent("T--P-1").substr(36, 16)) << "the parent's own id";
    EXPECT_EQ(span.name, "Login");
    EXPECT_EQ(span.kind, OrvaneOtlp::kSpanClient);
    EXPECT_EQ(TextOf(span.attributes),
              "orvane.errcode=0 orvane.errmsg=no orvane.field.100001=#3 orvane.pid=P orvane.pritype=7 orvane.sid=S "
              "orvane.tid=T peer.service=account scene=a]b ");
    const std::string told = TextOf(SpanWith("", true).attributes);
    EXPECT_NE(told.find("orvane.field.110002=me orvane.openid=me"), std::string::npos) << told;

    const OrvaneOtlp::Span bare = SpanWith("name= rmtname= pid=");
    EXPECT_EQ(bare.name + bare.parentSpanId, "unnamed");
    EXPECT_EQ(bare.kind, OrvaneOtlp::kSpanInternal);
}

TEST(OtlpMapping, OutcomesAndTimesOfSpans) {
    const struct {
        std::string changes;
        OrvaneOtlp::SpanStatus status;
        uint64_t start, end;
    } cases[] = {
        {"errcode=-3", OrvaneOtlp::kStatusError, 1000000, 1500000},
        {"errcode= dur=", OrvaneOtlp::kStatusUnset, 1000000, 9000000},
        {"errcode= dur= ts=9001", OrvaneOtlp::kStatusUnset, 9001000, 9001000},
        {"ts= dur=7000", OrvaneOtlp::kStatusOk, 7000000, 7000000},
        {"dur=-5", OrvaneOtlp::kStatusOk, 1000000, 1000000},
        {"ts=99999999999999999999", OrvaneOtlp::kStatusOk, 9223372036854775000u, 9223372036855275000u},
        {"tags=" + std::string(3000, '['), OrvaneOtlp::kStatusOk, 1000000, 1500000},
    };
    for (const auto& one : cases) {
        const OrvaneOtlp::Span span = SpanWith(one.changes);
        EXPECT_EQ(span.status, one.status);
        EXPECT_EQ(span.statusMessage, one.status == OrvaneOtlp::kStatusError ? "no" : "");
        EXPECT_EQ(span.start, one.start) << one.changes;
        EXPECT_EQ(span.end, one.end) << one.changes;
    }
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
    EXPECT_EQ(record.eventName + std::to_string(record.time), "Bought42");
    EXPECT_EQ(TextOf(record.attributes),
              "orvane.field.30001=#-5 orvane.field.empty= orvane.field.item=a s orvane.source=#17 ");
}

}  // namespace
}  // namespace Pell
