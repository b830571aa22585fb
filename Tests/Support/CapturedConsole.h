// What the library writes on the console while the object lives, in place of standard error.
#ifndef ORVANE_TESTS_SUPPORT_CAPTURED_CONSOLE_H
#define ORVANE_TESTS_SUPPORT_CAPTURED_CONSOLE_H

#include <memory>
#include <string>
#include <vector>

namespace OrvaneTest {

// Captures platform log lines, and log lines as long as the library's own logger has not started. Any thread may write.
class CapturedConsole {
public:
    CapturedConsole();
    ~CapturedConsole();

    // What was written since the last call, one entry a line: a log line as its level's word and its text ("Error
    // eventName is null"), a platform log line as it stands.
    std::vector<std::string> Take();

private:
    class Sink;
    std::shared_ptr<Sink> _sink;
};

// printf into a string, for the texts of expected lines.
std::string Format(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace OrvaneTest

#endif
