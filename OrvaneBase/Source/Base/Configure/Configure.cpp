#include "Base/Configure/Configure.h"

#include <atomic>

namespace Orvane {
namespace {

// Serves while no client of the configuration server is in force: every read gives the caller's default.
class DefaultsOnly final : public Configure {
public:
    void Start() override {}
    int GetInt(const char*, const char*, int defaultValue) override { return defaultValue; }
    long long GetLong(const char*, const char*, long long defaultValue) override { return defaultValue; }
    double GetDouble(const char*, const char*, double defaultValue) override { return defaultValue; }
    bool GetBool(const char*, const char*, bool defaultValue) override { return defaultValue; }
    Quern::AString GetString(const char*, const char*, const char* defaultValue) override { return {defaultValue}; }
    void AddObserver(const char*, ConfigureObserver*) override {}
    void RemoveObserver(const char*) override {}
    void StartOnce() override {}
    void SetUrl(const char*) override {}
    void Clear() override {}
};

std::atomic<Configure*> g_inForce{nullptr};

}  // namespace

Configure* Configure::GetInstance() {
    static Configure* defaults = new DefaultsOnly;  // never destroyed: read from threads that outlive static objects
    Configure* inForce = g_inForce.load(std::memory_order_acquire);
    return inForce ? inForce : defaults;
}

void Configure::Use(Configure* configure) {
    g_inForce.store(configure, std::memory_order_release);
}

}  // namespace Orvane
