#include "DevServer/ConfigProtocol.h"
#include "DevServer/TraceIdProtocol.h"
#include "DevServer/TraceIds.h"
#include "Support/Test.h"
#include "Tools/DevServer/Requests.h"

namespace OrvaneDevServer {
namespace {

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    const size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

Problems ConfigProblems(const Request& request) {
    return CheckConfigRequest(request, SplitTarget(request.target), kNow).problems;
}

// One change of a good text, and part of the one problem that it makes; empty for none.
struct Case {
    std::string from, to, problem;
};

void Expect(const Problems& problems, const Case& c) {
    if (c.problem.empty())
        EXPECT_THAT(problems, IsEmpty()) << c.to;
    else
        EXPECT_THAT(problems, ElementsAre(HasSubstr(c.problem))) << c.from << " -> " << c.to;
}

TEST(DevServerConfigProtocol, TakesWhatTheClientSendsAndSaysWhatAQueryBreaks) {
    const ConfigRequest checked = CheckConfigRequest(ConfigFetch("D1"), SplitTarget(ConfigFetch("D1").target), kNow);
    EXPECT_THAT(checked.problems, IsEmpty());
    EXPECT_EQ(checked.comParams["oid"].asString(), "Zo\xC3\xAB \"~");
    for (const Case& c : std::vector<Case>{
             {"com_params=", "Com_params=", "the query holds \"Com_params\", \"biz_params\", \"r\"; it must hold"},
             {"&r=", "&x=1&r=", "\"x\", \"r\"; it must hold"},
             {"&r=1700000000", "", "\"com_params\", \"biz_params\"; it must hold"},
             {"Zo%5Cu00eb+", "Zo%5Cu00eb%20", "com_params is wrongly encoded at position"},
             {"%7B%22app", "%7b%22app", "\"%7b\" is sent with upper-case digits, \"%7B\""},
             {"com.example", "com%2Eexample", "\"%2E\" stands for a \".\", which is sent as it is"},
             {"Board9%2C4", "Board9,4", "\",\" is sent as \"%2C\""},
             {"com_params=%7B", "com_params={", "position 0: \"{\" is sent as \"%7B\""},
             {"%0A&biz", "&biz", "com_params lacks the newline (\"%0A\")"},
             {"%7D%0A&r", "%7D&r", "biz_params lacks the newline"},
             {"r=1700000000", "r=1700000120", ""},
             {"r=1700000000", "r=1699999880", ""},
             {"r=1700000000", "r=1700000121", "r is 121 s ahead of this machine's clock"},
             {"r=1700000000", "r=1699999879", "r is 121 s behind this machine's clock"},
             {"r=1700000000", "r=01700000000", "it must be the seconds since the epoch in decimal"},
             {"r=1700000000", "r=18446744073709551615", "it must be the seconds"},
         })
        Expect(ConfigProblems(Get(Replaced(ConfigFetch("D1").target, c.from, c.to))), c);
    for (const char* cut : {"%7D%&r", "%7D%0&r", "%7D%0G&r"})  // which leaves no JSON either
        EXPECT_THAT(ConfigProblems(Get(Replaced(ConfigFetch("D1").target, "%7D%0A&r", cut))),
                    ElementsAre(HasSubstr("a \"%\" has no two hexadecimal digits behind it"), HasSubstr("is no JSON")));
    const std::string target = "/cfgpush/getConfig?biz_params=%7B%22rule_id%22%3A0%7D%0A&com_params=" +
                               Quern::URLEncoder::Encode(ComParams("D1")) + "&r=1700000000";
    EXPECT_THAT(ConfigProblems(Get(target)), ElementsAre(HasSubstr("in this order")));
    EXPECT_THAT(ConfigProblems(Get("/cfgpush/getConfig")), ElementsAre(HasSubstr("the query holds nothing")));
}

TEST(DevServerConfigProtocol, SaysWhatTheParametersBreak) {
    for (const Case& c : std::vector<Case>{
             {"\"bid\":\"com.example.game\",", "", "com_params lacks \"bid\""},
             {"\"cid\":\"7\"", "\"cid\":7", "\"cid\" in com_params is an integer; it must be a string"},
             {"\"iOS\"", "\"Linux\"", "\"os\" in com_params is \"Linux\"; it must be \"iOS\""},
             {"{\"app_ver\"", "{\"a\":1,\"app_ver\"", "com_params has \"a\", which is none of its members"},
             {"{\"PELL\":{\"ver\":\"3.2\"},\"Sample\":{\"ver\":\"1.0.3\"}}", "[]",
              "\"sdk_list\" in com_params is an array"},
             {"{\"ver\":\"3.2\"}", "{\"ver\":3}", "\"PELL\" in \"sdk_list\" must be an object with the one string"},
             {"{\"ver\":\"3.2\"}", "{\"more\":1,\"ver\":\"3.2\"}", "\"PELL\" in \"sdk_list\" must be an object"},
             {"{\"PELL\":{\"ver\":\"3.2\"},\"Sample\":{\"ver\":\"1.0.3\"}}", "{}", ""},
             {"\"cid\":\"7\",\"did\":\"D1\"", "\"did\":\"D1\",\"cid\":\"7\"", "members in byte order of their names"},
             {",\"cid\"", ", \"cid\"", "com_params is not the compact writer's text"},
             {"\\u00eb", "\xC3\xAB", "\"\\u\" for what is not ASCII"},
             {"{\"app_ver\"", "{\"app_ver\":\"\",\"app_ver\"", "com_params is no JSON"},
             {"}}}\n", "}}}\nx", "com_params is no JSON"},
         })
        Expect(ConfigProblems(
                   Get(ConfigTarget(Replaced(ComParams("D1"), c.from, c.to), "{\"rule_id\":0}\n", "1700000000"))),
               c);
    for (const auto& [biz, problem] : std::vector<std::pair<std::string, std::string>>{
             {"{\"rule_id\":7}\n", "\"rule_id\" in biz_params is 7; it must be 0"},
             {"{\"rule_id\":\"0\"}\n", "\"rule_id\" in biz_params is a string; it must be the integer 0"},
             {"{\"rule_id\":false}\n", "is a boolean; it must be the integer 0"},
             {"{}\n", "biz_params lacks \"rule_id\""},
             {"{\"more\":1,\"rule_id\":0}\n", "biz_params has \"more\""},
             {"{\"rule_id\": 0}\n", "biz_params is not the compact writer's text"},
             {"[]\n", "biz_params is an array; it must be an object"},
             {"", "biz_params is no JSON"},
             {std::string(5000, '['), "biz_params is no JSON"},
         })
        EXPECT_THAT(ConfigProblems(Get(ConfigTarget(ComParams("D1"), biz, "1700000000"))),
                    ElementsAre(HasSubstr(problem)))
            << biz;
}

TEST(DevServerConfigProtocol, SaysWhatTheTransportBreaks) {
    for (const auto& [header, problem] : std::vector<std::pair<Header, std::string>>{
             {{"Content-Length", "0"}, "the header \"Content-Length\" tells of a body"},
             {{"content-type", "text/plain"}, "tells of a body"},
             {{"Cookie", "a=b"}, "the header \"Cookie\" is none that the client or its transport sends"},
             {{"HOST", "other"}, "there are 2 Host headers"},
         }) {
        Request request = ConfigFetch("D1");
        request.headers.push_back(header);
        EXPECT_THAT(ConfigProblems(request), ElementsAre(HasSubstr(problem))) << header.first;
    }
    Request request = ConfigFetch("D1");
    request.method = "POST";
    request.version = "HTTP/1.0";
    request.headers.clear();
    EXPECT_THAT(ConfigProblems(request),
                ElementsAre("the method is POST; it must be GET", "the version is HTTP/1.0; it must be HTTP/1.1",
                            "there are 0 Host headers; there must be one"));
}

TEST(DevServerTraceIdProtocol, ChecksTheQueryAndIssuesSoundIds) {
    for (const Case& c : std::vector<Case>{
             {"count=30", "count=1", ""},
             {"buzid=30045", "buzid=", ""},
             {"count=30", "count=0", "count is \"0\"; it must be a decimal number from 1 to 10000"},
             {"count=30", "count=10001", "count is \"10001\""},
             {"count=30", "count=+3", "count is \"+3\""},
             {"setid=0", "setid=1", "setid is \"1\"; it must be 0"},
             {"pritype=0", "pritype=", "pritype is \"\"; it must be 0"},
             {"pubtype=1", "pubtype=0", "pubtype is \"0\"; it must be 1"},
             {"buzid=30045", "buzid=3%30", "the values are sent without any encoding"},
             {"&count=30", "&count=30&r=1", "the query holds"},
         }) {
        const std::string target = Replaced(TraceIdFetch().target, c.from, c.to);
        Expect(CheckTraceIdRequest(Get(target), SplitTarget(target)).problems, c);
    }

    const Request request = TraceIdFetch();
    const std::vector<std::string> ids = IssueTraceIds(CheckTraceIdRequest(request, SplitTarget(request.target)), kNow);
    EXPECT_EQ(std::set<std::string>(ids.begin(), ids.end()).size(), 30u);
    for (const std::string& id : ids) {
        EXPECT_TRUE(IsIssuedTraceId(id)) << id;
        // 30045 from its lowest bit on, then the type, then the time.
        EXPECT_EQ(id.substr(0, 18), "KGU00000w000002fOG");
    }
    const std::string id = ids.front();
    for (const std::string& other : {id.substr(1), "-" + id.substr(1), id.substr(0, 31) + "2"})  // a device's own
        EXPECT_FALSE(IsIssuedTraceId(other)) << other;
}

}  // namespace
}  // namespace OrvaneDevServer
