#include "Orvane/TraceParent.h"

#include <openssl/sha.h>

#include "Support/Test.h"

namespace Orvane::Plugin {
namespace {

TEST(TraceParent, TheHashIsTheKnownOne) {
    for (size_t length = 0; length < 200; ++length) {
        const std::string text(length, static_cast<char>(length * 37));
        unsigned char ours[32], theirs[32];
        SpanIdHash::Digest(text.data(), length, ours);
        SHA256(reinterpret_cast<const unsigned char*>(text.data()), length, theirs);
        ASSERT_EQ(memcmp(ours, theirs, 32), 0) << length;
    }
}

// `printf tid | sha256sum` and `printf sid | sha256sum`, cut.
TEST(TraceParent, OfASpansText) {
    for (const char* span : {"tid--sid-1", "tid-parent-sid-1", "tid-parent-sid-"})
        EXPECT_EQ(sg_traceparent(span), "00-c71179c23b75ed3a1ecfc1e15aee1a88-34b36454cab2e784-01");
    for (const char* none : {"", "tid-parent-sid", "tid-parent-sid-1-2", "-parent-sid-1", "tid-parent--1", "---1"})
        EXPECT_EQ(sg_traceparent(none), "") << none;
    EXPECT_EQ(sg_traceparent(nullptr), "");
    EXPECT_EQ(sg_otel_span_id(""), "") << "a root has no parent";
}

}  // namespace
}  // namespace Orvane::Plugin
