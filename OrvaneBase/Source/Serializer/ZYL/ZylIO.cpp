#include "Serializer/ZYL/ZylIO.h"

namespace Quern {

int ZylOutStream::textize(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int code = vtextize(format, arguments);
    va_end(arguments);
    return code;
}

// A file keeps what it took of a print that failed. Only a buffer can take it back.
int ZylOutStream::vtextize(const char* format, va_list arguments) {
    ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
    ORVANE_ASSERT(NULL != format);
    if (_file == nullptr) {
        _state = _buf.vtextize(format, arguments);
    } else if (vfprintf(_file, format, arguments) < 0) {
        _state = ZylError::ZYL_WRITE_FILE_FAILED;
    }
    return _state;
}

int ZylOutStream::output(const char* data, unsigned long size) {
    ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
    ORVANE_ASSERT(NULL != data);
    if (_file == nullptr) return _state = _buf.writeBytes(data, size);
    writeFile({data, size});
    return _state;
}

bool ZylOutStream::writeFile(std::string_view bytes) {
    if (fwrite(bytes.data(), 1, bytes.size(), _file) != bytes.size()) _state = ZylError::ZYL_WRITE_FILE_FAILED;
    return _state == ZylError::ZYL_NO_ERROR;
}

}  // namespace Quern
