// What the library writes on the console while the object lives, in place of standard error.
#ifndef ORVANE_TESTS_SUPPORT_CAPTURED_CONSOLE_H
#define ORVANE_TESTS_SUPPORT_CAPTURED_CONSOLE_H

#include <sys/types.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace OrvaneTest {

// Captures platform log lines, and log lines as long as the library's own logger has not started. Any thread may write.
// A log line stands here as its level's word and its text ("Error eventName is null"), a platform log line as it is.
class CapturedConsole {
public:
    CapturedConsole();
    ~CapturedConsole();

    // What was written since the last call, which is gone from here then.
    std::vector<std::string> Take();

    // Of what is still here, oldest first: the texts without their levels that a thread wrote (by the kernel's number;
    // every thread with 0), and how many whole lines contain a text.
    std::vector<std::string> Messages(pid_t thread = 0) const;
    int Count(std::string_view text = "") const;
    // Whether a line of that level has exactly that text.
    bool Has(const std::string& level, const std::string& text) const;
    // Waits for a line that contains a text, and gives the thread that wrote it; 0 after the deadline.
    pid_t WaitForWriter(std::string_view text) const;

private:
    class Sink;
    std::shared_ptr<Sink> _sink;
};

// printf into a string, for the texts of expected lines.
std::string Format(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace OrvaneTest

#endif
