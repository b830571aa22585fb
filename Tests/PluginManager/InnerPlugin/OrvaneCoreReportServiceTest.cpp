#include "PluginManager/InnerPlugin/OrvaneCoreReportService.h"

#include "Support/FakeConfigure.h"
#include "Support/FakePlugins.h"
#include "Support/Test.h"

namespace {

using Orvane::Plugin::IEvent;
using Orvane::Plugin::OrvaneCoreReportSerivce;
using OrvaneTest::Journal;

class ReportServiceTest : public testing::Test {
protected:
    ~ReportServiceTest() override { OrvaneCoreReportSerivce::ReleaseInstance(); }

    // What the data plugin saw of one event, made with the setting at that value (0: its default).
    Journal Calls(int dataType, int setting = 0) {
        OrvaneCoreReportSerivce::ReleaseInstance();  // the setting is read once an object
        if (setting) configure.Set("Orvane", "ReportDataType", std::to_string(setting));
        journal.clear();
        OrvaneCoreReportSerivce* service = OrvaneCoreReportSerivce::GetInstance();
        if (IEvent* event = service->CreateEvent(dataType, 2000, "E")) service->DestroyEvent(&event);
        return journal;
    }

    OrvaneTest::FakeConfigure configure;
    OrvaneTest::CapturedConsole console;
    Journal journal;
};

TEST_F(ReportServiceTest, TheDataTypeRule) {
    OrvaneTest::FakePell pell(&journal);
    struct {
        int setting, dataType;
        bool passes;
        int types, common;
    } const kCases[] = {
        {0, 1, false, 0, 0}, {0, 2, true, 2, 0}, {0, 3, true, 3, 0},  {1, 1, true, 1, 1},
        {1, 2, true, 3, 0},  {1, 3, true, 3, 1}, {1, 4, false, 0, 0}, {4, 1, false, 0, 0},
        {4, 4, true, 4, 0},  {4, 6, true, 6, 0}, {5, 5, true, 5, 1},  {4, 0, false, 0, 0},
    };
    for (const auto& one : kCases) {
        SCOPED_TRACE(testing::Message() << "setting " << one.setting << ", data type " << one.dataType);
        const Journal calls = Calls(one.dataType, one.setting);
        if (!one.passes) {
            EXPECT_THAT(calls, IsEmpty());
            EXPECT_THAT(console.Take(),
                        Contains(OrvaneTest::Format("Info do not report, ReportDataType : %d, currentDataType : %d",
                                                    one.setting ? one.setting : 2, one.dataType)));
        } else {
            EXPECT_THAT(calls, ElementsAre("create 2000 E", OrvaneTest::Format("add 100001=%d", one.types),
                                           OrvaneTest::Format("add 100002=%d", one.common), "destroy"));
        }
    }
}

TEST_F(ReportServiceTest, TheSettingIsReadOnceUnlessItIsMinusOne) {
    OrvaneTest::FakePell pell(&journal);
    OrvaneCoreReportSerivce* service = OrvaneCoreReportSerivce::GetInstance();
    const auto passes = [&](int dataType) {
        IEvent* event = service->CreateEvent(dataType, 1, "E");
        const bool passed = event != nullptr;
        if (event) service->DestroyEvent(&event);
        return passed;
    };
    configure.Set("Orvane", "ReportDataType", "-1");
    EXPECT_TRUE(passes(8)) << "every bit is set in -1";
    configure.Set("Orvane", "ReportDataType", "1");
    EXPECT_FALSE(passes(8));
    configure.Set("Orvane", "ReportDataType", "8");
    EXPECT_FALSE(passes(8));
}

TEST_F(ReportServiceTest, ALoginPutsTheAccountOnTheEvent) {
    OrvaneTest::FakePell pell(&journal);
    OrvaneTest::FakeRavel ravel;
    EXPECT_THAT(Calls(2), ElementsAre("create 2000 E", "add 100001=2", "add 100002=0", "add 100000=7",
                                      "add 110002='someone'", "destroy"));
    // As long as the buffer, and so without a terminator.
    ravel.openId = std::string(Orvane::Plugin::Ravel::RavelAccount::kOpenIDSize, 'x');
    EXPECT_THAT(Calls(2), Contains("add 110002='" + ravel.openId + "'"));
    ravel.openId = "";
    EXPECT_THAT(Calls(2), Contains("add 110002=''"));
}

TEST_F(ReportServiceTest, WithoutALoginTheEventGoesOn) {
    OrvaneTest::FakePell pell(&journal);
    const auto bare = ElementsAre("create 2000 E", "add 100001=2", "add 100002=0", "destroy");
    EXPECT_THAT(Calls(2), bare);
    EXPECT_THAT(console.Take(), Contains("Debug ICadmoPlugin is null"));
    {
        OrvaneTest::FakePlugin empty("RAVEL");
        EXPECT_THAT(Calls(2), bare);
        EXPECT_THAT(console.Take(), Contains("Error Account Service is null"));
    }
    OrvaneTest::FakeRavel ravel;
    ravel.loggedIn = false;
    EXPECT_THAT(Calls(2), bare);
    EXPECT_THAT(console.Take(), Contains("Debug Get LoginRet fail!"));
}

TEST_F(ReportServiceTest, WithoutTheDataPluginThereIsNoEvent) {
    OrvaneCoreReportSerivce* service = OrvaneCoreReportSerivce::GetInstance();
    EXPECT_EQ(service->CreateEvent(2, 5, nullptr), nullptr);
    EXPECT_THAT(console.Take(),
                ElementsAre("Debug OrvaneCoreReportSerivce::CreateEvent, dataType : 2, srcID : 5, eventName : null",
                            "Error eventName is null"));
    EXPECT_EQ(service->CreateEvent(2, 5, "E"), nullptr);
    EXPECT_THAT(console.Take(),
                ElementsAre("Debug OrvaneCoreReportSerivce::CreateEvent, dataType : 2, srcID : 5, eventName : E",
                            "Debug ReportDataType : 2, currentDataType : 2",
                            "Warning plugin:RAVEL not exist:", "Debug ICadmoPlugin is null",
                            "Warning plugin:PELL not exist:", "Error PELL plugin is null"));
    IEvent* event = nullptr;
    service->DestroyEvent(&event);
    EXPECT_THAT(console.Take(), ElementsAre("Debug OrvaneCoreReportSerivce::DestroyEvent",
                                            "Warning plugin:PELL not exist:", "Error plugin is null"));

    std::optional<OrvaneTest::FakePell> pell(&journal);
    pell->refuses = true;
    EXPECT_EQ(service->CreateEvent(2, 5, "E"), nullptr);
    EXPECT_THAT(console.Take(), Contains("Error Report event is null"));
    pell->plugin().services.clear();
    EXPECT_EQ(service->CreateEvent(2, 5, "E"), nullptr);
    EXPECT_THAT(console.Take(), Contains("Error pReportService is null"));
    service->DestroyEvent(&event);
    EXPECT_THAT(console.Take(),
                ElementsAre("Debug OrvaneCoreReportSerivce::DestroyEvent", "Error pReportService is null"));
}

}  // namespace
