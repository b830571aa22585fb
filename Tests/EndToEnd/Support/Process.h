// A real child process, with what it says on its descriptors collected as it says it.
#ifndef ORVANE_TESTS_END_TO_END_PROCESS_H
#define ORVANE_TESTS_END_TO_END_PROCESS_H

#include <sys/types.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace EndToEnd {

// How long anything that must happen may take, sanitizers and a busy machine included.
constexpr std::chrono::seconds kPatience{60};

struct Command {
    std::vector<std::string> words;                                // the program, looked up in PATH, and its arguments
    std::vector<std::pair<std::string, std::string>> environment;  // on top of the test's own
    std::string folder;                                            // working directory; empty: the test's own
};

// How a process ended.
struct Ending {
    bool ended = false;   // false: it did not within the deadline
    int exitStatus = -1;  // -1 after a signal
    int signal = 0;       // 0 after an exit
};

class Process {
public:
    // The child's descriptor on which a program acknowledges; a pipe like its standard output.
    static constexpr int kAcknowledgeDescriptor = 3;

    explicit Process(const Command& command);
    // Kills the child if it still runs.
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    pid_t Id() const { return _id; }
    // Writes to standard input. A child that is gone is no error.
    void Send(const std::string& text);
    void CloseInput();
    void Signal(int number);

    // Waits until the text stands in what came on standard error, or the child closed it. Whether it does.
    bool WaitForError(const std::string& text);
    // Waits until the condition holds of what came on the acknowledge descriptor, or the child closed it. Whether it
    // holds. The condition is called under a lock.
    bool WaitForAcknowledged(const std::function<bool(const std::string&)>& condition);

    // Whether the child has closed its acknowledge descriptor, as it does at its end at the latest.
    bool IsSilent() const;
    // Waits for the end, and for the last of the output.
    Ending Wait(std::chrono::milliseconds patience = kPatience);

    std::string Output() const;
    std::string Error() const;
    std::string Acknowledged() const;

private:
    struct Stream {
        int descriptor = -1;
        bool open = true;
        std::string text;
        std::thread reader;
    };

    void Collect(Stream& stream);
    bool WaitFor(Stream& stream, const std::function<bool(const std::string&)>& condition);
    std::string TextOf(const Stream& stream) const;

    pid_t _id = -1;
    int _input = -1;
    bool _reaped = false;
    Ending _ending;

    mutable std::mutex _mutex;  // guards the streams' text and open
    std::condition_variable _changed;
    Stream _output, _error, _acknowledged;
};

// Runs to the end; what it said on standard output. `ending` may be null.
std::string RunToEnd(const Command& command, Ending* ending = nullptr, std::string* error = nullptr);

}  // namespace EndToEnd

#endif
