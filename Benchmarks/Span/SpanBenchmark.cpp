// What a span costs from its making to its end, with a name, three tags and an outcome, into a data plugin that only
// counts. The floor is the same 17 fields through a map and snprintf into the same plugin. And what it costs its own
// thread when the sample data plugin forwards it to a receiver of OTLP.

#include <stdlib.h>
#include <sys/socket.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <filesystem>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "Base/ConsoleSink.h"
#include "Base/XLog.h"
#include "Orvane/IEvent.h"
#include "Orvane/RavelAccount.h"
#include "Pell/Forwarder.h"
#include "PluginManager/InnerPlugin/OrvaneCoreInnerPlugin.h"
#include "PluginManager/InnerPlugin/Yarrow/TraceService.h"
#include "Storage/Log/CoreLog.h"
#include "Storage/Log/Logger.h"
#include "Support/Ratio.h"
#include "Support/ServerProcess.h"
#include "System/Thread/Time.h"

namespace {

using namespace Orvane::Bench;
using namespace Orvane::Plugin;
namespace fs = std::filesystem;

constexpr int kRounds = 41;
constexpr int kSpans = 2000;
constexpr int kThreads = 8;
constexpr const char* kTags[][2] = {{"scene", "harbour"}, {"attempt", "2"}, {"server", "eu-west-17"}};

class Silence final : public Quern::ConsoleSink {
    void Write(const char*, size_t) override {}
};

std::atomic<unsigned long long> g_bytes{0}, g_reports{0};

// Adds up what it is given, and forgets it.
class CountingEvent final : public IEvent {
public:
    void Add(const char* key, const char* value, int length) override { _bytes += *key + *value + length; }
    void Add(int key, const char* value, int length) override { _bytes += key + *value + length; }
    void Add(int key, int value) override { _bytes += key + value; }
    void Report() override {
        g_bytes.fetch_add(static_cast<unsigned long long>(_bytes), std::memory_order_relaxed);
        g_reports.fetch_add(1, std::memory_order_relaxed);
    }

private:
    long long _bytes = 0;
};

class Plugin : public PluginBase {
public:
    Plugin(const char* name, IPluginService* service) : _name(name), _service(service) {
        GetCachePluginManager();
        RegisterPlugin(this);
    }
    const char* GetName() const override { return _name; }
    const char* GetVersion() const override { return "1"; }
    void OnStartup(IServiceRegister*) override {}
    void OnPostStartup() override {}
    void OnPreShutdown() override {}
    void OnShutdown() override {}
    IPluginService* GetServiceByName(const char*) override { return _service; }

private:
    const char* _name;
    IPluginService* _service;
};

Pell::Forwarder* g_forwarder = nullptr;  // where events go, if it is set

class DataService final : public IReportService {
public:
    const char* GetName() const override { return "REPORT"; }
    const char* GetPluginName() const override { return "PELL"; }
    IEvent* CreateEvent(int source, const char* name) override {
        if (g_forwarder) return new Pell::ForwardedEvent(*g_forwarder, source, name);
        return new CountingEvent;
    }
    void DestroyEvent(IEvent** event) override {
        delete *event;
        *event = nullptr;
    }
    unsigned int GetDeviceInfo(const char*, char**, unsigned int) override { return 2; }
};

class LoginService final : public Ravel::IAccountService {
public:
    const char* GetName() const override { return "ACCOUNT"; }
    const char* GetPluginName() const override { return "RAVEL"; }
    bool GetLoginRet(Ravel::RavelAccount& account) override {
        snprintf(account.openID, account.kOpenIDSize, "player-4711");
        return true;
    }
};

DataService g_data;

void Spans(int count) {
    ITraceService* const service = TraceService::GetInstance();
    for (int i = 0; i < count; ++i) {
        const std::string context = service->CreateContext(nullptr, "0", nullptr);
        const auto flush = [&](YarrowDataType type, const char* key, const char* value) {
            service->FlushContext(context.c_str(), type, key, value);
        };
        flush(kYarrowReportField, "name", "Login");
        flush(kYarrowReportField, "locname", "game_client");
        flush(kYarrowReportField, "rmtname", "account server");
        for (const auto& [key, value] : kTags)
            flush(kYarrowUserTag, key, value);
        flush(kYarrowReportField, "errcode", "0");
        flush(kYarrowReportField, "errmsg", "");
        service->ReportContext(context.c_str());
        service->DestroyContext(context.c_str());
    }
}

void BareFields(int count) {
    for (int i = 0; i < count; ++i) {
        std::map<std::string, std::string> fields;
        char text[256];
        const auto print = [&](const char* key, const char* format, auto value) {
            snprintf(text, sizeof text, format, value);
            fields[key] = text;
        };
        const auto put = [&](const char* key, const char* value) { print(key, "%s", value); };
        put("tid", "0123456789abcdef0123456789abcdef");
        print("sid", "%011d", i);
        put("pid", "");
        put("kind", "1");
        put("buzid", "30045");
        put("setid", "0");
        put("pritype", "0");
        put("pubtype", "0");
        put("name", "Login");
        print("ts", "%lld", Quern::CTime::GetTimeTick());
        print("dur", "%lld", Quern::CTime::GetTimeTick() - atoll(fields["ts"].c_str()));
        put("errcode", "0");
        put("errmsg", "");
        put("openid", "player-4711");
        put("locname", "game_client");
        put("rmtname", "account server");
        snprintf(text, sizeof text, "{\"%s\":\"%s\",\"%s\":\"%s\",\"%s\":\"%s\"}", kTags[1][0], kTags[1][1],
                 kTags[0][0], kTags[0][1], kTags[2][0], kTags[2][1]);
        fields["tags"] = text;
        IEvent* event = g_data.CreateEvent(2000, "YarrowClient");
        for (const auto& [key, value] : fields)
            event->Add(key.c_str(), value.c_str(), static_cast<int>(value.size()));
        event->Report();
        g_data.DestroyEvent(&event);
    }
}

void SpansOfThreads(int count) {
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i)
        threads.emplace_back([count] { Spans(count / kThreads); });
    for (std::thread& thread : threads)
        thread.join();
}

