// get and post: one request held in memory.
#include <atomic>
#include <cstdio>

#include "Net/Commands.h"
#include "Net/Loop.h"
#include "Net/Output.h"
#include "Net/WWWError.h"
#include "Orvane/WWW.h"
#include "Storage/File/FileReplacement.h"
#include "Storage/File/WholeFile.h"

namespace OrvaneNet {
namespace {

constexpr int kDefaultDeadline = 120;  // seconds; a transfer without any byte for 60 s ends by itself

struct Answer final : Quern::DataTask::Listener {
    void OnDataTaskFinished(Quern::DataTask*, Quern::WWWErrorCode code, int httpStatus, const char* data,
                            long long length) override {
        error = code;
        status = httpStatus;
        if (data) body.assign(data, static_cast<size_t>(length));
        isDone.store(true, std::memory_order_release);
        WakeLoop();
    }

    Quern::WWWErrorCode error = Quern::kWWWErrorNone;
    int status = 0;
    std::string body;
    std::atomic<bool> isDone{false};
};

bool ReadBody(const Arguments& arguments, std::string& body) {
    if (arguments.bodyFile.empty()) {
        body = arguments.body;
        return true;
    }
    FILE* const file = arguments.bodyFile == "-" ? stdin : fopen(arguments.bodyFile.c_str(), "rb");
    if (!file) return false;
    bool error = false;
    body = Quern::ReadToEnd(file, &error);
    if (file != stdin) fclose(file);
    return !error;
}

// What lay there stays until the new content is whole; a device or a pipe is written to as it is.
bool WriteBody(const std::string& path, const std::string& body) {
    Quern::FileReplacement file(path);
    return file.Prepare(body) && file.PutInPlace();
}

void PrintAnswer(const Arguments& arguments, const Answer& answer) {
    if (arguments.json) {
        Json::Value out;
        out["url"] = arguments.words[0];
        out["error"] = static_cast<int>(answer.error);
        out["words"] = WordsOf(answer.error);
        out["status"] = answer.status;
        out["bytes"] = Json::Int64(answer.body.size());
        PrintJson(out);
        return;
    }
    if (answer.error == Quern::kWWWErrorNone) {
        if (arguments.output.empty()) fwrite(answer.body.data(), 1, answer.body.size(), stdout);
        Say("status " + std::to_string(answer.status) + ", " + std::to_string(answer.body.size()) + " bytes");
    } else {
        Say(PrintableText(arguments.words[0]) + ": " + WordsOf(answer.error));
    }
}

}  // namespace

int RunRequest(const Arguments& arguments) {
    const std::string& url = arguments.words[0];
    std::string body;
    if (!ReadBody(arguments, body)) {
        Say(arguments.bodyFile + ": cannot be read");
        return kWrongUse;
    }
    if (body.size() > INT32_MAX) {
        Say("a body of 2 GiB and more cannot be sent");
        return kWrongUse;
    }
    if (!gs_OrvaneIsRequestUrl(url.c_str())) {
        Say(PrintableText(url) + ": not a URL");
        return kWrongUse;
    }

    Answer answer;
    Quern::DataTask* task = gs_OrvaneRequest(url.c_str());
    task->SetListener(&answer);
    for (const auto& [name, value] : arguments.headers)
        task->SetHttpHeader(name.c_str(), value.c_str());
    if (arguments.command == "post")
        task->Post(body.data(), static_cast<int>(body.size()));
    else
        task->Get();
    const int deadline = arguments.deadline > 0 ? arguments.deadline : kDefaultDeadline;
    const bool isDone =
        RunUntil([&answer] { return answer.isDone.load(std::memory_order_acquire); }, InSeconds(deadline));
    gs_OrvaneDestroy(task);  // after it nobody writes into `answer`
    if (!isDone) {
        Say(arguments.command + ": no answer within " + std::to_string(deadline) + " seconds");
        return kNoAnswer;
    }

    const bool isAnswered = answer.error == Quern::kWWWErrorNone;
    if (isAnswered && !arguments.output.empty() && !WriteBody(arguments.output, answer.body)) {
        Say(arguments.output + ": cannot be written");
        return kWrongUse;
    }
    PrintAnswer(arguments, answer);
    return isAnswered && answer.status < 400 ? kDone : kNoAnswer;
}

}  // namespace OrvaneNet
