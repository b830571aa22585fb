#include "Serializer/ZYL/ZylIO.h"

#include "Base/Assert.h"
#include "Serializer/ZYL/ZylError.h"

namespace Quern {
namespace {

int WriteFile(FILE* file, const char* data, size_t size) {
    return fwrite(data, 1, size, file) == size ? ZylError::ZYL_NO_ERROR : ZylError::ZYL_WRITE_FILE_FAILED;
}

}  // namespace

int ZylOutStream::textize(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int code = vtextize(format, arguments);
    va_end(arguments);
    return code;
}

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

int ZylOutStream::join(std::initializer_list<std::string_view> pieces) {
    ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
    if (_file == nullptr) return _state = _buf.join(pieces);
    for (std::string_view piece : pieces) {
        _state = WriteFile(_file, piece.data(), piece.size());
        if (_state != ZylError::ZYL_NO_ERROR) break;
    }
    return _state;
}

int ZylOutStream::output(const char* data, unsigned long size) {
    ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
    ORVANE_ASSERT(NULL != data);
    _state = _file == nullptr ? _buf.writeBytes(data, size) : WriteFile(_file, data, size);
    return _state;
}

}  // namespace Quern
