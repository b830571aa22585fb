// download: a file, with its progress, and with a pause on demand.
#include <algorithm>
#include <cstdio>

#include "Net/Commands.h"
#include "Net/Loop.h"
#include "Net/Output.h"
#include "Net/WWWError.h"
#include "Orvane/WWW.h"

namespace OrvaneNet {
namespace {

constexpr int kPauseSeconds = 1;
constexpr int kBarWidth = 40;

// Called on the main thread, like all that follows here.
class Download final : public Quern::DownloadFileTask::Listener {
public:
    Download(const Arguments& arguments, Quern::DownloadFileTask* task) : _arguments(arguments), _task(task) {}

    void OnDownloadBegin(Quern::DownloadFileTask*, long long totalSize) override { _total = totalSize; }

    void OnDownloadProgress(Quern::DownloadFileTask*, long long written, long long totalSize) override {
        _written = written;
        _total = totalSize;
        DrawBar();
        if (_arguments.pauseAt < 0 || written < _arguments.pauseAt || _hasPaused) return;
        _hasPaused = true;
        _task->Pause();
        isPaused = true;
    }

    void OnDownloadFinished(Quern::DownloadFileTask*, Quern::WWWErrorCode code, long long totalSize) override {
        error = code;
        if (totalSize > 0) _total = totalSize;
        isDone = true;
    }

    void DrawBar() const {
        if (_arguments.json || !CanDraw()) return;
        std::string bar;
        if (_total > 0) {
            const auto filled = static_cast<size_t>(std::clamp(_written * kBarWidth / _total, 0LL, 1LL * kBarWidth));
            bar = "[" + std::string(filled, '#') + std::string(kBarWidth - filled, ' ') + "] ";
        }
        Draw("\r" + bar + std::to_string(_written) + (_total > 0 ? " of " + std::to_string(_total) : "") + " bytes ");
    }

    void EndBar() const {
        if (!_arguments.json && CanDraw() && _written > 0) Draw("\n");
    }

    long long Written() const { return _written; }

    bool isPaused = false;
    bool isDone = false;
    Quern::WWWErrorCode error = Quern::kWWWErrorNone;

private:
    const Arguments& _arguments;
    Quern::DownloadFileTask* const _task;
    bool _hasPaused = false;
    long long _written = 0, _total = 0;
};

void ShowPause(const Arguments& arguments, Download& download, Quern::DownloadFileTask* task) {
    download.EndBar();
    if (!arguments.json) Say("paused at " + std::to_string(download.Written()) + " bytes");
    RunUntil([] { return false; }, InSeconds(kPauseSeconds));
    if (!arguments.json) Say("goes on");
    download.isPaused = false;
    task->Resume();
}

}  // namespace

int RunDownload(const Arguments& arguments) {
    const std::string &url = arguments.words[0], &file = arguments.words[1];
    if (!gs_OrvaneIsRequestUrl(url.c_str())) {
        Say(PrintableText(url) + ": not a URL");
        return kWrongUse;
    }
    Quern::DownloadFileTask* task = gs_OrvaneDownloadFile(url.c_str(), file.c_str());
    Download download(arguments, task);
    task->SetListener(&download);
    task->Resume();
    const Deadline deadline = arguments.deadline > 0 ? InSeconds(arguments.deadline) : Deadline();
    while (RunUntil([&download] { return download.isDone || download.isPaused; }, deadline) && download.isPaused)
        ShowPause(arguments, download, task);
    download.EndBar();
    gs_OrvaneDestroy(task);
    if (!download.isDone) {
        Say("download: gave up after " + std::to_string(arguments.deadline) + " seconds; nothing is left behind");
        return kNoAnswer;
    }

    if (arguments.json) {
        Json::Value out;
        out["url"] = url;
        out["file"] = file;
        out["error"] = static_cast<int>(download.error);
        out["words"] = WordsOf(download.error);
        out["bytes"] = Json::Int64(download.Written());
        PrintJson(out);
    } else if (download.error == Quern::kWWWErrorNone) {
        Say(file + ": " + std::to_string(download.Written()) + " bytes");
    } else {
        Say((download.error == Quern::kWWWErrorFile ? file : PrintableText(url)) + ": " + WordsOf(download.error));
    }
    if (download.error == Quern::kWWWErrorFile) return kWrongUse;
    return download.error == Quern::kWWWErrorNone ? kDone : kNoAnswer;
}

}  // namespace OrvaneNet
