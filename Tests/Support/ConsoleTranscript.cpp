#include "Support/ConsoleTranscript.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <regex>

#include "Base/ConsoleSink.h"

namespace Orvane::Testing {
namespace {

std::string Shorten(const std::string& line) {
    static const std::regex kLogLine(R"(\[[-0-9: ]+\] \| (\w+) \| \[[^\]]*\] \|\d+\| [^|]*\|[^|]*\| ([^]*))");
    std::smatch parts;
    return std::regex_match(line, parts, kLogLine) ? parts[1].str() + " " + parts[2].str() : line;
}

}  // namespace

class ConsoleTranscript::Sink final : public Quern::ConsoleSink {
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

ConsoleTranscript::ConsoleTranscript() : _sink(std::make_shared<Sink>()) {
    Quern::ConsoleSink::Use(_sink);
}

ConsoleTranscript::~ConsoleTranscript() {
    Quern::ConsoleSink::Use(nullptr);
}

std::vector<std::string> ConsoleTranscript::Take() {
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

}  // namespace Orvane::Testing
