#include "Base/Configure/Configure.h"

#include <atomic>
#include <cstdio>

#include "Storage/Bundle/BundleImpl.h"

namespace Orvane {
namespace {

// Serves while no client of the configuration server is in force: reads what the client would without an answer.
class ManifestOnly final : public Configure {
public:
    void Start() override {}
    int GetInt(const char* section, const char* key, int defaultValue) override {
        return _bundle.Get(section, key, defaultValue);
    }
    long long GetLong(const char* section, const char* key, long long defaultValue) override {
        return _bundle.Get(section, key, defaultValue);
    }
    // The store keeps no doubles but as texts.
    double GetDouble(const char* section, const char* key, double defaultValue) override {
        const Quern::AString text = _bundle.Get(section, key, "");
        double value = defaultValue;
        return sscanf(text.c_str(), "%lf", &value) == 1 ? value : defaultValue;
    }
    bool GetBool(const char* section, const char* key, bool defaultValue) override {
        return _bundle.Get(section, key, defaultValue);
    }
    Quern::AString GetString(const char* section, const char* key, const char* defaultValue) override {
        return _bundle.Get(section, key, defaultValue);
    }
    void AddObserver(const char*, ConfigureObserver*) override {}
    void RemoveObserver(const char*) override {}
    void StartOnce() override {}
    void SetUrl(const char*) override {}
    void Clear() override {}

private:
    Quern::BundleImpl _bundle{std::unique_ptr<Quern::IniBundle>()};  // the manifest alone
};

std::atomic<Configure*> g_inForce{nullptr};

}  // namespace

Configure* Configure::GetInstance() {
    static Configure* manifest = new ManifestOnly;  // never destroyed: read from threads that outlive static objects
    Configure* inForce = g_inForce.load(std::memory_order_acquire);
    return inForce ? inForce : manifest;
}

void Configure::Use(Configure* configure) {
    g_inForce.store(configure, std::memory_order_release);
}

}  // namespace Orvane
