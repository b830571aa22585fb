#include <gmock/gmock.h>

#include "DevServer/Fault.h"
#include "DevServer/FaultyAnswer.h"
#include "DevServer/HostileJson.h"
#include "DevServer/JsonText.h"

namespace OrvaneDevServer {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

Fault Parsed(const std::string& order) {
    Fault fault;
    std::string error;
    EXPECT_TRUE(ParseFault(order, fault, error)) << order << ": " << error;
    return fault;
}

std::vector<std::string> OrdersFor(const FaultList& faults, uint64_t number) {
    std::vector<std::string> orders;
    for (const Fault& fault : faults.For(Protocol::kConfig, number))
        orders.push_back(fault.order);
    return orders;
}

Answer Spoilt(const std::string& order, uint64_t number = 1) {
    Answer answer;
    answer.body = "{\"ret\":0}\n";
    Spoil(Parsed(order), number, "/path?query", answer);
    return answer;
}

TEST(DevServerFault, HitsTheRequestsThatItNames) {
    FaultList faults;
    for (const char* order :
         {"config:3:500", "config:2-3:delay:10", "config:6-:hold", "config:+2-3:{}", "traceids:*:empty"})
        faults.Add(Parsed(order), 5);
    const std::vector<std::string> kExpected[] = {{},
                                                  {},
                                                  {"config:2-3:delay:10"},
                                                  {"config:3:500", "config:2-3:delay:10"},
                                                  {},
                                                  {},
                                                  {"config:6-:hold"},
                                                  {"config:6-:hold", "config:+2-3:{}"},
                                                  {"config:6-:hold", "config:+2-3:{}"},
                                                  {"config:6-:hold"}};
    for (size_t number = 1; number < std::size(kExpected); ++number)
        EXPECT_EQ(OrdersFor(faults, number), kExpected[number]) << number;
    EXPECT_EQ(faults.For(Protocol::kTraceIds, 100).size(), 1u);
}

TEST(DevServerFault, RefusesWhatIsNoOrder) {
    for (const char* order : {"",
                              "config",
                              "config:1",
                              "upload:1:500",
                              "config:0:500",
                              "config:3-2:500",
                              "config:-1:500",
                              "config:x:500",
                              "config:1:",
                              "config:1:99",
                              "config:1:600",
                              "config:1:500:xml",
                              "config:1:delay",
                              "config:1:delay:-1",
                              "config:1:delay:5s",
                              "config:1:hold:1",
                              "config:1:{}:x",
                              "config:1:hostile:nosuch",
                              "config:1:ret:99999999999",
                              "traceids:1:rule:1",
                              "config:1:rule:",
                              "config:1:big:0",
                              "config:1:redirect:/a\r\nSet-Cookie: b",
                              "config:18446744073709551616:500"}) {
        Fault fault;
        std::string error;
        EXPECT_FALSE(ParseFault(order, fault, error)) << order;
        EXPECT_NE(error, "") << order;
    }
}

TEST(DevServerFault, SpoilsTheAnswer) {
    EXPECT_THAT(Spoilt("config:1:503").body, HasSubstr("<h1>503</h1>"));
    EXPECT_EQ(Spoilt("config:1:500:json").body, "{\"ret\":0}\n");
    EXPECT_EQ(Spoilt("config:1:204:json").body, "");
    EXPECT_EQ(Spoilt("config:1:ret:-7").body, "{\"err\":\"ordered fault\",\"ret\":-7}\n");
    EXPECT_THAT(Spoilt("traceids:1:ret:7").body, HasSubstr("\"retcode\":7"));
    EXPECT_THAT(Spoilt("config:1:redirect:http://a:1/b").headers, ElementsAre(Header("Location", "http://a:1/b")));
    EXPECT_THAT(Spoilt("config:1:redirect").headers, ElementsAre(Header("Location", "/path?query")));
    EXPECT_EQ(Spoilt("config:1:hostile:merged-null").body, FindHostile(Protocol::kConfig, "merged-null")->text);
    EXPECT_NE(Spoilt("config:*:hostile", 1).body, Spoilt("config:*:hostile", 2).body);
    EXPECT_EQ(Spoilt("config:*:hostile:9", 3).body, Spoilt("config:*:hostile:9", 3).body);
    EXPECT_NE(Spoilt("config:*:hostile:9", 3).body, Spoilt("config:*:hostile:9", 4).body);
    for (const char* protocol : {"config", "traceids"}) {
        const Answer big = Spoilt(std::string(protocol) + ":1:big:5000");
        EXPECT_EQ(big.body.size() + big.fillerLength + big.tail.size(), 5000u);
        Json::Value value;
        std::string error;
        EXPECT_TRUE(ReadStrictly(big.body + std::string(big.fillerLength, 'x') + big.tail, value, error)) << error;
    }
    EXPECT_EQ(Parsed("config:1:big").number, 104857600);
}

}  // namespace
}  // namespace OrvaneDevServer
