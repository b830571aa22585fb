#include "Orvane/TraceParent.h"

#include <gtest/gtest.h>
#include <openssl/sha.h>

namespace Orvane::Plugin {
namespace {

TEST(TraceParent, TheHashIsTheKnownOne) {
    for (size_t length = 0; length < 200; ++length) {
        std::string text(length, '\0');
        for (size_t i = 0; i < length; ++i)
            text[i] = static_cast<char>(i * 37 + length);
        unsigned char ours[32], theirs[32];
        SpanIdHash::Digest(text.data(), length, ours);
        SHA256(reinterpret_cast<const unsigned char*>(text.data()), length, theirs);
        ASSERT_EQ(std::string(ours, ours + 32), std::string(theirs, theirs + 32)) << length;
    }
}

// `printf tid | sha256sum` and `printf sid | sha256sum`, cut.
TEST(TraceParent, OfASpansText) {
    const struct {
        const char* context;
        const char* wanted;
    } cases[] = {
        {"tid--sid-1", "00-c71179c23b75ed3a1ecfc1e15aee1a88-34b36454cab2e784-01"},
        {"tid-parent-sid-1", "00-c71179c23b75ed3a1ecfc1e15aee1a88-34b36454cab2e784-01"},
        {"tid-parent-sid-", "00-c71179c23b75ed3a1ecfc1e15aee1a88-34b36454cab2e784-01"},
        {nullptr, ""},
        {"", ""},
        {"tid-parent-sid", ""},
        {"tid-parent-sid-1-2", ""},
        {"-parent-sid-1", ""},
        {"tid-parent--1", ""},
        {"---1", ""},
    };
    for (const auto& one : cases)
        EXPECT_EQ(sg_traceparent(one.context), one.wanted) << (one.context ? one.context : "null");
    EXPECT_EQ(sg_otel_span_id(""), "") << "a root has no parent";
}

}  // namespace
}  // namespace Orvane::Plugin
