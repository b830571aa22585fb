// A text stream into a file or into a buffer.
#ifndef ORVANE_SERIALIZER_ZYL_ZYL_IO_H
#define ORVANE_SERIALIZER_ZYL_ZYL_IO_H

#include <cstdarg>
#include <cstdio>
#include <string_view>

#include "Serializer/ZYL/ZylBuf.h"

namespace Quern {

// Every operation returns the new state, a code of ZylError: -25 where the file takes less than all, else the buffer's
// code. REQUIRES of every operation: the state is 0, and the format or data is not null. A caller who goes on after an
// error ends the process: this is how the stream forces callers to look.
//
// Neither file nor buffer is owned. A null file makes a stream on an empty buffer.
class ZylOutStream {
public:
    explicit ZylOutStream(FILE* file) : _file(file), _buf(), _state(0) {}
    ZylOutStream(char* buffer, unsigned long size) : _file(nullptr), _buf(buffer, size), _state(0) {}

    int state() const { return _state; }
    // The text so far of a stream on a buffer: `position` is its size.
    const ZylWriteBuf& buffer() const { return _buf; }

    // One print: in a buffer, all of the text and a terminator fit or none of it is kept.
    int textize(const char* format, ...) __attribute__((format(printf, 2, 3)));
    int vtextize(const char* format, va_list arguments) __attribute__((format(printf, 2, 0)));
    // The same for pieces that need no format.
    template <typename... Pieces>
    int join(const Pieces&... pieces) {
        ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
        if (_file == nullptr) return _state = _buf.join(pieces...);
        (void)(writeFile(std::string_view(pieces)) && ...);
        return _state;
    }
    template <typename Print>
    int printShort(const Print& print) {
        ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
        if (_file == nullptr) return _state = _buf.printShort(print);
        char text[kMaxShortText];
        writeFile({text, static_cast<size_t>(print(text) - text)});
        return _state;
    }
    // Bytes as they are, without a terminator.
    int output(const char* data, unsigned long size);

private:
    // False, and a state, where the file takes less than all.
    bool writeFile(std::string_view bytes);

    FILE* _file;
    ZylWriteBuf _buf;
    int _state;
};

}  // namespace Quern

#endif
