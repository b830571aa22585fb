/* A whole small game in C99: the player guesses a number. It shows what a game does with the library: says that it has
   launched, keeps a log that survives a crash, reads a setting, traces a round, goes to the background and ends.

   Lines of input: a number is a guess, "pause" puts the game aside until the next line, the end of the input ends it.
 */
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

#include "Orvane/Game.h"
#include "Orvane/MainRunLoop.h"
#include "Orvane/OrvaneCore.h"

#define SAY(level, ...) Log(level, __LINE__, __func__, __VA_ARGS__)

static void Log(ALogPriority level, unsigned int line, const char* function, const char* format, ...) {
    char text[512];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    orvane_log_logx(level, text, __FILE__, line, function, NULL);
}

/* The player has put the game aside, until the next line. False at the end of the input. */
static bool Pause(char* line, int size) {
    gs_OrvaneGameEnteredBackground();
    const bool goesOn = fgets(line, size, stdin) != NULL;
    gs_OrvaneGameCameBack();
    return goesOn;
}

/* One round. False once the input has ended. */
static bool Play(int largest) {
    const int secret = rand() % largest + 1;
    char line[64], span[64] = "", guesses[16];
    int count = 0;
    bool isFound = false;

    orvanecore_onetrace_CreateContext(NULL, NULL, span, sizeof span);
    orvanecore_onetrace_SpanStart(span, "Round", "game_client", "player");
    SAY(kLogInfo, "a round begins, 1 to %d", largest);
    printf("A number from 1 to %d.\n", largest);
    while (!isFound && fgets(line, sizeof line, stdin) != NULL) {
        if (strncmp(line, "pause", 5) == 0 && !Pause(line, sizeof line)) break;
        const int guess = atoi(line);
        ++count;
        isFound = guess == secret;
        SAY(kLogInfo, "guess %d is %d", count, guess);
        puts(isFound ? "That is it!" : guess < secret ? "Higher." : "Lower.");
        gs_OrvaneMainRunLoopRunPending(); /* once a frame: the library's work on this thread */
    }
    SAY(kLogEvent, isFound ? "found after %d guesses" : "given up after %d guesses", count);
    snprintf(guesses, sizeof guesses, "%d", count);
    orvanecore_onetrace_SpanFlush(span, "guesses", guesses);
    orvanecore_onetrace_SpanFinish(span, isFound ? "0" : "1", isFound ? "" : "given up");
    return isFound;
}

int main(void) {
    setvbuf(stdout, NULL, _IOLBF, 0);
    srand((unsigned int)time(NULL));
    if (!gs_OrvaneGameLaunched()) fputs("OrvaneCore is not in this process.\n", stderr);
    orvane_log_init();
    if (gs_OrvaneGameLogState() != kOrvaneLogDurable) fputs("A crash will cost lines of the log.\n", stderr);

    const int largest = quern_remoteconfig_GetInt("LargestNumber", 100);
    while (Play(largest > 0 ? largest : 100))
        continue;

    gs_OrvaneGameEnds();
    return 0;
}
