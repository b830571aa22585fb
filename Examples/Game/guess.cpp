// The game of guess.c in C++11, with what an engine has beside it: a loop of its own, into which the library's is
// embedded, and a file of its own, in which it keeps the best result.
#include <poll.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

#include "Orvane/Game.h"
#include "Orvane/IConfigFile.h"
#include "Orvane/MainRunLoop.h"
#include "Orvane/OrvaneCore.h"

namespace {

void Log(ALogPriority level, const std::string& text, unsigned int line, const char* function) {
    orvane_log_logx(level, text.c_str(), __FILE__, line, function, nullptr);
}
#define SAY(level, text) Log(level, text, __LINE__, __func__)

// Lines of the standard input, while the main thread does the library's work, too.
class Input {
public:
    // False at the end of the input.
    bool Next(std::string& line) {
        size_t end;
        while ((end = _text.find('\n')) == std::string::npos)
            if (!WaitForMore()) return false;
        line = _text.substr(0, end);
        _text.erase(0, end + 1);
        return true;
    }

private:
    bool WaitForMore() {
        pollfd ready[] = {{STDIN_FILENO, POLLIN, 0}, {gs_OrvaneMainRunLoopDescriptor(), POLLIN, 0}};
        if (poll(ready, 2, -1) < 0) return false;
        if (ready[1].revents != 0) gs_OrvaneMainRunLoopRunPending();
        if (ready[0].revents == 0) return true;
        char bytes[256];
        const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
        if (count > 0) _text.append(bytes, static_cast<size_t>(count));
        return count > 0;
    }

    std::string _text;
};

// The fewest guesses that a player has ever needed.
class BestResult {
public:
    BestResult() : _file(OrvaneCore_NewConfigFile("Results")) {}
    ~BestResult() { OrvaneCore_DeleteConfigFile(&_file); }
    BestResult(const BestResult&) = delete;
    BestResult& operator=(const BestResult&) = delete;

    // Whether the result is better than all before.
    bool Take(int guesses) {
        const int best = _file->GetFromCache("Results", "best", 0);
        return (best == 0 || guesses < best) && _file->SetAndSave("Results", "best", guesses);
    }

private:
    Orvane::IConfigFile* _file;
};

// One round. False once the input has ended.
bool Play(Input& input, BestResult& best, int largest) {
    const int secret = rand() % largest + 1;
    SAY(kLogInfo, "a round begins, 1 to " + std::to_string(largest));
    printf("A number from 1 to %d.\n", largest);
    std::string line;
    for (int count = 1; input.Next(line); ++count) {
        if (line == "pause") {
            gs_OrvaneGameEnteredBackground();
            const bool goesOn = input.Next(line);
            gs_OrvaneGameCameBack();
            if (!goesOn) break;
        }
        const int guess = atoi(line.c_str());
        SAY(kLogInfo, "guess " + std::to_string(count) + " is " + std::to_string(guess));
        if (guess == secret) {
            SAY(kLogEvent, "found after " + std::to_string(count) + " guesses");
            puts(best.Take(count) ? "That is it, and the best result so far!" : "That is it!");
            return true;
        }
        puts(guess < secret ? "Higher." : "Lower.");
    }
    SAY(kLogEvent, "given up");
    return false;
}

}  // namespace

int main() {
    setvbuf(stdout, nullptr, _IOLBF, 0);
    srand(static_cast<unsigned int>(time(nullptr)));
    if (!gs_OrvaneGameLaunched()) fputs("OrvaneCore is not in this process.\n", stderr);
    orvane_log_init();
    if (gs_OrvaneGameLogState() != kOrvaneLogDurable) fputs("A crash will cost lines of the log.\n", stderr);
    quern_network_SetNetworkChangedCallback(
        [](quern_network_state state) { SAY(kLogInfo, "the network is " + std::to_string(static_cast<int>(state))); });

    const int largest = quern_remoteconfig_GetInt("LargestNumber", 100);
    Input input;
    BestResult best;
    while (Play(input, best, largest > 0 ? largest : 100))
        continue;

    gs_OrvaneGameEnds();
    return 0;
}
