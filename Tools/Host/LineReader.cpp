#include "LineReader.h"

#include <errno.h>
#include <unistd.h>

namespace OrvaneHost {

void LineReader::Fill() {
    char part[4096];
    const ssize_t count = read(_descriptor, part, sizeof part);
    if (count > 0) {
        _buffer.append(part, static_cast<size_t>(count));
    } else if (count == 0 || (errno != EINTR && errno != EAGAIN)) {
        _end = true;
    }
}

bool LineReader::Next(std::string& line) {
    const size_t newline = _buffer.find('\n');
    if (newline == std::string::npos) {
        if (!_end || _buffer.empty()) return false;
        line = std::move(_buffer);
        _buffer.clear();
        return true;
    }
    line = _buffer.substr(0, newline);
    _buffer.erase(0, newline + 1);
    return true;
}

}  // namespace OrvaneHost
