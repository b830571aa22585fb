#include "Support/Process.h"

#include <stdexcept>

#include "Support/Test.h"

namespace EndToEnd {
namespace {

// By way of the program env: behind the fork, where nothing may be allocated, there is nothing left to do but the exec.
std::vector<std::string> WordsOf(const Command& command) {
    std::vector<std::string> words = {"env", "--chdir", command.folder.empty() ? "." : command.folder};
    for (const auto& [name, value] : command.environment)
        words.push_back(name + "=" + value);
    words.insert(words.end(), command.words.begin(), command.words.end());
    return words;
}

}  // namespace

Process::Process(const Command& command) {
    signal(SIGPIPE, SIG_IGN);
    std::vector<std::string> words = WordsOf(command);
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    int pipes[4][2];  // by the child's descriptor, whose end comes second
    for (auto& ends : pipes)
        if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    std::swap(pipes[0][0], pipes[0][1]);

    _id = fork();
    if (_id == 0) {
        // The child's ends have numbers above 3 where the test's own 0 to 3 are taken; copies above 10 are safe to
        // spread over 0 to 3 then.
        for (auto& ends : pipes)
            ends[1] = fcntl(ends[1], F_DUPFD_CLOEXEC, 10);
        for (int i = 0; i < 4; ++i)
            dup2(pipes[i][1], i);
        signal(SIGPIPE, SIG_DFL);
        execvp(arguments[0], arguments.data());
        _exit(127);
    }
    for (const auto& ends : pipes)
        close(ends[1]);
    _input = pipes[0][0];
    for (int i = 0; i < 3; ++i) {
        _streams[i].descriptor = pipes[i + 1][0];
        _streams[i].reader = std::thread([this, i] { Collect(_streams[i]); });
    }
}

Process::~Process() {
    CloseInput();
    Signal(SIGKILL);
    Wait();
    for (const Stream& stream : _streams)
        close(stream.descriptor);
}

void Process::Send(const std::string& text) {
    [[maybe_unused]] const ssize_t sent = write(_input, text.data(), text.size());
}

void Process::CloseInput() {
    if (_input >= 0) close(_input);
    _input = -1;
}

void Process::Signal(int number) {
    if (!_isReaped) kill(_id, number);
}

bool Process::IsSilent() const {
    const std::lock_guard guard(_mutex);
    return !_acknowledged.isOpen;
}

Ending Process::Wait(std::chrono::milliseconds patience) {
    int status = 0;
    if (_isReaped || !OrvaneTest::WaitFor([&] { return waitpid(_id, &status, WNOHANG) == _id; }, patience))
        return _ending;
    _isReaped = true;
    if (WIFEXITED(status)) _ending.status = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) _ending.signal = WTERMSIG(status);
    for (Stream& stream : _streams)
        stream.reader.join();
    return _ending;
}

void Process::Collect(Stream& stream) {
    char part[65536];
    do {
        const ssize_t count = read(stream.descriptor, part, sizeof part);
        const std::lock_guard guard(_mutex);
        stream.isOpen = count > 0;
        if (stream.isOpen) stream.text.append(part, static_cast<size_t>(count));
        _changed.notify_all();
    } while (stream.isOpen);
}

bool Process::WaitFor(Stream& stream, const std::function<bool(const std::string&)>& condition) {
    std::unique_lock guard(_mutex);
    const auto done = [&] { return condition(stream.text) || !stream.isOpen; };
    return _changed.wait_for(guard, kPatience, done) && condition(stream.text);
}

std::string Process::TextOf(const Stream& stream) const {
    const std::lock_guard guard(_mutex);
    return stream.text;
}

Outcome RunToEnd(const Command& command) {
    Process process(command);
    process.CloseInput();
    return {process.Wait(), process.Output(), process.Error()};
}

}  // namespace EndToEnd
