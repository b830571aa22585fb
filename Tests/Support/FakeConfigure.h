// Settings that a test chooses, in force while the object lives.
#ifndef ORVANE_TESTS_SUPPORT_FAKE_CONFIGURE_H
#define ORVANE_TESTS_SUPPORT_FAKE_CONFIGURE_H

#include <cstdlib>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "Base/Configure/Configure.h"

namespace OrvaneTest {

class FakeConfigure final : public Orvane::Configure {
public:
    FakeConfigure() { Orvane::Configure::Use(this); }
    ~FakeConfigure() override { Orvane::Configure::Use(nullptr); }

    void Set(const std::string& section, const std::string& key, const std::string& value) {
        const std::lock_guard<std::mutex> guard(_lock);
        _values[section + "/" + key] = value;
    }

    int GetInt(const char* section, const char* key, int defaultValue) override {
        return static_cast<int>(GetLong(section, key, defaultValue));
    }
    long long GetLong(const char* section, const char* key, long long defaultValue) override {
        std::string value;
        return Find(section, key, value) ? strtoll(value.c_str(), nullptr, 10) : defaultValue;
    }
    double GetDouble(const char* section, const char* key, double defaultValue) override {
        std::string value;
        return Find(section, key, value) ? strtod(value.c_str(), nullptr) : defaultValue;
    }
    bool GetBool(const char* section, const char* key, bool defaultValue) override {
        std::string value;
        return Find(section, key, value) ? value == "true" : defaultValue;
    }
    Quern::AString GetString(const char* section, const char* key, const char* defaultValue) override {
        std::string value;
        return Find(section, key, value) ? Quern::AString(value.c_str()) : Quern::AString(defaultValue);
    }
    void AddObserver(const char* name, Orvane::ConfigureObserver* observer) override {
        const std::lock_guard<std::mutex> guard(_lock);
        added.push_back(name);
        observers.emplace(name, observer);
    }
    void RemoveObserver(const char* name) override { observers.erase(name); }
    void Start() override {}
    void StartOnce() override { ++starts; }
    void SetUrl(const char* url) override { lastUrl = url ? url : ""; }
    void Clear() override { ++clears; }

    std::vector<std::string> added;  // the name of every AddObserver call
    std::map<std::string, Orvane::ConfigureObserver*> observers;
    std::string lastUrl;
    int starts = 0;  // of one fetch
    int clears = 0;

private:
    bool Find(const char* section, const char* key, std::string& value) {
        const std::lock_guard<std::mutex> guard(_lock);
        const auto found = _values.find(std::string(section) + "/" + key);
        if (found == _values.end()) return false;
        value = found->second;
        return true;
    }

    std::mutex _lock;
    std::map<std::string, std::string> _values;
};

}  // namespace OrvaneTest

#endif
