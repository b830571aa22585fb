// The commands that ask and print: one inquiry, or all of them as one report.
#include <algorithm>
#include <vector>

#include "Net/Commands.h"
#include "Net/Inquiry.h"
#include "Net/Loop.h"

namespace OrvaneNet {
namespace {

constexpr int kDefaultDeadline = 120;  // seconds

// A name may take 30 seconds, a silent hop nine.
int TracerouteDeadline(const Arguments& arguments) {
    return 60 + 9 * arguments.maxTtl;
}

int PingDeadline(const Arguments& arguments) {
    return 30 + arguments.timeOut;
}

Deadline DeadlineOf(const Arguments& arguments, int own) {
    return InSeconds(arguments.deadline > 0 ? arguments.deadline : own);
}

std::string GaveUp(const Arguments& arguments, int own) {
    return "no answer within " + std::to_string(arguments.deadline > 0 ? arguments.deadline : own) + " seconds";
}

// Left to the process's end where it was given up: the library may still be at it.
int RunOne(const Arguments& arguments, std::unique_ptr<Inquiry> inquiry, int ownDeadline = kDefaultDeadline) {
    Inquiry* asked = inquiry.release();
    asked->Start();
    if (!RunUntil([asked] { return asked->IsDone(); }, DeadlineOf(arguments, ownDeadline))) {
        const std::string why = GaveUp(arguments, ownDeadline);
        if (arguments.json) {
            Json::Value object;
            object["error"] = why;
            PrintJson(object);
        } else {
            Say(arguments.command + ": " + why);
        }
        return kNoAnswer;
    }
    if (arguments.json)
        PrintJson(asked->Json());
    else if (asked->Status() == kWrongUse)
        Say(asked->Text());
    else
        Print(asked->Text());
    return asked->Status();
}

}  // namespace

int RunState(const Arguments& arguments) {
    return arguments.watch ? RunWatch(arguments) : RunOne(arguments, AskState());
}

int RunPing(const Arguments& arguments) {
    return RunOne(arguments, AskPing(arguments, arguments.words[0]), PingDeadline(arguments));
}

int RunTraceroute(const Arguments& arguments) {
    return RunOne(arguments, AskTraceroute(arguments, arguments.words[0]), TracerouteDeadline(arguments));
}

int RunLookup(const Arguments& arguments) {
    return RunOne(arguments, AskLookup(arguments.words[0]));
}

// All are asked at once: the report takes as long as the slowest.
int RunDiagnose(const Arguments& arguments) {
    const std::string& host = arguments.words[0];
    const bool isIPv6 = host.find(':') != std::string::npos;
    const std::string url = "http://" + (isIPv6 ? "[" + host + "]" : host) + "/";
    const int deadline = std::max(TracerouteDeadline(arguments), PingDeadline(arguments));
    struct Section {
        const char* name;
        Inquiry* inquiry;  // left to the process's end, as in RunOne
    };
    const std::vector<Section> sections = {
        {"state", AskState().release()},
        {"lookup", AskLookup(host).release()},
        {"ping", AskPing(arguments, host).release()},
        {"traceroute", AskTraceroute(arguments, host).release()},
        {"get", AskUrl(arguments.url.empty() ? url : arguments.url).release()},
    };
    for (const Section& section : sections)
        section.inquiry->Start();
    const auto allDone = [&sections] {
        for (const Section& section : sections)
            if (!section.inquiry->IsDone()) return false;
        return true;
    };
    RunUntil(allDone, DeadlineOf(arguments, deadline));

    Json::Value report(Json::objectValue);
    std::string text;
    int status = kDone;
    for (const Section& section : sections) {
        const bool isDone = section.inquiry->IsDone();
        status = std::max<int>(status, isDone ? section.inquiry->Status() : kNoAnswer);
        const std::string gaveUp = isDone ? "" : GaveUp(arguments, deadline);
        if (isDone) {
            report[section.name] = section.inquiry->Json();
        } else {
            report[section.name]["error"] = gaveUp;
        }
        text += std::string("== ") + section.name + "\n" + (isDone ? section.inquiry->Text() : gaveUp);
        if (!text.ends_with('\n')) text += '\n';
    }
    if (arguments.json)
        PrintJson(report);
    else
        Print(text);
    return status;
}

}  // namespace OrvaneNet
