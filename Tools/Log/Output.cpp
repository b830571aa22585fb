#include "Log/Output.h"

#include <errno.h>
#include <string.h>
#include <unistd.h>

namespace OrvaneLog {
namespace {

constexpr size_t kCapacity = 256u << 10;

}  // namespace

DescriptorOutput::DescriptorOutput(int descriptor)
    : _descriptor(descriptor), _buffer(std::make_unique_for_overwrite<char[]>(kCapacity)) {}

void DescriptorOutput::Write(std::string_view text) {
    if (text.size() > kCapacity - _used) Flush();
    if (text.size() >= kCapacity) {
        WriteOut(text.data(), text.size());
        return;
    }
    memcpy(_buffer.get() + _used, text.data(), text.size());
    _used += text.size();
}

void DescriptorOutput::Flush() {
    WriteOut(_buffer.get(), _used);
    _used = 0;
}

void DescriptorOutput::WriteOut(const char* data, size_t length) {
    while (length > 0 && _error == 0) {
        const ssize_t count = write(_descriptor, data, length);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) {
            _error = errno;
            return;
        }
        data += count;
        length -= static_cast<size_t>(count);
    }
}

}  // namespace OrvaneLog
