#include <gmock/gmock.h>

#include "DevServer/ClientVerdict.h"
#include "DevServer/HostileJson.h"

namespace OrvaneDevServer {
namespace {

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
        {R"({"retcode":0,"retmsg":"","result":{"count":2,"traceids":["a","b"]}})", "will add 2 ids to its stock"},
        {R"({"retcode":0,"result":{}})", "will keep its stock: \"retmsg\" is missing"},
        {R"({"retcode":7,"retmsg":"no","result":{}})", "will keep its stock: the server's error 7, \"no\""},
        {R"({"retcode":0,"retmsg":"","result":{"count":1}})",
         "will keep its stock: \"count\" or \"traceids\" is missing"},
        {R"({"retcode":0,"retmsg":"","result":{"count":0,"traceids":[]}})", "will keep its stock: \"count\" is 0"},
        {R"({"retcode":0,"retmsg":"","result":{"count":3,"traceids":["a"]}})",
         "will keep its stock: \"count\" is 3, and there are 1 id"},
        {R"({"retcode":0,"retmsg":"","result":{"count":1,"traceids":[[]]}})",
         "will keep its stock: one of the ids is an array"},
    };
    for (const auto& [body, verdict] : kBodies) {
        Answer answer;
        answer.body = body;
        EXPECT_EQ(TraceIdVerdict(answer), verdict);
    }
}

TEST(DevServerClientVerdict, BearsHostileAnswers) {
    for (const Protocol protocol : {Protocol::kConfig, Protocol::kTraceIds}) {
        std::vector<HostileDocument> documents = HostileDocuments(protocol);
        for (uint64_t seed = 0; seed < 3000; ++seed)
            documents.push_back({"mutated", Mutate(seed % 50 == 0 ? "" : FindHostile(protocol, "behind")->text, seed)});
        for (const HostileDocument& document : documents) {
            Answer answer;
            answer.body = document.text;
            int32_t highest = 0;
            EXPECT_THAT(ConfigVerdict(answer, highest), testing::StartsWith("will "));
            EXPECT_THAT(TraceIdVerdict(answer), testing::StartsWith("will "));
        }
    }
    int32_t highest = 0;
    for (const char* taken : {"rule-negative", "value-kinds", "value-big", "names", "nul-in-text", "no-utf8", "behind"})
        EXPECT_THAT(VerdictOn(FindHostile(Protocol::kConfig, taken)->text, highest),
                    testing::StartsWith("will replace"));
    for (const char* refused : {"page", "nothing", "deep-arrays", "deep-objects", "value-deep", "cut"})
        EXPECT_THAT(VerdictOn(FindHostile(Protocol::kConfig, refused)->text, highest),
                    testing::StartsWith("will keep"));
}

}  // namespace
}  // namespace OrvaneDevServer
