// A network that a test describes, in force for the rest of the process.
#ifndef ORVANE_TESTS_SUPPORT_FAKE_REACHABILITY_H
#define ORVANE_TESTS_SUPPORT_FAKE_REACHABILITY_H

#include "Support/Test.h"
#include "System/Network/ReachabilitySource.h"
#include "System/Network/WifiSource.h"

namespace OrvaneTest {

class FakeReachability final : public Quern::ReachabilitySource {
public:
    static constexpr uint32_t kNone = 0;
    static constexpr uint32_t kWifi = Quern::kSCNetworkReachabilityFlagsReachable;
    static constexpr uint32_t kCellular = kWifi | Quern::kSCNetworkReachabilityFlagsIsWWAN;

    static std::shared_ptr<FakeReachability> Install() {
        auto source = std::make_shared<FakeReachability>();
        Use(source);
        return source;
    }

    std::shared_ptr<Quern::SCNetworkReachability> CreateWithAddress(const IPv4Address& address) override {
        return Make(std::to_string(address[0]) + "." + std::to_string(address[1]));
    }
    std::shared_ptr<Quern::SCNetworkReachability> CreateWithName(const char* name) override {
        return name ? Make(name) : nullptr;
    }

    // What the platform would do at a change: the flags are those from now on, and every watch is told.
    void Change(uint32_t to) {
        flags = to;
        for (const auto& target : _targets)
            if (target->isScheduled && target->callback) target->callback(to);
    }
    int Watches() const {
        int count = 0;
        for (const auto& target : _targets)
            count += target->isScheduled;
        return count;
    }

    std::atomic<uint32_t> flags{kNone};
    std::atomic<bool> isFailing{false};  // reads fail
    std::vector<std::string> made;       // what each target was made of

private:
    struct Target final : Quern::SCNetworkReachability {
        explicit Target(FakeReachability* of) : source(of) {}
        bool GetFlags(uint32_t& into) override {
            if (source->isFailing) return false;
            into = source->flags;
            return true;
        }
        void SetCallback(Callback called) override { callback = std::move(called); }
        bool ScheduleWithRunLoop() override { return isScheduled = true; }
        void UnscheduleFromRunLoop() override { isScheduled = false; }
        FakeReachability* const source;
        Callback callback;
        bool isScheduled = false;
    };

    std::shared_ptr<Quern::SCNetworkReachability> Make(const std::string& of) {
        const std::lock_guard<std::mutex> guard(_lock);
        made.push_back(of);
        _targets.push_back(std::make_shared<Target>(this));
        return _targets.back();
    }

    std::mutex _lock;  // over the making, which may be by several threads at once
    std::vector<std::shared_ptr<Target>> _targets;
};

class FakeWifi final : public Quern::WifiSource {
public:
    static std::shared_ptr<FakeWifi> Install() {
        auto source = std::make_shared<FakeWifi>();
        Use(source);
        return source;
    }

    std::vector<std::string> CNCopySupportedInterfaces() override { return {"wlan0", "wlan1"}; }
    NetworkInfo CNCopyCurrentNetworkInfo(const std::string& interface) override {
        return interface == "wlan0" ? NetworkInfo{} : info;
    }

    NetworkInfo info;  // of "wlan1"; "wlan0" is in no network
};

}  // namespace OrvaneTest

#endif
