// The client of this process against a server of this process.
#ifndef ORVANE_TESTS_BASE_CONFIGURE_CONFIGURE_FIXTURE_H
#define ORVANE_TESTS_BASE_CONFIGURE_CONFIGURE_FIXTURE_H

#include "Base/Configure/ConfigureImpl.h"
#include "Support/ConfigServer.h"
#include "Support/FakeInfoDictionary.h"
#include "Support/FakeKeychain.h"
#include "Support/FakePlugins.h"
#include "Support/FakeReachability.h"
#include "Support/FaultProxy.h"
#include "Support/Test.h"
#include "System/Application/MainRunLoop.h"
#include "System/WWW/Task/WWWTaskBase.h"

namespace OrvaneTest {

// Without retries, unless a test takes them from the manifest.
class ConfigureFixture : public testing::Test {
protected:
    enum State { kInited = 1, kRequesting, kFinished, kFailed };

    ConfigureFixture() {
        manifest.Set("OrvaneCore", "RemoteConfigUrl", FakeInfoDictionary::Text(proxy.Url("").c_str()));
        UseRetries(0);
        InstallCorePlugin();
    }
    ~ConfigureFixture() override {
        Orvane::ReleaseConfigureInstance();
        EXPECT_EQ(server.Problems(), "");
    }

    void UseRetries(int count) {
        manifest.Set("OrvaneCore", "RemoteConfigMaxRetryCount", FakeInfoDictionary::Integer(count));
    }
    static Orvane::ConfigureImpl& Client() {
        return dynamic_cast<Orvane::ConfigureImpl&>(*Orvane::Configure::GetInstance());
    }
    const std::vector<std::string>& Lines() {
        const std::vector<std::string> more = console.Take();
        return lines.insert(lines.end(), more.begin(), more.end()), lines;
    }
    // A loss of the network changes nothing, and tells the state.
    int StateNow() {
        Client().OnNetworkStateChanged(Quern::kANetworkNotReachable);
        Lines();
        const auto told = std::find_if(lines.rbegin(), lines.rend(),
                                       [](const std::string& line) { return line.starts_with("Info ANetworkState"); });
        return told == lines.rend() ? -1 : told->back() - '0';
    }
    // How often a store was written.
    long Saves(const char* file = "RemoteConfig.config") const {
        return std::count_if(keychain->calls.begin(), keychain->calls.end(), [file](const std::string& call) {
            return call.starts_with("add ") && call.find(file) != std::string::npos;
        });
    }
    // As its task hands an answer over.
    static void Deliver(const std::string& answer) {
        Client().OnDataTaskFinished(nullptr, Quern::kWWWErrorNone, 200, answer.data(), std::ssize(answer));
    }
    // Waits until the client is in that state and no answer is being delivered any more.
    bool WaitForState(int state) {
        const bool isThere = WaitFor([&] { return StateNow() == state; });
        const Quern::CCritical delivered(Quern::WWWTaskBase::_sMutex);
        return isThere;
    }
    // Lets the answer go that was ordered to be held. A request is counted before it is held.
    bool ReleaseAnswer() {
        return WaitFor([&] { return server.Release(), StateNow() != kRequesting; });
    }
    bool WaitForAsked(size_t count, std::chrono::milliseconds deadline = kDeadline) {
        return WaitFor([&] { return server.Asked() >= count; }, deadline);
    }
    static std::string Read(const char* key, const char* module = "Game") {
        return Client().GetString(module, key, "-").c_str();
    }

    const std::shared_ptr<FakeKeychain> keychain = FakeKeychain::Install();
    const std::shared_ptr<FakeReachability> network = FakeReachability::Install();
    FakeInfoDictionary manifest;
    ConfigServer server;
    FaultProxy proxy{server.Port()};
    CapturedConsole console;
    std::vector<std::string> lines;
};

}  // namespace OrvaneTest

#endif
