// A real child process, with what it says on its descriptors collected as it says it.
#ifndef ORVANE_TESTS_END_TO_END_PROCESS_H
#define ORVANE_TESTS_END_TO_END_PROCESS_H

#include "Support/Test.h"

namespace EndToEnd {

// How long anything that must happen may take, sanitizers and a busy machine included.
constexpr std::chrono::seconds kPatience{60};

struct Command {
    std::vector<std::string> words;                                // the program, looked up in PATH, and its arguments
    std::vector<std::pair<std::string, std::string>> environment;  // on top of the test's own
    std::string folder;                                            // working directory; empty: the test's own
};

// How a process ended; both as they are here, if it did not within the deadline.
struct Ending {
    int status = -1;  // of its exit; -1 after a signal
    int signal = 0;   // 0 after an exit
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
    // A child that is known to have ended gets none.
    void Signal(int number);

    // Waits until the text stands in what came on standard error, or the child closed it. Whether it does.
    bool WaitForError(const std::string& text) {
        return WaitFor(_error, [&text](const std::string& all) { return all.find(text) != std::string::npos; });
    }
    // Waits until the condition holds of what came on the acknowledge descriptor, or the child closed it. Whether it
    // holds. The condition is called under a lock.
    bool WaitForAcknowledged(const std::function<bool(const std::string&)>& condition) {
        return WaitFor(_acknowledged, condition);
    }

    // Whether the child has closed its acknowledge descriptor, as it does at its end at the latest.
    bool IsSilent() const;
    // Waits for the end, and for the last of the output.
    Ending Wait(std::chrono::milliseconds patience = kPatience);

    std::string Output() const { return TextOf(_output); }
    std::string Error() const { return TextOf(_error); }
    std::string Acknowledged() const { return TextOf(_acknowledged); }

private:
    struct Stream {
        int descriptor = -1;
        bool isOpen = true;
        std::string text;
        std::thread reader;
    };

    void Collect(Stream& stream);
    bool WaitFor(Stream& stream, const std::function<bool(const std::string&)>& condition);
    std::string TextOf(const Stream& stream) const;

    pid_t _id = -1;
    int _input = -1;
    bool _isReaped = false;
    Ending _ending;

    mutable std::mutex _mutex;  // guards the streams' text and isOpen
    std::condition_variable _changed;
    Stream _streams[3];  // of the child's descriptors from 1 on
    Stream &_output = _streams[0], &_error = _streams[1], &_acknowledged = _streams[2];
};

// How a program ended, and what it said until then.
struct Outcome : Ending {
    std::string output, error;
};

// Runs to the end, with nothing on standard input.
Outcome RunToEnd(const Command& command);

}  // namespace EndToEnd

#endif
