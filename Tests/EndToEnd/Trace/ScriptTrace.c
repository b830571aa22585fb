/* What a game's script layer does to trace: before the launch nothing happens; after it a span reaches the data plugin.
 * usage: script-trace DATA_PLUGIN */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "Orvane/OrvaneCore.h"
#include "Orvane/RunTime.h"
#include "Support/Require.h"

int main(int count, char** arguments) {
    char span[64], trace[33], line[4096] = "";
    unlink(getenv("PELL_EVENTS"));
    REQUIRE(count == 2 && dlopen(arguments[1], RTLD_NOW));
    REQUIRE(orvanecore_onetrace_GetTraceId(trace, 33) && *trace == '\0');
    REQUIRE(orvanecore_onetrace_CreateContext(NULL, NULL, span, 64) && *span == '\0');
    orvanecore_onetrace_SpanStart(span, "n", "l", "r");
    orvanecore_onetrace_SpanFlush(span, "k", "v");
    orvanecore_onetrace_SpanFinish(span, "0", "");

    orvane_object* lifecycle = orvane_class_perform(orvane_class_lookup("OrvaneAppLifecycle"), "sharedInstance", NULL);
    void* const nothing[] = {NULL, NULL};
    orvane_object_perform(lifecycle, "application:didFinishLaunchingWithOptions:", nothing);
    REQUIRE(!orvanecore_onetrace_GetTraceId(trace, 32));
    REQUIRE(orvanecore_onetrace_GetTraceId(trace, 33) && strlen(trace) == 32);
    REQUIRE(orvanecore_onetrace_CreateContext("parent-of-it-1", "7", span, 64) && strstr(span, "-it-"));
    orvanecore_onetrace_SpanStart(span, "Login", "game_client", "server");
    orvanecore_onetrace_SpanFlush(span, "attempt", "2");
    orvanecore_onetrace_SpanFinish(span, "0", "");

    FILE* const events = fopen(getenv("PELL_EVENTS"), "r");
    while (events && fgets(line, sizeof line, events) && !strstr(line, "YarrowClient")) {
    }
    REQUIRE(strstr(line, "{\"key\":\"buzid\",\"text\":\"30045\"}") &&
            strstr(line, "{\"key\":\"pid\",\"text\":\"it\"}"));
    REQUIRE(strstr(line, "{\"key\":\"tags\",\"text\":\"{\\\"attempt\\\":\\\"2\\\"}\"}") && strstr(line, trace));
    return 0;
}
