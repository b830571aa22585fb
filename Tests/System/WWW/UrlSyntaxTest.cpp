// What is read of addresses, headers and error codes without a network.

#include "Support/Test.h"
#include "System/WWW/ContentRange.h"
#include "System/WWW/UrlReference.h"

namespace {

using namespace Quern;

TEST(UrlReference, FollowsTheGrammar) {
    for (const char* good :
         {"", "http://a", "HTTPS://user:pw@a.b:80/p;x=1?q=/?#f?", "http://[::1]:8/", "http://[v1.a:b]/", "mailto:a@b",
          "//a/b", "../a", "http://%41/%2f", "a+b-c.d:x", "http://a:/", "http://"})
        EXPECT_TRUE(ParseUrlReference(good)) << good;
    for (const char* bad : {"http://a b", "http://a/\n", "http://\xc3\xa4/", "http://a/%4g", "http://a/%4", "1a://b",
                            ":a", "http://a:8x/", "http://[::1", "http://[::g]/", "http://[v.a]/", "http://a@b@c/",
                            "http://a/#b#c", "http://a/<b>", "http://a/\\b", "a^b", "http://[::1]x/", "http://a[b/"})
        EXPECT_FALSE(ParseUrlReference(bad)) << bad;

    UrlReference parts;
    EXPECT_TRUE(ParseUrlReference("hTTps://u@[::1]:9/x", &parts) && parts.IsHttps() && parts.host == "[::1]");
    for (const char* other : {"http:///x", "httpx://a/", "http:a", "a/b"})
        EXPECT_TRUE(ParseUrlReference(other, &parts) && !parts.IsHttp()) << other;
}

TEST(ContentRange, TakesWholeHeadersAlone) {
    ContentRange range;
    EXPECT_TRUE(ParseContentRange(" Bytes  3-9/10 ", range));
    EXPECT_TRUE(range.first == 3 && range.last == 9 && range.total == 10);
    EXPECT_TRUE(ParseContentRange("bytes 0-0/*", range) && range.total == -1);
    for (const char* bad : {"", "bytes", "bytes ", "bytes */10", "bytes 1-2", "bytes 2-1/10", "bytes 1-10/10",
                            "bytes -1-2/3", "bytes 1-2/3x", "bytes=1-2/3", "lines 1-2/3", "bytes 1-2/-3",
                            "bytes 0-99999999999999999999/*", "bytes 1 -2/3", "bytes +1-2/3"})
        EXPECT_FALSE(ParseContentRange(bad, range)) << bad;
    EXPECT_EQ(range.total, -1);
}

}  // namespace
