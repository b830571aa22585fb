#include "Base/TaskSystem/TaskSystem.h"

#include <gmock/gmock.h>

#include "Base/QuernCommon.h"
#include "Orvane/RunTime.h"
#include "Support/CapturedConsole.h"
#include "Support/FakeInfoDictionary.h"

namespace {

std::vector<std::string> g_heard;

// A class that grows between the starts: none, without methods, with the first, with both.
TEST(TaskSystem, StartsWhatTheClassHas) {
    OrvaneTest::FakeInfoDictionary manifest;
    manifest.Set("CFBundleIdentifier", manifest.Text("com.example.game"));
    Quern::QuernCommon::GetInstance()->SetUserInfo("7", "someone");
    orvane_class* const helper = orvane_class_allocate("KTransceiverHelper");
    const auto init = [](orvane_object* self, const char*, void* const* arguments) -> void* {
        for (int i = 0; i < 3; ++i)
            g_heard.push_back(self ? "an instance" : static_cast<const char*>(arguments[i]));
        return nullptr;
    };
    const auto start = [](orvane_object*, const char* selector, void* const*) -> void* {
        g_heard.push_back(selector);
        return nullptr;
    };
    const std::vector<std::string> kLines = {"Error KTransceiverHelper class not exist",
                                             "Error KTransceiverHelper: can not find init method in current project.",
                                             "Info KTransceiverHelper: invoke init",
                                             "Error KTransceiverHelper: can not find start method in current project.",
                                             "Info KTransceiverHelper: invoke init",
                                             "Info KTransceiverHelper: invoke start"};
    OrvaneTest::CapturedConsole console;
    Orvane::TaskSystem::GetInstance()->Start();
    orvane_class_register(helper);
    Orvane::TaskSystem::GetInstance()->Start();
    orvane_class_add_class_method(helper, "init:appID:baseUrl:", init);
    Orvane::TaskSystem::GetInstance()->Start();
    EXPECT_THAT(g_heard, testing::ElementsAre("someone", "com.example.game", ""));
    orvane_class_add_class_method(helper, "start", start);
    manifest.Set("OrvaneCore", "TransceiverUrl", manifest.Text(" http://here "));
    Orvane::TaskSystem::GetInstance()->Start();
    EXPECT_THAT(std::vector<std::string>(g_heard.begin() + 3, g_heard.end()),
                testing::ElementsAre("someone", "com.example.game", "http://here", "start"));

    std::vector<std::string> said, inits;
    for (const std::string& line : console.Take()) {
        if (line.find("KTransceiver") != std::string::npos) said.push_back(line);
        if (line.find("HollinTransceiver") != std::string::npos) inits.push_back(line);
    }
    EXPECT_EQ(said, kLines);
    EXPECT_EQ(inits.size(), 4u);
    EXPECT_EQ(inits.back(),
              "Info HollinTransceiverHelper init openid someone, bundleid com.example.game, url:http://here");
}

}  // namespace
