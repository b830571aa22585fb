#include "Serializer/ZYL/ZylXmlFile.h"

#include <cstdio>
#include <memory>
#include <new>

#include "Base/Assert.h"
#include "Serializer/ZYL/ZylError.h"

namespace Quern {
namespace {

struct FileCloser {
    void operator()(FILE* file) const { fclose(file); }
};

// Null, and a code in `state`, where it fails.
char* ReadWhole(FILE* file, int& state) {
    long size = -1;
    if (fseek(file, 0, SEEK_END) == 0) size = ftell(file);
    if (size < 0 || fseek(file, 0, SEEK_SET) != 0) {
        state = ZylError::ZYL_READ_FILE_FAILED;
        return nullptr;
    }
    const auto count = static_cast<unsigned long>(size);
    std::unique_ptr<char[]> text(new (std::nothrow) char[count + 1]);
    if (text == nullptr) {
        state = ZylError::ZYL_ALLOCATE_FAILED;
        return nullptr;
    }
    if (fread(text.get(), 1, count, file) != count) {
        state = ZylError::ZYL_READ_FILE_FAILED;
        return nullptr;
    }
    text[count] = '\0';
    return text.release();
}

}  // namespace

ZylXmlFile::~ZylXmlFile() {
    delete[] buffer;
}

int ZylXmlFile::load(const char* path) {
    ORVANE_ASSERT(NULL != path);
    ORVANE_ASSERT(NULL == buffer);
    ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == state);
    std::unique_ptr<FILE, FileCloser> file(fopen(path, "rb"));
    if (file == nullptr) return state = ZylError::ZYL_OPEN_TO_READ_FAILED;
    buffer = ReadWhole(file.get(), state);
    return state;
}

}  // namespace Quern
