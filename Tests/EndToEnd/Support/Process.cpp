#include "Support/Process.h"

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

namespace EndToEnd {
namespace {

struct Pipe {
    int read = -1;
    int write = -1;
};

Pipe MakePipe() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    return {ends[0], ends[1]};
}

// Everything that allocates is made before the fork.
std::vector<std::string> EnvironmentOf(const Command& command) {
    std::vector<std::string> all;
    for (char** entry = environ; *entry; ++entry) {
        const std::string text = *entry;
        const std::string name = text.substr(0, text.find('='));
        bool replaced = false;
        for (const auto& [key, value] : command.environment)
            replaced |= key == name;
        if (!replaced) all.push_back(text);
    }
    for (const auto& [key, value] : command.environment)
        all.push_back(key + "=" + value);
    return all;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

}  // namespace

Process::Process(const Command& command) {
    signal(SIGPIPE, SIG_IGN);
    const Pipe input = MakePipe(), output = MakePipe(), error = MakePipe(), acknowledged = MakePipe();
    std::vector<std::string> words = command.words, environment = EnvironmentOf(command);
    const std::vector<char*> arguments = Pointers(words), variables = Pointers(environment);

    _id = fork();
    if (_id == 0) {
        // The child's ends have numbers above 3 where the test's own 0 to 3 are taken; copies above 10 are safe to
        // spread over 0 to 3 then.
        const int ends[] = {input.read, output.write, error.write, acknowledged.write};
        int copies[4];
        for (int i = 0; i < 4; ++i)
            copies[i] = fcntl(ends[i], F_DUPFD_CLOEXEC, 10);
        for (int i = 0; i < 4; ++i)
            dup2(copies[i], i);
        signal(SIGPIPE, SIG_DFL);
        if (!command.folder.empty() && chdir(command.folder.c_str()) != 0) _exit(126);
        execvpe(arguments[0], arguments.data(), variables.data());
        _exit(127);
    }
    for (int end : {input.read, output.write, error.write, acknowledged.write})
        close(end);
    _input = input.write;
    _output.descriptor = output.read;
    _error.descriptor = error.read;
    _acknowledged.descriptor = acknowledged.read;
    for (Stream* stream : {&_output, &_error, &_acknowledged}) {
        stream->reader = std::thread([this, stream] { Collect(*stream); });
    }
}

Process::~Process() {
    CloseInput();
    if (!_reaped) {
        kill(_id, SIGKILL);
        Wait();
    }
    for (Stream* stream : {&_output, &_error, &_acknowledged}) {
        if (stream->reader.joinable()) stream->reader.join();
        close(stream->descriptor);
    }
}

void Process::Send(const std::string& text) {
    size_t sent = 0;
    while (sent < text.size()) {
        const ssize_t count = write(_input, text.data() + sent, text.size() - sent);
        if (count < 0 && errno != EINTR) return;
        if (count > 0) sent += static_cast<size_t>(count);
    }
}

void Process::CloseInput() {
    if (_input >= 0) close(_input);
    _input = -1;
}

void Process::Signal(int number) {
    if (!_reaped) kill(_id, number);
}

bool Process::WaitForError(const std::string& text) {
    return WaitFor(_error, [&text](const std::string& all) { return all.find(text) != std::string::npos; });
}

bool Process::WaitForAcknowledged(const std::function<bool(const std::string&)>& condition) {
    return WaitFor(_acknowledged, condition);
}

bool Process::IsSilent() const {
    const std::lock_guard<std::mutex> guard(_mutex);
    return !_acknowledged.open;
}

Ending Process::Wait(std::chrono::milliseconds patience) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!_reaped) {
        int status = 0;
        const pid_t result = waitpid(_id, &status, WNOHANG);
        if (result == _id) {
            _reaped = true;
            _ending.ended = true;
            _ending.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
            _ending.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
        } else if (std::chrono::steady_clock::now() > deadline) {
            return _ending;
        } else {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }
    for (Stream* stream : {&_output, &_error, &_acknowledged}) {
        if (stream->reader.joinable()) stream->reader.join();
    }
    return _ending;
}

std::string Process::Output() const {
    return TextOf(_output);
}
std::string Process::Error() const {
    return TextOf(_error);
}
std::string Process::Acknowledged() const {
    return TextOf(_acknowledged);
}

void Process::Collect(Stream& stream) {
    char part[65536];
    for (;;) {
        const ssize_t count = read(stream.descriptor, part, sizeof part);
        if (count < 0 && errno == EINTR) continue;
        const std::lock_guard<std::mutex> guard(_mutex);
        if (count > 0) stream.text.append(part, static_cast<size_t>(count));
        stream.open = count > 0;
        _changed.notify_all();
        if (!stream.open) return;
    }
}

bool Process::WaitFor(Stream& stream, const std::function<bool(const std::string&)>& condition) {
    std::unique_lock<std::mutex> guard(_mutex);
    const auto done = [&] { return condition(stream.text) || !stream.open; };
    return _changed.wait_for(guard, kPatience, done) && condition(stream.text);
}

std::string Process::TextOf(const Stream& stream) const {
    const std::lock_guard<std::mutex> guard(_mutex);
    return stream.text;
}

std::string RunToEnd(const Command& command, Ending* ending, std::string* error) {
    Process process(command);
    process.CloseInput();
    const Ending how = process.Wait();
    if (ending) *ending = how;
    if (error) *error = process.Error();
    return process.Output();
}

}  // namespace EndToEnd
