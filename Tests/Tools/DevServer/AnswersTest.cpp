// Faults, the answers that they make, and what the client does with answers.
#include "DevServer/ClientVerdict.h"
#include "DevServer/Fault.h"
#include "DevServer/FaultyAnswer.h"
#include "DevServer/HostileJson.h"
#include "DevServer/JsonText.h"
#include "Support/Test.h"

namespace OrvaneDevServer {
namespace {

Fault Parsed(const std::string& order) {
    Fault fault;
    std::string error;
    EXPECT_TRUE(ParseFault(order, fault, error)) << order << ": " << error;
    return fault;
}

std::string OrdersFor(const FaultList& faults, uint64_t number) {
    std::string orders;
    for (const Fault& fault : faults.For(Protocol::kConfig, number))
        orders += fault.order.substr(7) + " ";
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
    const std::string both = "6-:hold +2-3:{} ";
    const std::string kExpected[] = {"",   "",   "2-3:delay:10 ", "3:500 2-3:delay:10 ", "", "", "6-:hold ",
                                     both, both, "6-:hold "};
    for (size_t number = 1; number < std::size(kExpected); ++number)
        EXPECT_EQ(OrdersFor(faults, number), kExpected[number]) << number;
    EXPECT_EQ(faults.For(Protocol::kTraceIds, 100).size(), 1u);
}

TEST(DevServerFault, RefusesWhatIsNoOrder) {
    std::istringstream orders(
        "config config:1 uploads:1:500 upload:1:next: config:1:next:1 config:1:url config:0:500 config:3-2:500 "
        "config:-1:500 config:x:500 config:1: config:1:99 "
        "config:1:600 "
        "config:1:500:xml config:1:delay config:1:delay:-1 config:1:delay:5s config:1:hold:1 config:1:{}:x "
        "config:1:hostile:no "
        "config:1:ret:99999999999 traceids:1:rule:1 config:1:rule: config:1:big:0 config:18446744073709551616:500 "
        "config:1:redirect:/a\x01\x01Set-Cookie:b");
    for (std::string order; orders >> order;) {
        std::replace(order.begin(), order.end(), '\x01', '\n');
        Fault fault;
        std::string error;
        EXPECT_FALSE(ParseFault(order, fault, error)) << order;
    }
}

TEST(DevServerFault, SpoilsTheAnswer) {
    EXPECT_EQ(Spoilt("config:1:204:json").body, "");
    EXPECT_EQ(Spoilt("config:1:ret:-7").body, "{\"err\":\"ordered fault\",\"ret\":-7}\n");
    EXPECT_THAT(Spoilt("traceids:1:ret:7").body, HasSubstr("\"retcode\":7"));
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
}

std::string VerdictOn(const std::string& body, int32_t& highest, int status = 200) {
    Answer answer;
    answer.status = status;
    answer.body = body;
    return ConfigVerdict(answer, highest);
}

TEST(DevServerClientVerdict, ForeseesWhatBecomesOfAConfiguration) {
    int32_t highest = 3;
    const std::string good =
        R"({"ret":0,"err":"","biz_data":{"rule_id":5,"merged_cfg":{"A":{"s":"1","i":-2},"B":{}}}})";
    EXPECT_EQ(VerdictOn(good, highest), "will replace the file: 2 modules, 2 keys; takes rule id 5");
    EXPECT_EQ(VerdictOn(good, highest, 500),
              "will replace the file: 2 modules, 2 keys; rule id 5 is not above 5, which stays (the status 500 is not "
              "looked at)");
    EXPECT_EQ(
        VerdictOn(R"({"biz_data":{"merged_cfg":{"A":{"b":true,"r":1.0,"n":null,"i":1}}}})", highest),
        "will replace the file: 1 module, 1 key; drops A.b, a boolean; drops A.n, null; drops A.r, a real number; "
        "rule id 0 is not above 5, which stays");
    EXPECT_EQ(VerdictOn(R"({"ret":0,"biz_data":{"rule_id":6,"merged_cfg":{}}} behind)", highest),
              "will remove all remote keys: \"merged_cfg\" is empty; takes rule id 6");
    EXPECT_EQ(highest, 6);

    const std::pair<const char*, const char*> kRefused[] = {
        {"", "the answer is empty"},
        {"<html>", "the answer is no JSON"},
        {"[]", "the answer is an array, not an object"},
        {"{}", "\"biz_data\" is missing"},
        {R"({"ret":5,"err":"no"})", "the server's error 5, \"no\""},
        {R"({"ret":"0","biz_data":{"merged_cfg":{}}})", "\"ret\" is a string that is no 32-bit integer"},
        {R"({"ret":2147483648,"biz_data":{"merged_cfg":{}}})", "\"ret\" is an integer that is no 32-bit integer"},
        {R"({"err":{},"biz_data":{"merged_cfg":{}}})", "\"err\" is an object"},
        {R"({"biz_data":[]})", "\"biz_data\" is an array"},
        {R"({"biz_data":{"rule_id":1e99,"merged_cfg":{}}})", "\"rule_id\" is a real number that is no 32-bit integer"},
        {R"({"biz_data":{"rule_id":9}})", "\"merged_cfg\" is missing or null"},
        {R"({"biz_data":{"rule_id":9,"merged_cfg":{"A":{},"B":1}}})", "the module \"B\" is an integer"},
    };
    for (const auto& [body, why] : kRefused)
        EXPECT_EQ(VerdictOn(body, highest), std::string("will keep the old file: ") + why);
    EXPECT_EQ(highest, 6);
}

TEST(DevServerClientVerdict, ForeseesWhatBecomesOfTraceIds) {
    const std::pair<const char*, const char*> kBodies[] = {
        {R"("retcode":0,"retmsg":"","result":{"count":2,"traceids":["a-b","b"]})",
         "add 2 ids to its stock; it takes \"a-b\" too"},
        {R"("retcode":0,"result":{})", "keep its stock: \"retmsg\" is missing"},
        {R"("retcode":7,"retmsg":"no","result":{})", "keep its stock: the server's error 7, \"no\""},
        {R"("retcode":0,"retmsg":"","result":{"count":1})", "keep its stock: \"count\" or \"traceids\" is missing"},
        {R"("retcode":0,"retmsg":"","result":{"count":0,"traceids":[]})", "keep its stock: \"count\" is 0"},
        {R"("retcode":0,"retmsg":"","result":{"count":3,"traceids":["a"]})", "keep its stock: \"count\" is 3, and"},
        {R"("retcode":0,"retmsg":"","result":{"count":1,"traceids":[[]]})",
         "keep its stock: one of the ids is an array"},
    };
    for (const auto& [members, verdict] : kBodies) {
        Answer answer;
        answer.body = std::string("{") + members + "}";
        EXPECT_THAT(TraceIdVerdict(answer), StartsWith(std::string("will ") + verdict));
    }
}

TEST(DevServerClientVerdict, ForeseesWhatBecomesOfAnUpload) {
    const std::string good = R"({"biz_data":{"upload_url":"u","next_pos":4}})";  // "ret" may be missing
    const std::string longest = good + std::string((64 << 10) - good.size(), ' ');
    Answer answer;
    for (const std::string& body : {good, longest, FindHostile(Protocol::kUpload, "doubled")->text}) {
        answer.body = body;
        EXPECT_TRUE(UploadVerdict(answer, true).isTaken) << UploadVerdict(answer, true).text;
        EXPECT_THAT(UploadVerdict(answer, false).text, StartsWith("will go on from "));
    }
    answer.body = longest;
    answer.tail = " ";
    EXPECT_EQ(UploadVerdict(answer, true).text, "is done, result 2: the answer is longer than 64 KiB");
    EXPECT_THAT(UploadVerdict(answer, false).text, StartsWith("will try once more, or end with result 3: "));
    answer.tail.clear();
    for (const HostileDocument& document : HostileDocuments(Protocol::kUpload)) {
        answer.body = document.text;
        EXPECT_EQ(UploadVerdict(answer, true).isTaken, document.name == "doubled") << document.name;
    }
}

}  // namespace
}  // namespace OrvaneDevServer
