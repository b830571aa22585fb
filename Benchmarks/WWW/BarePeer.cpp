#include "BarePeer.h"

#include <cstdio>

namespace Orvane::Bench {
namespace {

size_t Append(char* data, size_t size, size_t count, void* body) {
    static_cast<std::string*>(body)->append(data, size * count);
    return size * count;
}

}  // namespace

BarePeer::BarePeer() : _multi(curl_multi_init()), _moving([this] { Move(); }), _completing([this] { Complete(); }) {}

BarePeer::~BarePeer() {
    {
        const std::lock_guard guard(_mutex);
        _isEnding = true;
    }
    _finishedOne.notify_one();
    curl_multi_wakeup(_multi);
    _moving.join();
    _completing.join();
    for (CURL* const easy : _handles)
        curl_easy_cleanup(easy);
    curl_multi_cleanup(_multi);
}

void BarePeer::Get(const std::string& url, std::function<void(const std::string&)> done) {
    const std::lock_guard guard(_mutex);
    _asked.push_back(new Transfer{url, "", std::move(done)});
    if (_asked.size() == 1) curl_multi_wakeup(_multi);
}

void BarePeer::Begin(Transfer* transfer) {
    CURL* easy;
    if (_handles.empty()) {
        easy = curl_easy_init();
    } else {
        easy = _handles.back();
        _handles.pop_back();
    }
    curl_easy_setopt(easy, CURLOPT_URL, transfer->url.c_str());
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &Append);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, &transfer->body);
    curl_easy_setopt(easy, CURLOPT_PRIVATE, transfer);
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_multi_add_handle(_multi, easy);
}

void BarePeer::Move() {
    for (;;) {
        std::vector<Transfer*> asked;
        {
            const std::lock_guard guard(_mutex);
            if (_isEnding) return;
            asked.swap(_asked);
        }
        for (Transfer* const transfer : asked)
            Begin(transfer);
        int running, left;
        curl_multi_perform(_multi, &running);
        while (const CURLMsg* const message = curl_multi_info_read(_multi, &left)) {
            CURL* const easy = message->easy_handle;
            Transfer* transfer = nullptr;
            curl_easy_getinfo(easy, CURLINFO_PRIVATE, reinterpret_cast<char**>(&transfer));
            curl_multi_remove_handle(_multi, easy);
            _handles.push_back(easy);
            {
                const std::lock_guard guard(_mutex);
                _finished.push_back(transfer);
            }
            _finishedOne.notify_one();
        }
        curl_multi_poll(_multi, nullptr, 0, 1000, nullptr);
    }
}

void BarePeer::Complete() {
    for (;;) {
        std::unique_lock guard(_mutex);
        _finishedOne.wait(guard, [this] { return _isEnding || !_finished.empty(); });
        if (_isEnding) return;
        Transfer* const transfer = _finished.front();
        _finished.pop_front();
        guard.unlock();
        transfer->done(transfer->body);
        delete transfer;
    }
}

void GetHere(CURL* easy, const std::string& url) {
    std::string body;
    curl_easy_setopt(easy, CURLOPT_URL, url.c_str());
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &Append);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, &body);
    curl_easy_perform(easy);
}

bool DownloadHere(const std::string& url, const std::string& path) {
    FILE* const file = fopen(path.c_str(), "wb");
    CURL* const easy = curl_easy_init();
    curl_easy_setopt(easy, CURLOPT_URL, url.c_str());
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, file);
    const bool isGood = curl_easy_perform(easy) == CURLE_OK;
    curl_easy_cleanup(easy);
    return fclose(file) == 0 && isGood;
}

}  // namespace Orvane::Bench
