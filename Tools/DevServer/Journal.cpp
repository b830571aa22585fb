#include "DevServer/Journal.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "DevServer/JsonText.h"

namespace OrvaneDevServer {
std::string Journal::Now() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
    const time_t seconds = static_cast<time_t>(milliseconds / 1000);
    tm parts{};
    gmtime_r(&seconds, &parts);
    char text[40];
    const size_t length = strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &parts);
    snprintf(text + length, sizeof text - length, ".%03dZ", static_cast<int>(milliseconds % 1000));
    return text;
}

Journal::~Journal() {
    if (_descriptor >= 0) close(_descriptor);
}

bool Journal::Open(const std::string& path, std::string& error) {
    _descriptor = open(path.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK, 0644);
    if (_descriptor >= 0 && flock(_descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        error = path + ": another server has this folder";
        return false;
    }
    if (_descriptor >= 0 && Repair()) return true;
    error = path + ": " + strerror(errno);
    return false;
}

// A server that was killed may have left a line without its end.
bool Journal::Repair() {
    struct stat state {};
    if (fstat(_descriptor, &state) != 0) return false;
    char last = '\n';
    if (state.st_size > 0 && pread(_descriptor, &last, 1, state.st_size - 1) != 1) return false;
    return last == '\n' || write(_descriptor, "\n", 1) == 1;
}

bool Journal::Write(const Json::Value& line) {
    const std::string text = WriteCompact(line);
    const std::lock_guard<std::mutex> guard(_mutex);
    struct stat before {};
    if (fstat(_descriptor, &before) != 0) return false;
    ssize_t count;
    do
        count = write(_descriptor, text.data(), text.size());
    while (count < 0 && errno == EINTR);
    if (count == static_cast<ssize_t>(text.size())) return true;
    // A piece of a line would spoil the next one too.
    if (count > 0 && ftruncate(_descriptor, before.st_size) != 0) Repair();
    return false;
}

}  // namespace OrvaneDevServer
