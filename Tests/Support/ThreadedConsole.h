// The console of a test: keeps the lines that the code under test writes, and which thread wrote each. Until the
// library's own logger has started, these are its log lines.
#ifndef ORVANE_TESTS_SUPPORT_THREADED_CONSOLE_H
#define ORVANE_TESTS_SUPPORT_THREADED_CONSOLE_H

#include <unistd.h>

#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "Base/ConsoleSink.h"
#include "Support/WaitFor.h"

namespace OrvaneTest {

class ThreadedConsole : public Quern::ConsoleSink {
public:
    struct Line {
        pid_t thread;  // the kernel's number of the thread that wrote it
        std::string text;
    };

    // Puts a new one in force.
    static std::shared_ptr<ThreadedConsole> Install() {
        auto console = std::make_shared<ThreadedConsole>();
        Use(console);
        return console;
    }

    void Write(const char* text, size_t length) override {
        const std::lock_guard guard(_mutex);
        _lines.push_back({gettid(), std::string(text, length)});
    }

    // All that was written, oldest first.
    std::vector<Line> Lines() const {
        const std::lock_guard guard(_mutex);
        return _lines;
    }
    // The message behind the head of each log line that a thread wrote; of every thread with 0.
    std::vector<std::string> Messages(pid_t thread = 0) const {
        std::vector<std::string> messages;
        for (const Line& line : Lines()) {
            if (thread == 0 || line.thread == thread) messages.push_back(Message(line.text));
        }
        return messages;
    }
    // How many lines contain a text.
    int Count(std::string_view text) const {
        int count = 0;
        for (const Line& line : Lines())
            count += line.text.find(text) != std::string::npos;
        return count;
    }
    // Whether a line of that level ("Info", ...) has exactly that message.
    bool Has(std::string_view level, std::string_view message) const {
        const std::string levelField = "] | " + std::string(level) + " | [";
        for (const Line& line : Lines()) {
            if (line.text.find(levelField) != std::string::npos && Message(line.text) == message) return true;
        }
        return false;
    }
    // Waits for a line that contains a text, and gives the thread that wrote it; 0 after the deadline.
    pid_t WaitForWriter(std::string_view text) const {
        pid_t writer = 0;
        WaitFor([&] {
            for (const Line& line : Lines()) {
                if (line.text.find(text) != std::string::npos) writer = line.thread;
            }
            return writer != 0;
        });
        return writer;
    }

private:
    // "[time] | Level | [Module] |thread| file:line|function| message"
    static std::string Message(const std::string& line) {
        size_t at = 0;
        for (int separator = 0; separator < 6; ++separator) {
            at = line.find('|', at);
            if (at == std::string::npos) return line;
            ++at;
        }
        const size_t end = line.find_last_not_of('\n');
        return line.substr(at + 1, end - at);
    }

    mutable std::mutex _mutex;
    std::vector<Line> _lines;
};

}  // namespace OrvaneTest

#endif
