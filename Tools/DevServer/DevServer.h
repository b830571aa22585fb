// The server that a game team runs on the desk: what it answers, without the HTTP under it.
#ifndef ORVANE_TOOLS_DEVSERVER_DEV_SERVER_H
#define ORVANE_TOOLS_DEVSERVER_DEV_SERVER_H

#include <json/json.h>

#include <atomic>
#include <ctime>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "DevServer/ConfigProtocol.h"
#include "DevServer/Console/Console.h"
#include "DevServer/Fault.h"
#include "DevServer/Fetches.h"
#include "DevServer/Gate.h"
#include "DevServer/Journal.h"
#include "DevServer/Message.h"
#include "DevServer/ModuleFolder.h"
#include "DevServer/Query.h"
#include "DevServer/RuleId.h"
#include "DevServer/TraceIdProtocol.h"
#include "DevServer/Uploads.h"

namespace OrvaneDevServer {

constexpr char kControlPath[] = "/_orvane/";

struct ServerOptions {
    std::string folder;                      // made, with a first module, if it is not there
    std::vector<Fault> faults;               // in force from the start
    std::vector<std::string> keyFiles = {};  // private keys for the logs that devices send
    bool isStrict = false;                   // a request that breaks its protocol is answered with an error
    size_t mostWaiting = 24;                 // requests that may wait at a time; each keeps a thread
    std::function<time_t()> now = [] { return time(nullptr); };
    std::function<void(const std::string&)> say = [](const std::string&) {};  // one line for people. Any thread
};

// Handle is for any number of threads at once. Its bodies lie in DevServer.cpp, ConfigExchange.cpp,
// TraceIdExchange.cpp, UploadExchange.cpp and Control.cpp.
class DevServer {
public:
    explicit DevServer(ServerOptions options);

    // Opens the folder. Once, before the rest. False, and why in `error`, if it or a key cannot be used.
    bool Open(std::string& error);

    // Answers a request, after it has waited if it was ordered to. Nothing throws.
    Answer Handle(const Request& request);

    // Notes what the HTTP layer refused by itself.
    void NoteRefused(const std::string& method, const std::string& target, int status);

    // Lets every request that waits go on, and none wait from now on.
    void Stop() {
        _gate.Stop();
        _console.Stop();
    }

private:
    // A request on its way through.
    struct Exchange {
        const Request& request;
        const Target& target;
        const char* kind;
        uint64_t number = 0;  // in its protocol, from 1
        std::vector<Fault> faults{};
        Problems problems{};
        bool hasLeft = false;  // the sender, while it waited
        Json::Value taken{};   // the modules that a device keeps from now on; null if it keeps what it has
        Json::Value line{Json::objectValue};
    };

    Answer Route(const Request& request);
    Answer HandleConfig(Exchange& exchange);
    Answer HandleTraceIds(Exchange& exchange);
    Answer HandlePrepare(Exchange& exchange);
    Answer HandlePart(Exchange& exchange);
    Answer HandleUnknown(Exchange& exchange);
    Answer HandlePage(Exchange& exchange, const std::string& refusal);
    Answer Refuse(Exchange& exchange, int status, const std::string& problem);
    Answer HandleControl(Exchange& exchange);
    Answer Control(const Exchange& exchange, const std::string& path);
    Answer OrderFaults(const std::string& orders);

    Answer RightConfigAnswer(Exchange& exchange, const ConfigRequest& checked);
    std::string ConfigOutcome(const std::string& device, const Answer& answer, Json::Value& taken);
    int32_t RefreshModules();
    Answer RightTraceIdAnswer(Exchange& exchange, const TraceIdRequest& checked);

    void BeginUpload(Exchange& exchange);
    Answer AnswerUpload(Exchange& exchange, const Uploads::Outcome& outcome, int64_t from);
    void TakeOrderBack(Exchange& exchange, const std::string& device, Json::Value& modules);
    uint64_t Served(Protocol protocol) const;

    void Wait(Exchange& exchange);
    void SpoilAnswer(const Exchange& exchange, Answer& answer) const;
    void Note(Exchange& exchange, const Answer& answer, const std::string& outcome);
    void Write(Json::Value line, const Json::Value* taken = nullptr);

    const ServerOptions _options;
    Journal _journal;
    FaultList _faults;
    Gate _gate;
    Fetches _fetches;
    std::atomic<uint64_t> _configRequests{0}, _traceIdRequests{0}, _uploadRequests{0};
    Uploads _uploads;
    Console _console;

    std::mutex _modulesMutex;  // guards the two below
    ModuleFolder _modules;
    RuleId _ruleId;

    std::mutex _devicesMutex;                        // guards the next
    std::map<std::string, int32_t> _highestRuleIds;  // that each device took in this run of the server
};

}  // namespace OrvaneDevServer

#endif
