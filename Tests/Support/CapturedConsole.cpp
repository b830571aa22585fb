#include "Support/CapturedConsole.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>

#include "Base/ConsoleSink.h"

namespace OrvaneTest {
namespace {

// "[time] | Level | [module] |thread| file:line|function| text" becomes "Level text".
std::string Shorten(const std::string& line) {
    constexpr size_t kBarsBeforeText = 6;
    const size_t level = line.find("] | ");
    if (line.empty() || line[0] != '[' || level == std::string::npos) return line;
    size_t bar = std::string::npos;
    for (size_t bars = 0; bars < kBarsBeforeText; ++bars) {
        bar = line.find('|', bar + 1);
        if (bar == std::string::npos) return line;
    }
    const size_t word = level + 4;
    return line.substr(word, line.find(' ', word) - word) + line.substr(bar + 1);
}

}  // namespace

class CapturedConsole::Sink final : public Quern::ConsoleSink {
public:
    void Write(const char* text, size_t length) override {
        if (length > 0 && text[length - 1] == '\n') --length;
        const std::lock_guard<std::mutex> guard(_lock);
        _lines.emplace_back(text, length);
    }
    std::vector<std::string> Take() {
        const std::lock_guard<std::mutex> guard(_lock);
        return std::move(_lines);
    }

private:
    std::mutex _lock;
    std::vector<std::string> _lines;
};

CapturedConsole::CapturedConsole() : _sink(std::make_shared<Sink>()) {
    Quern::ConsoleSink::Use(_sink);
}

CapturedConsole::~CapturedConsole() {
    Quern::ConsoleSink::Use(nullptr);
}

std::vector<std::string> CapturedConsole::Take() {
    std::vector<std::string> lines = _sink->Take();
    for (std::string& line : lines)
        line = Shorten(line);
    return lines;
}

std::string Format(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    char text[1024];
    vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return text;
}

}  // namespace OrvaneTest
