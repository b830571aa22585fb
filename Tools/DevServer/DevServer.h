// The server that a game team runs on the desk: what it answers, without the HTTP under it (HttpServer.h).
//
// It serves configuration and trace ids, and takes the files that it orders from devices. Each request is checked
// against its protocol and answered as it should be; ordered faults then spoil the answer; the journal, the console and
// people are told what came, what was wrong with it and what the client will do with the answer.
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
    // The time, which requests are held against and new trace ids bear; a test sets its own. Any thread.
    std::function<time_t()> now = [] { return time(nullptr); };
    std::function<void(const std::string&)> say = [](const std::string&) {};  // one line for people. Any thread
};

// Handle is for any number of threads at once. No lock is held while a request waits. _modulesMutex may be held while
// the journal, the console and `say` are told of changed modules; _devicesMutex is a leaf. The bodies of the class lie
// in several files: DevServer.cpp (what all requests have in common), ConfigExchange.cpp, TraceIdExchange.cpp,
// UploadExchange.cpp and Control.cpp (orders that come while it runs).
class DevServer {
public:
    // Makes nothing on the disk yet.
    explicit DevServer(ServerOptions options);

    // Opens the folder, reads the modules, and the end of the journal that earlier runs left. Once, before the rest.
    // False, and why in `error`, if the folder cannot be used or another server has it.
    bool Open(std::string& error);

    // Answers a request, after it has waited if it was ordered to. The request need not outlive the call. Nothing
    // throws: what cannot be answered gives the status 500.
    Answer Handle(const Request& request);

    // Notes what the HTTP layer refused by itself, with the status that it gave. Any thread.
    void NoteRefused(const std::string& method, const std::string& target, int status);

    // Lets every request that waits go on, and none wait from now on. Any thread.
    void Stop() {
        _gate.Stop();
        _console.Stop();
    }

private:
    // A request on its way through, on its thread's stack.
    struct Exchange {
        const Request& request;
        const Target& target;
        const char* kind;             // the word for it in the journal
        uint64_t number = 0;          // in its protocol, from 1
        std::vector<Fault> faults{};  // that were ordered for it
        Problems problems{};          // what it breaks
        bool hasLeft = false;         // the sender, while it waited
        Json::Value taken{};          // the modules that a device keeps from now on; null if it keeps what it has
        Json::Value line{Json::objectValue};  // what the journal gets
    };

    // Route finds the kind of a request; each Handle takes one kind, from its first look to the note in the journal.
    Answer Route(const Request& request);
    Answer HandleConfig(Exchange& exchange);
    Answer HandleTraceIds(Exchange& exchange);
    Answer HandlePrepare(Exchange& exchange);
    Answer HandlePart(Exchange& exchange);
    Answer HandleUnknown(Exchange& exchange);
    Answer HandlePage(Exchange& exchange, const std::string& refusal);
    // The advice goes into the answer alone, for the person who reads it.
    Answer Refuse(Exchange& exchange, int status, const std::string& problem, const std::string& advice = "");
    Answer HandleControl(Exchange& exchange);
    // What the orders of Control.cpp do.
    Answer Control(const Exchange& exchange, const std::string& path);
    Answer OrderFaults(const std::string& orders);

    // The configuration's part: the answer before faults spoil it, the words for what the client does, and the rule id
    // of the files as they are now.
    Answer RightConfigAnswer(Exchange& exchange, const ConfigRequest& checked);
    std::string ConfigOutcome(const std::string& device, const Answer& answer, Json::Value& taken);
    int32_t RefreshModules();
    Answer RightTraceIdAnswer(Exchange& exchange, const TraceIdRequest& checked);

    // The uploads' part.
    void BeginUpload(Exchange& exchange);
    Answer AnswerUpload(Exchange& exchange, const Uploads::Outcome& outcome, int64_t from);
    void TakeOrderBack(Exchange& exchange, const std::string& device, Json::Value& modules);
    // How many requests of the protocol there were.
    uint64_t Served(Protocol protocol) const;

    // Common to all: the ordered wait, the other ordered faults, and what is told afterwards.
    void Wait(Exchange& exchange);
    void SpoilAnswer(const Exchange& exchange, Answer& answer) const;
    void Note(Exchange& exchange, const Answer& answer, const std::string& outcome);
    void Write(Json::Value line, const Json::Value* taken = nullptr);

    const ServerOptions _options;
    // Each of these has its own lock.
    Journal _journal;
    FaultList _faults;
    Gate _gate;
    Fetches _fetches;
    std::atomic<uint64_t> _configRequests{0}, _traceIdRequests{0}, _uploadRequests{0};  // in this run
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
