#include "PluginManager/InnerPlugin/Yarrow/TraceIdManager.h"

#include <json/json.h>

#include <bitset>
#include <filesystem>

#include "DevServer/ClientVerdict.h"
#include "DevServer/DevServer.h"
#include "DevServer/HostileJson.h"
#include "PluginManager/InnerPlugin/Yarrow/YarrowUtil.h"
#include "Support/FakeInfoDictionary.h"
#include "Support/HttpServer.h"
#include "Support/WaitFor.h"
#include "System/Thread/Time.h"
#include "Yarrow/TraceFixture.h"

namespace {

using namespace Orvane::Plugin;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAreArray;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
namespace fs = std::filesystem;

// The bits of a text of the alphabet, by position.
std::vector<bool> Bits(const std::string& text) {
    const std::string alphabet = "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ+_";
    std::vector<bool> bits;
    for (const char one : text)
        for (int weight = 32; weight; weight /= 2)
            bits.push_back((alphabet.find(one) & static_cast<size_t>(weight)) != 0);
    return bits;
}

uint64_t Field(const std::string& text, size_t first, size_t last) {
    const std::vector<bool> bits = Bits(text);
    uint64_t value = 0;
    for (size_t at = last + 1; at-- > first;)
        value = value * 2 + bits[at];
    return value;
}

std::string Number(size_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(value >> shift);
    return bytes;
}

std::string Stock(const std::vector<std::string>& ids) {
    std::string bytes = Number(ids.size());
    for (const std::string& id : ids)
        bytes += Number(id.size()) + id;
    return bytes;
}

class TraceIds : public OrvaneTest::TraceFixture {
protected:
    TraceIds() { Set("YarrowUrl", "http://127.0.0.1:1/ids"); }

