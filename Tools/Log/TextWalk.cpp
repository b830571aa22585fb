#include "Log/TextWalk.h"

#include <algorithm>
#include <string>

namespace OrvaneLog {

void TextWalk::Advance(bool growing) {
    for (;;) {
        const auto bytes = _window.At(_offset, 1);
        if (bytes.empty() || bytes[0] != 0) {
            // At the end of a growing file more zeros may follow, and all are one gap.
            if (_zeros > 0 && !(bytes.empty() && growing)) {
                _events.OnSkipped(_offset - _zeros, _zeros, "zero bytes, no text");
                _zeros = 0;
            }
            if (bytes.empty()) return;
            const size_t count = static_cast<size_t>(std::find(bytes.begin(), bytes.end(), 0) - bytes.begin());
            _events.OnText({reinterpret_cast<const char*>(bytes.data()), count});
            _offset += count;
        } else {
            const auto end = std::find_if(bytes.begin(), bytes.end(), [](uint8_t byte) { return byte != 0; });
            _zeros += static_cast<uint64_t>(end - bytes.begin());
            _offset += static_cast<uint64_t>(end - bytes.begin());
        }
        _events.OnTextRead(_offset);
        _window.Source().Forget(_offset);
    }
}

}  // namespace OrvaneLog
