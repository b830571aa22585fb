// Sibling plugins that write down how they are called.
#ifndef ORVANE_TESTS_SUPPORT_FAKE_PLUGINS_H
#define ORVANE_TESTS_SUPPORT_FAKE_PLUGINS_H

#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Orvane/IEvent.h"
#include "Orvane/RavelAccount.h"
#include "PluginManager/InnerPlugin/OrvaneCoreInnerPlugin.h"
#include "PluginManager/PluginManager.h"
#include "Support/IdlePlugin.h"

namespace OrvaneTest {

// As the launch does it.
inline Orvane::Plugin::OrvaneCoreInnerPlugin* InstallCorePlugin() {
    auto* const core = Orvane::Plugin::Singleton<Orvane::Plugin::OrvaneCoreInnerPlugin>::GetInstance();
    core->GetCachePluginManager();
    core->RegisterPlugin(core);
    return core;
}

using Journal = std::vector<std::string>;

// Installs itself for its lifetime. Stages are written down as "<name> <stage>"; a test may hang an action on one.
class FakePlugin : public IdlePlugin {
public:
    explicit FakePlugin(std::string name, std::string version = "1.0", Journal* journal = nullptr)
        : IdlePlugin(nullptr, nullptr), _name(std::move(name)), _version(std::move(version)), _journal(journal) {
        this->name = _name.c_str();
        this->version = _version.c_str();
        Orvane::Plugin::PluginManager::GetInstance()->Install(this);
    }
    ~FakePlugin() override {
        const auto& all = *Orvane::Plugin::PluginManager::GetInstance()->GetPluginCollection();
        const auto entry = all.find(_name);
        if (entry != all.end() && entry->second.plugin == this)
            Orvane::Plugin::PluginManager::GetInstance()->Uninstall(this);
    }

    void OnStartup(Orvane::Plugin::IServiceRegister* services) override {
        for (const auto& service : declared)
            services->Register(service);
        Enter("OnStartup");
    }
    void OnPostStartup() override { Enter("OnPostStartup"); }
    void OnPreShutdown() override { Enter("OnPreShutdown"); }
    void OnShutdown() override { Enter("OnShutdown"); }
    Orvane::Plugin::IPluginService* GetServiceByName(const char* name) override {
        const auto found = services.find(name);
        return found == services.end() ? nullptr : found->second;
    }

    std::vector<const char*> declared;
    std::map<std::string, Orvane::Plugin::IPluginService*> services;
    std::map<std::string, std::function<void()>> actions;  // by the stage's name

private:
    void Enter(const std::string& stage) {
        if (_journal) _journal->push_back(_name + " " + stage);
        if (actions.count(stage)) actions[stage]();
    }

    std::string _name;
    std::string _version;
    Journal* _journal;
};

// The data plugin "PELL" with its service "REPORT". Every call is written down: "create 2000 name", "add 30001=5"
// (a number), "add 30001='text'" (a text), "report", "destroy".
class FakePell : public Orvane::Plugin::IReportService {
public:
    explicit FakePell(Journal* journal) : _journal(journal) { _plugin.services["REPORT"] = this; }

    const char* GetName() const override { return "REPORT"; }
    const char* GetPluginName() const override { return "PELL"; }
    Orvane::Plugin::IEvent* CreateEvent(int srcID, const char* eventName) override {
        _journal->push_back("create " + std::to_string(srcID) + " " + eventName);
        return refuses ? nullptr : new Event(_journal);
    }
    void DestroyEvent(Orvane::Plugin::IEvent** event) override {
        _journal->push_back("destroy");
        delete *event;
        *event = nullptr;
    }

    unsigned int GetDeviceInfo(const char* key, char** buffer, unsigned int size) override {
        _journal->push_back("device info " + std::string(key) + " " + std::to_string(size));
        const auto found = device.find(key);
        if (found == device.end()) return 2;
        memcpy(*buffer, found->second.data(), std::min<size_t>(found->second.size(), size));
        return found->second.size() < size ? 0 : 1;
    }

    FakePlugin& plugin() { return _plugin; }
    bool refuses = false;
    std::map<std::string, std::string> device;  // what GetDeviceInfo knows; an answer of its size has no terminator

private:
    class Event final : public Orvane::Plugin::IEvent {
    public:
        explicit Event(Journal* journal) : _journal(journal) {}
        void Add(const char* key, const char* value, int length) override {
            _journal->push_back(std::string("add '") + key + "'='" + std::string(value, length) + "'");
        }
        void Add(int key, const char* value, int length) override {
            _journal->push_back("add " + std::to_string(key) + "='" + std::string(value, length) + "'");
        }
        void Add(int key, int value) override {
            _journal->push_back("add " + std::to_string(key) + "=" + std::to_string(value));
        }
        void Report() override { _journal->push_back("report"); }

    private:
        Journal* _journal;
    };

    Journal* _journal;
    FakePlugin _plugin{"PELL"};
};

// The login plugin "RAVEL" with its service "ACCOUNT".
class FakeRavel : public Orvane::Plugin::Ravel::IAccountService {
public:
    FakeRavel() { _plugin.services["ACCOUNT"] = this; }

    const char* GetName() const override { return "ACCOUNT"; }
    const char* GetPluginName() const override { return "RAVEL"; }
    bool GetLoginRet(Orvane::Plugin::Ravel::RavelAccount& account) override {
        account.channelID = channel;
        if (replaces) {
            delete[] account.openID;
            account.openID = openId.empty() ? nullptr : strcpy(new char[openId.size() + 1], openId.c_str());
            return loggedIn;
        }
        // Up to the buffer's last byte, as the login plugin does it.
        memcpy(account.openID, openId.data(), std::min<size_t>(openId.size(), account.kOpenIDSize));
        return loggedIn;
    }

    FakePlugin& plugin() { return _plugin; }
    bool loggedIn = true;
    bool replaces = false;  // puts a text of its own, or none, in the place of the record's buffer
    int channel = 7;
    std::string openId = "someone";

private:
    FakePlugin _plugin{"RAVEL"};
};

}  // namespace OrvaneTest

#endif