void AgainstBareFields(const char* what, ALogPriority level, const char* wanted) {
    Quern::SetQuernLogLevel(level);
    Print(what,
          Compare(
              kRounds, kSpans, [] { Spans(kSpans); }, [] { BareFields(kSpans); }),
          wanted);
}

// A receiver that takes everything.
void Receive(int connection, int) {
    std::string bytes;
    char buffer[65536];
    for (ssize_t count; (count = recv(connection, buffer, sizeof buffer, 0)) > 0;) {
        bytes.append(buffer, static_cast<size_t>(count));
        const size_t head = bytes.find("\r\n\r\n"), length = bytes.find("Content-Length: ");
        if (head == std::string::npos || length > head) continue;
        const size_t whole = head + 4 + strtoul(bytes.c_str() + length + 16, nullptr, 10);
        if (bytes.size() < whole) continue;
        bytes.erase(0, whole);
        constexpr char kAnswer[] = "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n{}";
        if (send(connection, kAnswer, sizeof kAnswer - 1, MSG_NOSIGNAL) < 0) return;
    }
}

double ProcessorSecondsOfThisThread() {
    timespec time;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// The processor time of the thread that traces, spans that are forwarded against spans that are counted. What the
// sender needs is its own thread's, and has been done with before the next round.
Comparison Forwarded(Pell::Forwarder& forwarder) {
    std::vector<double> ours, other, ratios;
    const auto measure = [](std::vector<double>& times) {
        const double begin = ProcessorSecondsOfThisThread();
        Spans(kSpans);
        times.push_back((ProcessorSecondsOfThisThread() - begin) * 1e9 / kSpans);
    };
    for (int round = 0; round < kRounds; ++round) {
        g_forwarder = &forwarder;
        measure(ours);
        g_forwarder = nullptr;
        forwarder.Flush(std::chrono::seconds(30));
        measure(other);
        ratios.push_back(ours.back() / other.back());
    }
    return {Median(ours), Median(other), Median(ratios)};
}

}  // namespace

int main() {
    const ServerProcess receiver(Receive);
    setenv("OTEL_EXPORTER_OTLP_TRACES_ENDPOINT",
           ("http://127.0.0.1:" + std::to_string(receiver.Port()) + "/v1/traces").c_str(), 1);
    std::string home = (fs::temp_directory_path() / "orvane-bench-XXXXXX").string();
    if (!mkdtemp(home.data())) return 1;
    setenv("ORVANE_HOME", home.c_str(), 1);
    fs::create_directories(home + "/Library/Caches");
    Quern::ConsoleSink::Use(std::make_shared<Silence>());
    auto* const core = Singleton<OrvaneCoreInnerPlugin>::GetInstance();
    core->GetCachePluginManager();
    core->RegisterPlugin(core);
    LoginService login;
    const Plugin pell("PELL", &g_data), ravel("RAVEL", &login);
    Quern::OrvaneLogInit();

    PrintHead();
    AgainstBareFields("a span at level Warning, against its bare fields", kLogWarning, "<= 3");
    Print("8 threads at level Warning, against one thread",
          Compare(
              kRounds, kThreads * kSpans, [] { SpansOfThreads(kThreads * kSpans); }, [] { Spans(kThreads * kSpans); }),
          "<= 1.25");
    Pell::Forwarder forwarder;
    Print("the same with forwarding, its thread's processor time", Forwarded(forwarder), "<= 1.2");
    AgainstBareFields("a span at the default level, Info", kLogInfo, "(shown)");
    printf("(%llu reports)\n", g_reports.load());
    fflush(stdout);
    std::error_code ignored;
    fs::remove_all(home, ignored);
    _exit(0);  // the threads of log and transport go on
}
