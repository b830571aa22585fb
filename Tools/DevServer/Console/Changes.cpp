#include "DevServer/Console/Changes.h"

#include <algorithm>
#include <filesystem>

namespace OrvaneDevServer {
namespace fs = std::filesystem;
namespace {

using Clock = std::chrono::steady_clock;

// Files change, and senders leave, without a word.
constexpr std::chrono::milliseconds kLook{500};

void AddTo(std::string& fingerprint, const fs::directory_entry& entry) {
    std::error_code error;
    fingerprint += entry.path().native();
    fingerprint += ':' + std::to_string(entry.last_write_time(error).time_since_epoch().count());
    fingerprint += ':' + std::to_string(entry.is_regular_file(error) ? entry.file_size(error) : 0) + '\n';
}

void AddFolder(std::string& fingerprint, const fs::path& folder, bool goesDown) {
    std::error_code error;
    std::vector<fs::directory_entry> entries;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
        entries.push_back(*at);
    std::sort(entries.begin(), entries.end());
    for (const fs::directory_entry& entry : entries) {
        AddTo(fingerprint, entry);
        std::error_code ignored;
        if (goesDown && entry.is_directory(ignored)) AddFolder(fingerprint, entry.path(), false);
    }
}

}  // namespace

Changes::Changes(std::vector<std::string> folders, size_t mostWaiting)
    : _folders(std::move(folders)),
      _mostWaiting(mostWaiting),
      _now(static_cast<uint64_t>(
          std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::system_clock::now().time_since_epoch())
              .count())) {}

void Changes::Tell() {
    const std::lock_guard<std::mutex> guard(_mutex);
    ++_now;
    _changed.notify_all();
}

std::string Changes::Fingerprint() const {
    std::string fingerprint;
    for (const std::string& folder : _folders)
        AddFolder(fingerprint, folder, true);
    return fingerprint;
}

Changes::Look Changes::WaitForOther(uint64_t known, std::chrono::milliseconds patience,
                                    const std::function<bool()>& senderHasLeft) {
    const auto end = Clock::now() + patience;
    std::unique_lock<std::mutex> guard(_mutex);
    const bool isFull = _waiting >= _mostWaiting;
    if (isFull) return {_now, true};
    ++_waiting;
    bool hasLeft = false;
    while (true) {
        if (const auto now = Clock::now(); _fingerprint.empty() || now - _lookedAt >= kLook) {
            _lookedAt = now;  // so that of several who wait one looks
            guard.unlock();
            hasLeft = senderHasLeft && senderHasLeft();
            std::string fingerprint = Fingerprint();
            guard.lock();
            if (!_fingerprint.empty() && fingerprint != _fingerprint) {
                ++_now;
                _changed.notify_all();
            }
            _fingerprint = std::move(fingerprint);
        }
        if (_isStopped || hasLeft || _now != known || Clock::now() >= end) break;
        _changed.wait_for(guard, kLook);
    }
    --_waiting;
    return {_now, false};
}

void Changes::Stop() {
    const std::lock_guard<std::mutex> guard(_mutex);
    _isStopped = true;
    _changed.notify_all();
}

}  // namespace OrvaneDevServer
