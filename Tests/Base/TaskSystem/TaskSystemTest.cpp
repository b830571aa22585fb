#include "Base/TaskSystem/TaskSystem.h"

#include <gmock/gmock.h>

#include "Base/QuernCommon.h"
#include "Orvane/RunTime.h"
#include "Support/CapturedConsole.h"
#include "Support/FakeInfoDictionary.h"

namespace {

std::vector<std::string> g_heard;

void* Hear(orvane_object* self, const char* selector, void* const* arguments) {
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
    const auto start = [] {
        OrvaneTest::CapturedConsole console;
        Orvane::TaskSystem::GetInstance()->Start();
        for (const std::string& line : console.Take())
            if (line.find("TransceiverHelper") != std::string::npos) g_heard.push_back(line);
        return std::exchange(g_heard, {});
    };
    const std::string init = "Info HollinTransceiverHelper init openid someone, bundleid com.example.game, url:";
    const std::string of = "Error KTransceiverHelper", invoke = "Info KTransceiverHelper: invoke ";
    EXPECT_THAT(start(), testing::ElementsAre(init, of + " class not exist"));
    orvane_class_register(helper);
    EXPECT_THAT(start(), testing::ElementsAre(init, of + ": can not find init method in current project."));
    orvane_class_add_class_method(helper, "init:appID:baseUrl:", Hear);
    EXPECT_THAT(start(), testing::ElementsAre("init:appID:baseUrl:", "someone", "com.example.game", "", init,
                                              invoke + "init", of + ": can not find start method in current project."));
    orvane_class_add_class_method(helper, "start", Hear);
    manifest.Set("OrvaneCore", "TransceiverUrl", manifest.Text(" http://here "));
    EXPECT_THAT(start(), testing::ElementsAre("init:appID:baseUrl:", "someone", "com.example.game", "http://here",
                                              "start", init + "http://here", invoke + "init", invoke + "start"));
}

}  // namespace
