#include "Support/CapturedConsole.h"

#include <cstdarg>

#include "Base/ConsoleSink.h"
#include "Support/Test.h"

namespace OrvaneTest {
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
        lines.push_back(ShortLogLine(line.text));
    return lines;
}

std::vector<std::string> CapturedConsole::Messages(pid_t thread) const {
    std::vector<std::string> messages;
    for (const Sink::Line& line : _sink->Lines()) {
        const std::string text = ShortLogLine(line.text);
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
        if (ShortLogLine(line.text) == level + " " + text) return true;
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