    int Requests(std::vector<std::string> lines) const {
        return static_cast<int>(std::count_if(lines.begin(), lines.end(), [](const std::string& line) {
            return line.find("requestTraceIdList url:") != std::string::npos;
        }));
    }
};

TEST_F(TraceIds, EverySpanIdFieldHasItsPlace) {
    TraceIdManager manager;
    char id[13] = "untouched";
    EXPECT_FALSE(manager.GenSpanId(id, 11));
    EXPECT_FALSE(manager.GenSpanId(nullptr, 12));
    EXPECT_STREQ(id, "untouched");
    std::set<uint64_t> randoms;
    for (unsigned sequence = 1; sequence <= 65537; ++sequence) {
        const auto before = static_cast<uint64_t>(Quern::CTime::GetCurTime());
        ASSERT_TRUE(manager.GenSpanId(id, 12));
        if (sequence > 40 && sequence < 65530) continue;
        ASSERT_EQ(strlen(id), 11u);
        EXPECT_THAT(Field(id, 0, 31), testing::AllOf(testing::Ge(before), testing::Le(before + 2)));
        EXPECT_EQ(Field(id, 48, 63), sequence & 0xFFFF);
        EXPECT_EQ(Field(id, 64, 65), 0u);
        randoms.insert(Field(id, 32, 47));
    }
    EXPECT_GT(randoms.size(), 40u) << "srand, called for each with the time, must not set it back";
    std::bitset<66> bits;
    bits.set(0).set(11).set(65);
    YarrowUtil::Bit2Base64(id, 12, bits);
    EXPECT_STREQ(id, "w1000000001");
}

TEST_F(TraceIds, EveryStandInFieldHasItsPlace) {
    OrvaneTest::FakeInfoDictionary info;
    info.Set("Orvane", "GameId", info.Text("4886718345"));  // 0x123456789: beyond 32 bits
    TraceIdManager manager;
    const std::string id = manager.genFakeTraceId(0x8001, 0x4003).c_str();
    ASSERT_EQ(id.size(), 32u);
    EXPECT_EQ(Field(id, 0, 31), 0x23456789u);
    EXPECT_EQ(Field(id, 32, 47), 0u);
    EXPECT_EQ(Field(id, 48, 63), 0x4003u);
    EXPECT_EQ(Field(id, 64, 79), 0x8001u);
    EXPECT_NEAR(static_cast<double>(Field(id, 80, 111)), static_cast<double>(Quern::CTime::GetCurTime()), 2);
    EXPECT_EQ(Field(id, 112, 150), 0u);
    EXPECT_EQ(Field(id, 151, 191), uint64_t{1} << (190 - 151));
    EXPECT_EQ(id.back(), '2');
    const std::string own = manager.GetTraceId().c_str();
    EXPECT_EQ(Field(own, 48, 79), 1u);
}

TEST_F(TraceIds, OneIsTakenFromTheStockAndMoreAreAskedForWhenFewAreLeft) {
    const std::vector<std::string> seven = {"first", "2", "3", "4", "5", "6", "7"};
    const std::string beyond = Number(3) + Number(2) + "ok" + Number(1u << 30);
    struct {
        const char* what;
        std::string file;
        std::string id;     // "" for a stand-in
        std::string after;  // of the file
        bool isRefilled;
    } const kCases[] = {
        {"six: five are left", Stock({"first", "2", "3", "4", "5", "6"}), "first", Stock({"2", "3", "4", "5", "6"}),
         true},
        {"seven: six are left", Stock(seven), "first", Stock({"2", "3", "4", "5", "6", "7"}), false},
        {"a server's oddities stay", Stock({"a-b", std::string("z\0z", 3)}), "a-b", Stock({std::string("z\0z", 3)}),
         true},
        {"empty file", "", "", "", true},
        {"no ids", Number(0), "", Number(0), true},
        {"cut in the count", std::string("\0\0", 2), "", Number(0), true},
        {"a count beyond the file", Number(0x7FFFFFFF) + Number(2) + "ok", "ok", Number(0), true},
        {"a negative count", Number(0xFFFFFFFF) + Number(2) + "ok", "", Number(0), true},
        {"a length beyond the file", beyond, "ok", Stock({""}), true},
        {"an empty id in front", Stock({"", "second"}), "", Stock({"second"}), true},
        {"more than any stock", std::string((4 << 20) + 1, '\0'), "", std::string((4 << 20) + 1, '\0'), true},
    };
    for (const auto& one : kCases) {
        SCOPED_TRACE(one.what);
        OrvaneTest::WriteFile(stock, one.file);
        TraceIdManager manager;
        console.Take();
        const std::string id = manager.GetTraceId().c_str();
        EXPECT_THAT(id, one.id.empty() ? testing::MatchesRegex(".{31}2") : testing::MatchesRegex(one.id));
        EXPECT_EQ(OrvaneTest::ReadFile(stock), one.after);
        EXPECT_EQ(Requests(console.Take()), one.isRefilled);
        fs::remove(stock);
        EXPECT_EQ(manager.GetTraceId().c_str(), id) << "one for the run";
        EXPECT_FALSE(fs::exists(stock)) << "and nothing touched for it";
    }
    TraceIdManager manager;
    manager.GetTraceId();
    EXPECT_TRUE(fs::exists(stock)) << "made where there was none";
    fs::remove(stock);
    fs::create_directory(stock);
    TraceIdManager refused;
    EXPECT_THAT(refused.GetTraceId().c_str(), EndsWith("2"));
    EXPECT_THAT(console.Take(), Contains("Warning [Yarrow] traceIdStore not exist"));
    Quern::AArray ids;
    EXPECT_FALSE(refused.appendTraceIdSettoFile(&ids));
    EXPECT_FALSE(refused.appendTraceIdSettoFile(nullptr));
    EXPECT_THAT(console.Take(), Contains("Info [Yarrow] traceIdStore open fail"));
}

TEST_F(TraceIds, AnAnswerIsTakenWholeOrNotAtAll) {
    using namespace OrvaneDevServer;
    std::vector<HostileDocument> documents = HostileDocuments(Protocol::kTraceIds);
    const std::string good = TraceIdAnswer({"id1", "id2", "id3"});
    for (uint64_t seed = 0; seed < 2000; ++seed)
        documents.push_back({"seed " + std::to_string(seed), Mutate(good, seed)});
    TraceIdManager manager;
    for (const HostileDocument& document : documents) {
        OrvaneTest::WriteFile(stock, "as it was");
        Quern::AArray ids;
        OrvaneDevServer::Answer answer;
        answer.body = document.text;
        const bool isTaken =
            manager.parseTraceIdData(&ids, document.text.data(), static_cast<int>(document.text.size()));
        EXPECT_EQ(isTaken, TraceIdVerdict(answer).find("will add ") == 0) << document.name << ": " << document.text;
        EXPECT_EQ(ids.Count() > 0, isTaken);
        console.Take();
        manager.OnDataTaskFinished(nullptr, Quern::kWWWErrorNone, 500, document.text.data(),
                                   static_cast<long long>(document.text.size()));
        EXPECT_EQ(OrvaneTest::ReadFile(stock) == "as it was", !isTaken) << document.name;
        EXPECT_THAT(console.Take(), Contains("Warning [Yarrow] parseTraceIdData fail").Times(isTaken ? 0 : 1));
    }
    const std::pair<std::string, std::string> kLines[] = {
        {"{", "parse json object fail"},
        {"[]", "[Yarrow] json is not Object"},
        {R"({"retcode":0,"result":{}})", "parseTraceIdData check member failed"},
        {R"({"retcode":7,"retmsg":"no","result":{}})", "parseTraceIdData retcode:7"},
        {R"({"retcode":0,"retmsg":"","result":{"count":1}})", "parseTraceIdData check member failed"},
        {R"({"retcode":0,"retmsg":"","result":{"count":0,"traceids":[]}})", "parseTraceIdData invalid param count:0"},
        {R"({"retcode":0,"retmsg":"","result":{"count":3,"traceids":["a","b"]}})",
         "parseTraceIdData count error, count:3, traceids.size():2"},
    };
    for (const auto& [text, line] : kLines) {
        Quern::AArray ids;
        EXPECT_FALSE(manager.parseTraceIdData(&ids, text.data(), static_cast<int>(text.size())));
        EXPECT_THAT(console.Take(), Contains(AllOf(StartsWith("Warning "), EndsWith(line)))) << text;
    }
    EXPECT_FALSE(manager.parseTraceIdData(nullptr, "{}", 2));
    manager.OnDataTaskFinished(nullptr, Quern::kWWWErrorTimedOut, 0, nullptr, 0);
    EXPECT_THAT(console.Take(), Contains("Warning [Yarrow] TraceService::OnDataTaskFinished Invalid params"));
}

// The server on the desk, in its strict mode, over HTTP: every request is checked to the byte.
TEST_F(TraceIds, ARefillServesTheNextRunAlsoWhenItComesLate) {
    OrvaneDevServer::ServerOptions options;
    options.folder = OrvaneTest::CacheFolder() + "/server";
    options.isStrict = true;
    OrvaneDevServer::DevServer desk(options);
    std::string error;
    ASSERT_TRUE(desk.Open(error)) << error;
    std::atomic<bool> isHeld{true};
    OrvaneTest::HttpServer server([&](const OrvaneTest::HttpRequest& http) {
        OrvaneTest::WaitFor([&] { return !isHeld; });
        OrvaneDevServer::Request request{http.method, http.target, "HTTP/1.1", {}, http.body, {}};
        for (size_t at = http.head.find("\r\n") + 2, end; (end = http.head.find("\r\n", at)) != std::string::npos;
             at = end + 2) {
            const std::string line = http.head.substr(at, end - at);
            request.headers.emplace_back(line.substr(0, line.find(": ")), line.substr(line.find(": ") + 2));
        }
        return OrvaneTest::HttpAnswer("500 Yet sound", desk.Handle(request).body);
    });
    OrvaneTest::FakeInfoDictionary info;
    info.Set("Orvane", "GameId", info.Text("30045"));
    Set("YarrowUrl", server.Url("/traceids"));
    OrvaneTest::WriteFile(stock, Stock({"mine", "left"}));
    {
        TraceIdManager manager;
        EXPECT_STREQ(manager.GetTraceId().c_str(), "mine");
        EXPECT_EQ(OrvaneTest::ReadFile(stock), Stock({"left"}));
        manager.requestTraceIdList(1);  // one request at a time
        isHeld = false;
        ASSERT_TRUE(OrvaneTest::WaitFor([&] { return OrvaneTest::ReadFile(stock).size() > 1000; }));
        EXPECT_STREQ(manager.GetTraceId().c_str(), "mine");
    }
    ASSERT_EQ(server.Requests().size(), 1u);
    EXPECT_EQ(server.Requests()[0].target, "/traceids?buzid=30045&setid=0&pritype=0&pubtype=1&count=30");
    EXPECT_EQ(OrvaneTest::ReadFile(stock).substr(0, 12), Number(31) + Number(4) + "left");
    TraceIdManager next;
    EXPECT_STREQ(next.GetTraceId().c_str(), "left");
    TraceIdManager third;
    EXPECT_EQ(third.GetTraceId().length(), 32);
    EXPECT_NE(third.GetTraceId().c_str()[31], '2');
    isHeld = true;
    {
        Set("YarrowLowerLimit", "100");
        TraceIdManager leaving;  // with a request under way
        leaving.GetTraceId();
        ASSERT_TRUE(OrvaneTest::WaitFor([&] { return server.Requests().size() == 2; }));
    }
    isHeld = false;
}

TEST_F(TraceIds, TheSettingsAreToldAsTheyAreNow) {
    Set("YarrowStoreFilename", "../../escape");
    TraceIdManager manager;
    EXPECT_THAT(console.Take(), Contains("Info [Yarrow] TraceConfig LowerLimit:5, UpperLimit:60, RequestCount:30, "
                                         "StoreFileName:" +
                                         stock));
    Set("YarrowEnable", "false");
    Set("YarrowUrl", "http://u");
    Set("YarrowUpperLimit", "9");
    manager.DumpCloudCtrlData();
    EXPECT_THAT(
        console.Take(),
        ElementsAreArray({"Info [Yarrow][YarrowEnable]:0", "Info [Yarrow][YarrowLowerLimit]:-1",
                          "Info [Yarrow][YarrowUpperLimit]:9", "Info [Yarrow][YarrowRequestCount]:-1",
                          "Info [Yarrow][YarrowStoreFilename]:../../escape", "Info [Yarrow][YarrowUrl]:http://u",
                          "Info [Yarrow][YarrowBackupUrl]:unknown", "Info [Yarrow][YarrowStoreFileEncrypt]:0"}));
}

}  // namespace
