#include "DevServer/Console/FileEnd.h"

#include <filesystem>
#include <fstream>

namespace OrvaneDevServer {

FileEnd LinesAtEnd(const std::string& path, size_t mostBytes) {
    FileEnd end;
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) return end;  // a pipe is not waited for
    const uintmax_t size = std::filesystem::file_size(path, error);
    if (error) return end;
    const uintmax_t from = size > mostBytes ? size - mostBytes : 0;
    std::ifstream file(path, std::ios::binary);
    std::string text(static_cast<size_t>(size - from), '\0');
    file.seekg(static_cast<std::streamoff>(from));
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<size_t>(file.gcount()));
    end.isCut = from > 0;
    size_t at = 0;
    if (end.isCut) at = text.find('\n') == std::string::npos ? text.size() : text.find('\n') + 1;
    for (size_t newline; (newline = text.find('\n', at)) != std::string::npos; at = newline + 1)
        end.lines.push_back(text.substr(at, newline - at));
    return end;
}

}  // namespace OrvaneDevServer
