#include "Base/TaskSystem/TaskSystem.h"

#include "Base/QuernCommon.h"
#include "Orvane/RunTime.h"
#include "Support/FakeInfoDictionary.h"
#include "Support/Test.h"

namespace {

OrvaneTest::CapturedConsole* g_console;
std::vector<std::string> g_heard;  // calls and lines, in their order

void HearLines() {
    for (const std::string& line : g_console->Take())
        if (line.find("TransceiverHelper") != std::string::npos) g_heard.push_back(line);
}

void* Hear(orvane_object* self, const char* selector, void* const* arguments) {
    HearLines();
    g_heard.push_back(self ? "an instance" : selector);
    for (int i = 0; arguments && i < 3; ++i)
        g_heard.push_back(static_cast<const char*>(arguments[i]));
    return nullptr;
}

// A class that grows between the starts: none, without methods, with the first, with both.
TEST(TaskSystem, StartsWhatTheClassHas) {
    OrvaneTest::FakeInfoDictionary manifest;
    manifest.Set("CFBundleIdentifier", manifest.Text("com.example.game"));
    Quern::QuernCommon::GetInstance()->SetUserInfo("7", "someone");
    orvane_class* const helper = orvane_class_allocate("KTransceiverHelper");
    OrvaneTest::CapturedConsole console;
    g_console = &console;
    const auto start = [] {
        Orvane::TaskSystem::GetInstance()->Start();
        HearLines();
        return std::exchange(g_heard, {});
    };
    const std::string init = "Info HollinTransceiverHelper init openid someone, bundleid com.example.game, url:";
    const std::string of = "Error KTransceiverHelper", invoke = "Info KTransceiverHelper: invoke ";
    EXPECT_THAT(start(), testing::ElementsAre(init, of + " class not exist"));
    orvane_class_register(helper);
    EXPECT_THAT(start(), testing::ElementsAre(init, of + ": can not find init method in current project."));
    orvane_class_add_class_method(helper, "init:appID:baseUrl:", Hear);
    EXPECT_THAT(start(), testing::ElementsAre(init, "init:appID:baseUrl:", "someone", "com.example.game", "",
                                              invoke + "init", of + ": can not find start method in current project."));
    orvane_class_add_class_method(helper, "start", Hear);
    manifest.Set("OrvaneCore", "TransceiverUrl", manifest.Text(" http://here "));
    EXPECT_THAT(start(),
                testing::ElementsAre(init + "http://here", "init:appID:baseUrl:", "someone", "com.example.game",
                                     "http://here", invoke + "init", "start", invoke + "start"));
}

}  // namespace
