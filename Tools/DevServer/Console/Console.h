// The console: a page in the browser that shows what devices are sent and what they send, and changes modules.
//
//     GET    /_orvane/console/                            the page, and its files beside it
//     GET    /_orvane/console/data/changes?after=N        waits for something new: {"now":N}
//     GET    .../data/devices                             who has asked
//     GET    .../data/device?did=..                       what one was sent, and what each of its keys reads as
//     GET    .../data/requests[?did=..]                   the newest requests
//     GET    .../data/events[?name=..]                    what games have reported
//     GET    .../data/uploads                             what devices have sent
//     GET    .../data/lines?device=..&folder=..[&file=..&level=..&module=..&text=..&from=..]   log lines of one
//     GET    .../data/modules                             the modules' files, with the count of findings
//     GET    .../data/module?device=..&name=..            one, with its text, its digest and the findings
//     PUT    .../data/module?device=..&name=..&was=DIGEST the body takes its place
//     DELETE .../data/module?device=..&name=..&was=DIGEST
//     POST   .../data/lint?device=..&name=..              the findings of the body
#ifndef ORVANE_TOOLS_DEVSERVER_CONSOLE_CONSOLE_H
#define ORVANE_TOOLS_DEVSERVER_CONSOLE_CONSOLE_H

#include <functional>
#include <string>
#include <vector>

#include "DevServer/Console/Changes.h"
#include "DevServer/Console/DeviceBook.h"
#include "DevServer/Console/ModuleEditor.h"
#include "DevServer/Message.h"
#include "DevServer/Query.h"

namespace OrvaneDevServer {

constexpr char kConsolePath[] = "/_orvane/console";

// Any thread. Whoever may not order things must not get here: PageGuard.h.
class Console {
public:
    // What is served at one moment.
    struct Served {
        Json::Value modules;  // {NAME:{KEY:VALUE}}
        int32_t ruleId = 0;   // that stands for it
    };
    // What a device is sent at present; with "" what all are.
    using ServedTo = std::function<Served(const std::string& device)>;

    // `folder` is the server's; `keyFiles` are private keys for enciphered logs. `servedTo` is called on any thread,
    // and under no lock of the console's.
    Console(std::string folder, std::vector<std::string> keyFiles, ServedTo servedTo);

    // `path`: behind kConsolePath.
    Answer Handle(const Request& request, const Target& target, const std::string& path);

    // A line of the journal, as DeviceBook::Take has it.
    void Take(const Json::Value& line, const Json::Value* taken);
    // Reads what earlier runs have left. Once, before the rest.
    void ReadJournal(const std::string& path) { ReadJournalEnd(path, _book); }

    // Lets whoever waits go on.
    void Stop() { _changes.Stop(); }

private:
    // Each answers one kind of request for data.
    Answer Data(const Request& request, const Target& target, const std::string& what);
    Answer Module(const Request& request, const Target& target);
    Answer Lint(const Request& request, const Target& target) const;
    Answer WaitForChange(const Request& request, const Target& target);
    Json::Value Device(const std::string& did) const;
    Json::Value Modules() const;
    Answer Lines(const Target& target) const;
    Json::Value Inherited(const ModuleName& name) const;

    const std::string _folder;
    const std::vector<std::string> _keyFiles;
    const ServedTo _servedTo;
    DeviceBook _book;
    ModuleEditor _editor;
    Changes _changes;
};

}  // namespace OrvaneDevServer

#endif
