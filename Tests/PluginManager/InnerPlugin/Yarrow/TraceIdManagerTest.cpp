#include "PluginManager/InnerPlugin/Yarrow/TraceIdManager.h"

#include <filesystem>
#include <set>

#include "DevServer/ClientVerdict.h"
#include "DevServer/HostileJson.h"
#include "DevServer/TraceIdProtocol.h"
#include "PluginManager/InnerPlugin/Yarrow/TraceFixture.h"
#include "PluginManager/InnerPlugin/Yarrow/YarrowUtil.h"
#include "Support/HttpServer.h"
#include "Support/WaitFor.h"
#include "System/Thread/Time.h"

namespace {

using OrvaneTest::ReadFile;
using OrvaneTest::WriteFile;
using testing::Contains;
using testing::HasSubstr;
namespace fs = std::filesystem;

// Bits of a text of the alphabet, as the number that has the first of them lowest.
uint64_t Field(const std::string& text, size_t first, size_t last) {
    const std::string alphabet = "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ+_";
    uint64_t value = 0;
    for (size_t at = last + 1; at-- > first;)
        value = value * 2 + (alphabet.find(text.at(at / 6)) >> (5 - at % 6) & 1);
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

using TraceIds = OrvaneTest::TraceFixture;
using Orvane::Plugin::TraceIdManager;

TEST_F(TraceIds, EveryFieldHasItsPlace) {
    TraceIdManager manager;
    char id[13] = "untouched";
    EXPECT_FALSE(manager.GenSpanId(id, 11) || manager.GenSpanId(nullptr, 12));
    EXPECT_STREQ(id, "untouched");
    const double now = static_cast<double>(Quern::CTime::GetCurTime());
    std::set<uint64_t> randoms;
    for (unsigned sequence = 1; sequence <= 65537; ++sequence) {
        ASSERT_TRUE(manager.GenSpanId(id, 12) && strlen(id) == 11);
        if (sequence > 40 && sequence < 65530) continue;
        EXPECT_NEAR(static_cast<double>(Field(id, 0, 31)), now, 30);
        EXPECT_EQ(Field(id, 48, 65), sequence & 0xFFFF);
        randoms.insert(Field(id, 32, 47));
    }
    EXPECT_GT(randoms.size(), 40u) << "srand, called for each with the time, must not set it back";

    const std::string standIn = manager.genFakeTraceId(0x8001, 0x4003).c_str();
    ASSERT_EQ(standIn.size(), 32u);
    EXPECT_EQ(Field(standIn, 0, 47), 0x23456789u);
    EXPECT_EQ(Field(standIn, 48, 79), 0x80014003u);
    EXPECT_NEAR(static_cast<double>(Field(standIn, 80, 111)), now, 30);
    EXPECT_EQ(Field(standIn, 112, 150), 0u);
    EXPECT_EQ(Field(standIn, 151, 191), uint64_t{1} << (190 - 151));
    EXPECT_EQ(Field(manager.GetTraceId().c_str(), 48, 79), 1u);

    std::string alphabet;
    for (const unsigned first : {0u, 32u}) {
        std::bitset<192> bits;
        for (size_t at = 0; at < 192; ++at)
            bits[at] = ((first + at / 6) >> (5 - at % 6) & 1) != 0;
        char text[33];
        Orvane::Plugin::YarrowUtil::Bit2Base64(text, sizeof text, bits);
        alphabet += text;
    }
    EXPECT_EQ(alphabet, "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ+_");
}

TEST_F(TraceIds, OneIsTakenFromTheStockAndMoreAreAskedForWhenFewAreLeft) {
    const std::string tooLarge((4 << 20) + 1, '\0');
    struct {
        const char* what;
        std::string file;
        std::string id;     // "" for a stand-in
        std::string after;  // of the file
        bool isRefilled = true;
    } const kCases[] = {
        {"five are left", Stock({"first", "2", "3", "4", "5", "6"}), "first", Stock({"2", "3", "4", "5", "6"})},
        {"six are left", Stock({"a", "2", "3", "4", "5", "6", "7"}), "a", Stock({"2", "3", "4", "5", "6", "7"}), false},
        {"oddities stay", Stock({"a-b", std::string("z\0z", 3)}), "a-b", Stock({std::string("z\0z", 3)})},
        {"empty file", "", "", ""},
        {"no ids", Number(0), "", Number(0)},
        {"cut in the count", std::string("\0\0", 2), "", Number(0)},
        {"a count beyond the file", Number(0x7FFFFFFF) + Number(2) + "ok", "ok", Number(0)},
        {"a negative count", Number(0xFFFFFFFF) + Number(2) + "ok", "", Number(0)},
        {"a length beyond it", Number(3) + Number(2) + "ok" + Number(1u << 30), "ok", Stock({""})},
        {"one that reads as empty", Stock({std::string("\0ab", 3), "b"}), "", Stock({"b"})},
        {"an empty id in front", Stock({"", "second"}), "", Stock({"second"})},
        {"more than any stock", tooLarge, "", tooLarge},
    };
    for (const auto& one : kCases) {
        SCOPED_TRACE(one.what);
        WriteFile(stock, one.file);
        TraceIdManager manager;
        console.Take();
        const std::string id = manager.GetTraceId().c_str();
        EXPECT_THAT(id, testing::MatchesRegex(one.id.empty() ? ".{31}2" : one.id));
        EXPECT_EQ(ReadFile(stock), one.after);
        EXPECT_THAT(console.Take(), Contains(HasSubstr("requestTraceIdList url:?buzid=")).Times(one.isRefilled));
        fs::remove(stock);
        EXPECT_EQ(manager.GetTraceId().c_str(), id) << "one for the run";
        EXPECT_FALSE(fs::exists(stock)) << "and nothing touched for it";
    }
    TraceIdManager asking;
    console.Take();
    asking.requestTraceIdList(7);
    asking.requestTraceIdList(9);
    EXPECT_THAT(console.Take(), Contains(HasSubstr("requestTraceIdList url:")).Times(1)) << "the task is kept";
    TraceIdManager().GetTraceId();
    EXPECT_TRUE(fs::exists(stock)) << "made where there was none";
    fs::remove(stock);
    fs::create_directory(stock);
    TraceIdManager refused;
    EXPECT_EQ(refused.GetTraceId().length(), 32);
    EXPECT_THAT(console.Take(), Contains("Warning [Yarrow] traceIdStore not exist"));
    Quern::AArray ids;
    EXPECT_FALSE(refused.appendTraceIdSettoFile(&ids) || refused.appendTraceIdSettoFile(nullptr));
}

TEST_F(TraceIds, AnAnswerIsTakenWholeOrNotAtAll) {
    using namespace OrvaneDevServer;
    std::vector<HostileDocument> documents = HostileDocuments(Protocol::kTraceIds);
    documents.push_back({"an error", TraceIdError(7, "no")});
    documents.push_back({"more than a stock holds", TraceIdAnswer({1000, std::string(4191, 'i')})});
    const std::string longest((4 << 20) - TraceIdAnswer({""}).size(), 'i');
    documents.push_back({"as long as is read", TraceIdAnswer({longest})});
    documents.push_back({"longer", TraceIdAnswer({longest + "i"})});
    for (uint64_t seed = 0; seed < 500; ++seed)
        documents.push_back({"seed " + std::to_string(seed), Mutate(TraceIdAnswer({"id1", "id2"}), seed)});
    std::string lines;
    for (const auto& [name, text] : documents) {
        TraceIdManager manager;
        WriteFile(stock, "as it was");
        OrvaneDevServer::Answer answer;
        answer.body = text;
        manager.OnDataTaskFinished(nullptr, Quern::kWWWErrorOther, 500, text.data(),
                                   static_cast<long long>(text.size()));
        EXPECT_EQ(ReadFile(stock) == "as it was", TraceIdVerdict(answer).find("will add ") != 0) << name << text;
        for (const std::string& line : console.Take())
            if (line.find("Warning") == 0) lines += line + "\n";
    }
    for (const char* line :
         {"TraceService::OnDataTaskFinished Invalid params", "parseTraceIdData parse json object fail",
          "json is not Object", "parseTraceIdData check member failed", "parseTraceIdData retcode:7",
          "parseTraceIdData invalid param count:0", "parseTraceIdData fail",
          "parseTraceIdData count error, count:3, traceids.size():2", "parseTraceIdData traceids too large, count:1000",
          "TraceService::OnDataTaskFinished answer is too large:4194305"})
        EXPECT_THAT(lines, HasSubstr(std::string("Warning [Yarrow] ") + line + "\n"));
}

TEST_F(TraceIds, ARefillServesTheNextRunAlsoWhenItComesLate) {
    std::atomic<bool> isHeld{true};
    OrvaneTest::HttpServer server([&](const OrvaneTest::HttpRequest&) {
        OrvaneTest::WaitFor([&] { return !isHeld; });
        return OrvaneTest::HttpAnswer("500 Yet sound", OrvaneDevServer::TraceIdAnswer({"new 1", "new 2"}));
    });
    Set("YarrowUrl", server.Url("/ids"));
    WriteFile(stock, Stock({"mine", "left"}));
    {
        TraceIdManager manager;
        EXPECT_STREQ(manager.GetTraceId().c_str(), "mine");
        EXPECT_EQ(ReadFile(stock), Stock({"left"}));
        isHeld = false;
        EXPECT_TRUE(OrvaneTest::WaitFor([&] { return ReadFile(stock) == Stock({"left", "new 1", "new 2"}); }));
        EXPECT_STREQ(manager.GetTraceId().c_str(), "mine");
    }
    EXPECT_EQ(server.Requests().at(0).target, "/ids?buzid=4886718345&setid=0&pritype=0&pubtype=1&count=30");
    isHeld = true;
    {
        TraceIdManager next;
        EXPECT_STREQ(next.GetTraceId().c_str(), "left");
        ASSERT_TRUE(OrvaneTest::WaitFor([&] { return server.Requests().size() == 2; }));
    }  // with the request under way
    isHeld = false;
    EXPECT_EQ(ReadFile(stock), Stock({"new 1", "new 2"}));
    TraceIdManager last;
    EXPECT_STREQ(last.GetTraceId().c_str(), "new 1");
    EXPECT_TRUE(OrvaneTest::WaitFor([&] {
        return ReadFile(stock) == Stock({"new 2", "new 1", "new 2"});
    })) << "its own answer, and no other";
}

TEST_F(TraceIds, AStockThatCannotBeWrittenStaysAsItWas) {
    const std::string file = Stock({"one", "two", "3", "4", "5", "6", "7", "8"}),
                      answer = OrvaneDevServer::TraceIdAnswer({"9"});
    const std::string path = "Info [Yarrow] traceIdStorePath :" + stock + "\n";
    WriteFile(stock, file);
    fs::create_directories(stock + ".new/occupied");
    TraceIdManager manager;
    const auto told = [this] {
        std::string all;
        for (const std::string& line : console.Take())
            if (line.find("[Yarrow]") != std::string::npos && line.find("Invalid params") == std::string::npos)
                all += line + "\n";
        return all;
    };
    const auto arrive = [&] {
        manager.OnDataTaskFinished(nullptr, Quern::kWWWErrorOther, 200, answer.data(),
                                   static_cast<long long>(answer.size()));
    };
    told();
    EXPECT_STREQ(manager.GetTraceId().c_str(), "one");
    EXPECT_EQ(told(), path +
                          "Debug [Yarrow] read data from traceIdStore len:48\n"
                          "Info [Yarrow] traceId obj size:8\nDebug [Yarrow] after traceId obj size:7\n"
                          "Warning [Yarrow] traceIdStore write fail\nInfo [Yarrow] requestTraceIdList url:"
                          "?buzid=4886718345&setid=0&pritype=0&pubtype=1&count=30\n");
    arrive();
    EXPECT_EQ(told(), "Info [Yarrow] task:(nil), error:1, httpStatus:200, totolSize:" + std::to_string(answer.size()) +
                          ", data:" + answer +
                          "\nInfo [Yarrow] parseTraceIdData retcode:0, retmsg:ok\n"
                          "Info [Yarrow] parseTraceIdData traceid count:1\n"
                          "Info [Yarrow] traceIdStore open fail\nWarning [Yarrow] appendTraceIdSettoFile fail\n");
    EXPECT_EQ(ReadFile(stock), file);
    fs::remove_all(stock + ".new");
    Quern::AArray huge;
    huge.Add(std::string(4 << 20, 'i').c_str());
    EXPECT_FALSE(manager.appendTraceIdSettoFile(&huge));
    arrive();
    EXPECT_EQ(ReadFile(stock), Stock({"two", "3", "4", "5", "6", "7", "8", "9", "9"})) << "nothing of the refused";
    EXPECT_FALSE(fs::exists(stock + ".new"));
    told();
    EXPECT_STREQ(TraceIdManager().GetTraceId().c_str(), "two");
    EXPECT_THAT(told(), testing::EndsWith(
                            path + "Debug [Yarrow] read data from traceIdStore len:51\n"
                                   "Info [Yarrow] traceId obj size:9\nDebug [Yarrow] after traceId obj size:8\n"));
    for (const size_t length : {(4 << 20) - 7, (4 << 20) - 8}) {  // with two numbers of 4 bytes
        Quern::AArray whole;
        whole.Add(std::string(length, 'i').c_str());
        EXPECT_EQ(TraceIdManager().appendTraceIdSettoFile(&whole), length == (4 << 20) - 8) << "the largest stock";
    }
    EXPECT_EQ(TraceIdManager().GetTraceId().length(), (4 << 20) - 8);
}

TEST_F(TraceIds, TheSettingsAreToldAsTheyAreNow) {
    WriteFile(OrvaneTest::CacheFolder() + "/replay", "of the game");
    fs::create_directories(OrvaneTest::CacheFolder() + "/folder");
    for (const char* noName :
         {"", ".", "..", ".hidden", "x.config", "x.mmap3", "x.journal3", "x.zip", "replay", "folder", "../escape"}) {
        Set("YarrowStoreFilename", noName);
        TraceIdManager();
        EXPECT_THAT(console.Take(), Contains("Info [Yarrow] TraceConfig LowerLimit:5, UpperLimit:60, RequestCount:30, "
                                             "StoreFileName:" +
                                             stock));
    }
    TraceIdManager manager;
    console.Take();
    Set("YarrowUpperLimit", "9");
    manager.DumpCloudCtrlData();
    std::string all;
    for (const std::string& line : console.Take())
        all += line.substr(line.rfind("[Yarrow]")) + " ";
    EXPECT_EQ(all,
              "[Yarrow][YarrowEnable]:1 [Yarrow][YarrowLowerLimit]:-1 [Yarrow][YarrowUpperLimit]:9 "
              "[Yarrow][YarrowRequestCount]:-1 [Yarrow][YarrowStoreFilename]:../escape [Yarrow][YarrowUrl]:unknown "
              "[Yarrow][YarrowBackupUrl]:unknown [Yarrow][YarrowStoreFileEncrypt]:0 ");
    for (const auto& [key, value] : {std::pair("LowerLimit", "0"), {"RequestCount", "7"}, {"StoreFilename", "other"}})
        Set(("Yarrow" + std::string(key)).c_str(), value);
    const std::string other = OrvaneTest::CacheFolder() + "/other";
    for (const bool isLast : {false, true}) {
        WriteFile(other, isLast ? Stock({"a"}) : Stock({"a", "b"}));
        EXPECT_STREQ(TraceIdManager().GetTraceId().c_str(), "a");
        EXPECT_THAT(
            console.Take(),
            testing::AllOf(
                Contains("Info [Yarrow] TraceConfig LowerLimit:0, UpperLimit:9, RequestCount:7, "
                         "StoreFileName:" +
                         other),
                Contains(HasSubstr("requestTraceIdList url:?buzid=4886718345&setid=0&pritype=0&pubtype=1&count=7"))
                    .Times(isLast)));
    }
}

}  // namespace
