#include "Base/ReportHandler/ReportHandler.h"

#include "Base/ReportHandler/ConfigureReport.h"
#include "Support/FakeConfigure.h"
#include "Support/FakePlugins.h"
#include "Support/Test.h"

namespace {

using Quern::ReportHandler;

class ReportHandlerTest : public testing::Test {
protected:
    ReportHandlerTest() { OrvaneTest::InstallCorePlugin(); }

    OrvaneTest::FakeConfigure configure;
    OrvaneTest::CapturedConsole console;
    OrvaneTest::Journal journal;
    OrvaneTest::FakePell pell{&journal};
};

TEST_F(ReportHandlerTest, FillsSendsAndGivesBackOneEvent) {
    {
        ReportHandler handler("Event", 2, 7);
        handler.Add("key", "value");
        handler.Add(nullptr, static_cast<const char*>(nullptr));
        handler.Add(1, 2);
        handler.Add(3, "four");
        handler.Add(5, static_cast<const char*>(nullptr));
        handler.Report();
        handler.Report();
    }
    EXPECT_THAT(journal, ElementsAre("create 7 Event", "add 100001=2", "add 100002=0", "add 'key'='value'", "add ''=''",
                                     "add 1=2", "add 3='four'", "add 5=''", "report", "report", "destroy"));
    journal.clear();
    { ReportHandler nameless(nullptr, 2, 7); }
    EXPECT_THAT(journal, Contains("create 7 "));
}

TEST_F(ReportHandlerTest, IsInertWithoutAnEventAndWhereTheSettingSwitchesItOff) {
    for (const bool isOff : {false, true}) {
        if (isOff) configure.Set("OrvaneCore", "PellReportAvailable", "0");
        console.Take();
        ReportHandler handler("Event", isOff ? 2 : 1, 7);  // 1 is refused by the data-type rule
        const std::vector<std::string> told = console.Take();
        EXPECT_TRUE(isOff
                        ? told.empty()
                        : testing::Value(told, IsSupersetOf({"Warning event is null", "Warning createEvent failed"})));
        handler.Add("key", "value");
        handler.Add(1, 2);
        handler.Add(3, "four");
        handler.Report();
    }
    EXPECT_THAT(journal, IsEmpty());
    EXPECT_THAT(console.Take(), IsEmpty());
    configure.Set("OrvaneCore", "PellReportAvailable", "-1");
    { ReportHandler handler("Event", 2, 7); }
    EXPECT_THAT(journal, Not(IsEmpty())) << "read anew at each construction; only 0 switches off";
}

TEST_F(ReportHandlerTest, ConfigureReportSendsItsRecordsByKindAndForgetsThem) {
    Quern::ConfigureReport* report = Quern::ConfigureReport::GetInstance();
    report->RecordUploadResult(-3, "id", "path");
    report->RecordRecieveUploadTask("id", "*.log", nullptr, 512);
    report->RecordPullConfigResult(0, 120, 1);
    report->RecordPullConfigResult(404, 80, 2);
    report->Report();
    EXPECT_THAT(journal, ElementsAre("create 2000 PullConfigResult", "add 100001=2", "add 100002=0", "add 30001=0",
                                     "add 30002=120", "add 30003=1", "report", "destroy",  //
                                     "create 2000 PullConfigResult", "add 100001=2", "add 100002=0", "add 30001=404",
                                     "add 30002=80", "add 30003=2", "report", "destroy",  //
                                     "create 2000 RecieveUploadTask", "add 100001=2", "add 100002=0", "add 30001='id'",
                                     "add 30002='*.log'", "add 30003=''", "add 30004=512", "report", "destroy",  //
                                     "create 2000 UploadResult", "add 100001=2", "add 100002=0", "add 30001=-3",
                                     "add 30002='id'", "add 30003='path'", "add 30004=0", "report", "destroy"));
    journal.clear();
    report->Report();
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(ReportHandlerTest, ConfigureReportIsFedFromAnyThread) {
    std::vector<std::jthread> feeders;
    for (int i = 0; i < 4; ++i)
        feeders.emplace_back([] {
            for (int n = 0; n < 100; ++n)
                Quern::ConfigureReport::GetInstance()->RecordPullConfigResult(n, 0, 0);
        });
    feeders.clear();
    Quern::ConfigureReport::GetInstance()->Report();
    EXPECT_EQ(std::count(journal.begin(), journal.end(), "report"), 400);
}

}  // namespace
