// The plainest thing that does the same work: libcurl's multi interface on a thread, completions on another.
#ifndef ORVANE_BENCHMARKS_WWW_BARE_PEER_H
#define ORVANE_BENCHMARKS_WWW_BARE_PEER_H

#include <curl/curl.h>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace Orvane::Bench {

class BarePeer {
public:
    BarePeer();
    ~BarePeer();
    void Get(const std::string& url, std::function<void(const std::string& body)> done);

private:
    struct Transfer {
        std::string url;
        std::string body;
        std::function<void(const std::string& body)> done;
    };

    void Move();
    void Complete();
    void Begin(Transfer* transfer);

    CURLM* const _multi;
    std::vector<CURL*> _handles;
    std::mutex _mutex;
    std::condition_variable _finishedOne;
    std::vector<Transfer*> _asked;
    std::deque<Transfer*> _finished;
    bool _isEnding = false;
    std::thread _moving, _completing;
};

// With libcurl's defaults, on the caller's thread.
void GetHere(CURL* easy, const std::string& url);
bool DownloadHere(const std::string& url, const std::string& path);

}  // namespace Orvane::Bench

#endif
