// A sibling library with three modules: "Sibling", which uses the core's services, "PELL", the data plugin, and
// "RAVEL", the login plugin. It writes down what happens to it; the test asks for that text.
#include <cstdio>
#include <cstring>

#include "Contract.h"

extern "C" {
struct orvane_class;
struct orvane_object;
orvane_class* orvane_class_lookup(const char* name);
orvane_object* orvane_object_create(orvane_class* cls);
void orvane_object_release(orvane_object* object);
int orvane_object_responds(const orvane_object* object, const char* selector);
void* orvane_object_perform(orvane_object* object, const char* selector, void* const* arguments);
}

namespace {

using namespace Contract;

std::string& g_journal = *new std::string;

void Note(const std::string& line) {
    g_journal += line + "\n";
}

Host* FindHost() {
    orvane_object* wrapper = orvane_object_create(orvane_class_lookup("PluginUtilsWrapper"));
    void* host = nullptr;
    if (orvane_object_responds(wrapper, "getNativePluginManager"))
        host = orvane_object_perform(wrapper, "getNativePluginManager", nullptr);
    orvane_object_release(wrapper);
    return static_cast<Host*>(host);
}

class JournalEvent final : public Event {
public:
    void PutNamed(const char* key, const char* value, int length) override {
        Note(std::string(" named ") + key + "=" + std::string(value, length));
    }
    void PutText(int key, const char* value, int length) override {
        Note(" text " + std::to_string(key) + "=" + std::string(value, length));
    }
    void PutNumber(int key, int value) override {
        Note(" number " + std::to_string(key) + "=" + std::to_string(value));
    }
    void Send() override { Note(" send"); }
};

class Data final : public IdleModule, public DataService {
public:
    const char* Name() const override { return "PELL"; }
    const char* PluginName() const override { return "PELL"; }
    const char* Version() const override { return "0.9"; }
    void First(Registrar* registrar) override { registrar->Declare("REPORT"); }
    ServiceRoot* Service(const char* name) override { return strcmp(name, "REPORT") == 0 ? this : nullptr; }

    Event* Make(int source, const char* name) override {
        Note("event " + std::to_string(source) + " " + name);
        return new JournalEvent;
    }
    void Unmake(Event** event) override {
        Note(" unmake");
        delete *event;
        *event = nullptr;
    }
    unsigned int Device(const char* key, char** buffer, unsigned int size) override {
        snprintf(*buffer, size, "the %s", key);
        return 0;
    }
};

class Login final : public IdleModule, public AccountService {
public:
    const char* Name() const override { return "RAVEL"; }
    const char* PluginName() const override { return "RAVEL"; }
    const char* Version() const override { return "0.8"; }
    ServiceRoot* Service(const char* name) override { return strcmp(name, "ACCOUNT") == 0 ? this : nullptr; }

    bool Fill(Account* account) override {
        memset(account->openId, 'o', 128);  // whole, so without a terminator
        memset(account->others[0], '1', 1024);
        memset(account->others[1], '2', 64);
        memset(account->others[2], '3', 16);
        account->channel = 42;
        account->word = -1;
        return true;
    }
};

class Sibling final : public IdleModule {
public:
    const char* Name() const override { return "Sibling"; }
    const char* Version() const override { return "2.5"; }
    void First(Registrar* registrar) override {
        std::string line = "first ";
        for (const char* service : {"S1", "S2", static_cast<const char*>(nullptr)})
            line += registrar->Declare(service) ? "1" : "0";
        Note(line);
    }
    void Second() override {
        Note("second");
        ReadRegistry();
        SendEvent();
        WriteLog();
        Note("second done");
    }
    void Third() override { Note("third"); }
    void Fourth() override { Note("fourth"); }

private:
    void ReadRegistry() {
        for (const char* const* name = host->Names(); *name; ++name)
            Note(std::string(" name ") + *name);
        for (const auto& [key, entry] : *host->Registry()) {
            std::string line = " entry " + key + "=" + entry.name + " " + entry.version;
            for (const std::string& service : entry.services)
                line += " " + service;
            Note(line + (entry.module == host->Find(key.c_str()) ? "" : " LOST"));
        }
    }
    void SendEvent() {
        auto* report = static_cast<CoreReport*>(host->Find("OrvaneCore")->Service("COREREPORT"));
        Note(std::string(" service ") + report->Name() + " of " + report->PluginName());
        Event* event = report->Make(2, 55, "FromSibling");
        event->PutNamed("k", "value", 3);
        event->Send();
        report->Unmake(&event);
        if (report->Make(1, 55, "Refused")) Note(" NOT REFUSED");
    }
    void WriteLog() {
        auto* logs = static_cast<LogService*>(host->Find("ORVANECORE")->Service("LOG"));
        Note(std::string(" service ") + logs->Name() + " of " + logs->PluginName() + " version " +
             std::to_string(logs->Version()));
        Log* log = logs->Get(this);
        if (log != logs->Get(this)) Note(" TWO LOGS");
        log->Callback([](int level, const char* line) {
            const char* text = strrchr(line, '|');
            Note(" line " + std::to_string(level) + (text ? text : " UNFORMATTED"));
        });
        log->Option("LogConsoleOutput", 0);
        log->Option("LogMode", "ignored");
        log->Threshold(2);
        log->Open();
        Note(" threshold " + std::to_string(log->Threshold()));
        log->Line(1, "dir/File.cpp", 9, "Function", "tag", "below");
        log->Line(3, "dir/File.cpp", 9, "Function", "tag", "above");
        log->StageLine(3, "f", 1, "f", "m", "s", 1, 2, 3, 4, "e", "u", "r", "off unless switched on");
        log->Prune(-1, -1);
        log->Reserved(7);
        log->Callback(nullptr);
    }
};

ModuleBase* Install(ModuleBase* module) {
    module->host = FindHost();
    if (module->host) Note(std::string("entered ") + module->Name() + (module->host->Enter(module) ? "" : " REFUSED"));
    return module;
}

}  // namespace

extern "C" {

__attribute__((visibility("default"))) const char* sibling_journal() {
    return g_journal.c_str();
}
__attribute__((visibility("default"))) void* sibling_find_host() {
    return FindHost();
}
}

// While the library loads, as a real sibling does it. Without a host nothing happens. Modules live as long as the
// process, as those of real siblings do.
Contract::ModuleBase* g_siblingModules[] = {Install(new Sibling), Install(new Data), Install(new Login)};
