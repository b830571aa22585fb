#include "Support/CapturedConsole.h"

#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <utility>

#include "Base/ConsoleSink.h"
#include "Support/WaitFor.h"

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
    struct Line {
        pid_t thread;
        std::string text;
    };
    void Write(const char* text, size_t length) override {
        if (length > 0 && text[length - 1] == '\n') --length;
        const std::lock_guard<std::mutex> guard(_lock);
        _lines.push_back({gettid(), std::string(text, length)});
    }
    std::vector<Line> Lines() {
        const std::lock_guard<std::mutex> guard(_lock);
        return _lines;
    }
    std::vector<Line> Take() {
        const std::lock_guard<std::mutex> guard(_lock);
        return std::exchange(_lines, {});
    }

private:
    std::mutex _lock;
    std::vector<Line> _lines;
};

CapturedConsole::CapturedConsole() : _sink(std::make_shared<Sink>()) {
    Quern::ConsoleSink::Use(_sink);
}

CapturedConsole::~CapturedConsole() {
    Quern::ConsoleSink::Use(nullptr);
}

std::vector<std::string> CapturedConsole::Take() {
    std::vector<std::string> lines;
    for (const Sink::Line& line : _sink->Take())
        lines.push_back(Shorten(line.text));
    return lines;
}

std::vector<std::string> CapturedConsole::Messages(pid_t thread) const {
    std::vector<std::string> messages;
    for (const Sink::Line& line : _sink->Lines()) {
        const std::string text = Shorten(line.text);
        if (thread == 0 || line.thread == thread) messages.push_back(text.substr(text.find(' ') + 1));
    }
    return messages;
}

int CapturedConsole::Count(std::string_view text) const {
    int count = 0;
    for (const Sink::Line& line : _sink->Lines())
        count += line.text.find(text) != std::string::npos;
    return count;
}

bool CapturedConsole::Has(const std::string& level, const std::string& text) const {
    for (const Sink::Line& line : _sink->Lines())
        if (Shorten(line.text) == level + " " + text) return true;
    return false;
}

pid_t CapturedConsole::WaitForWriter(std::string_view text) const {
    pid_t writer = 0;
    WaitFor([&] {
        for (const Sink::Line& line : _sink->Lines())
            if (line.text.find(text) != std::string::npos) writer = line.thread;
        return writer != 0;
    });
    return writer;
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
