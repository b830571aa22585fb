#include "Storage/File/GetLine.h"

#include <string>

namespace Quern {
namespace {

constexpr size_t kUsualCapacity = 1024;

}  // namespace

int getline(FILE* file, AString& line) {
    std::string bytes;
    bytes.reserve(kUsualCapacity);
    flockfile(file);  // once a line, and not once a byte
    int byte;
    while ((byte = getc_unlocked(file)) != EOF && byte != '\r' && byte != '\n')
        bytes += static_cast<char>(byte);
    funlockfile(file);
    if (byte == EOF) return -1;
    line = AString(bytes.data(), static_cast<int>(bytes.size()));
    return line.length();
}

}  // namespace Quern
