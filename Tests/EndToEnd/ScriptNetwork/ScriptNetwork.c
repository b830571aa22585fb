/* What a game's script layer does with the network: it asks for the state and the detail record, and hears of a cable
 * that is pulled out and put back. */
#define _GNU_SOURCE
#include <poll.h>
#include <sched.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "Orvane/OrvaneCore.h"
#include "Orvane/RunTime.h"

/* The functions that C++ sees, by the names that the product exports. */
bool IsNumericIPv4(const char* text) __asm__("_Z21IsNumericIPv4NotationPKc");
bool IsNumericIPv6(const char* text) __asm__("_Z21IsNumericIPv6NotationPKc");
bool Convert(const char* text, void* out) __asm__("_Z14ConvertIpV4To6PKcRN5Quern7AStringE");

static char states[16];

static void OnChanged(quern_network_state state) {
    const size_t used = strlen(states);
    if (used + 1 < sizeof states) states[used] = (char)('0' + state);
}

#define REQUIRE(condition)                                                      \
    do {                                                                        \
        if (!(condition)) {                                                     \
            fprintf(stderr, "failed: %s (heard \"%s\")\n", #condition, states); \
            exit(1);                                                            \
        }                                                                       \
    } while (0)

static void Ip(const char* batch) {
    FILE* const ip = popen("ip -batch -", "w");
    REQUIRE(ip && fputs(batch, ip) >= 0 && pclose(ip) == 0);
}

/* Turns the library's loop until as many states have come as there are in `wanted`. */
static void RequireHeard(const char* wanted) {
    for (int turns = 0; turns < 2000 && strlen(states) < strlen(wanted); ++turns) {
        orvane_class_perform(orvane_class_lookup("OrvaneMainRunLoop"), "runPending", NULL);
        poll(NULL, 0, 10);
    }
    REQUIRE(strcmp(states, wanted) == 0);
}

int main(void) {
    if (unshare(CLONE_NEWNET) != 0) {
        fprintf(stderr, "SKIPPED: needs the right to make network namespaces\n");
        return 77;
    }
    REQUIRE(quern_network_GetNetworkState() == kANetworkNotReachable);
    quern_network_SetNetworkChangedCallback(OnChanged);
    Ip("link add eth0 type veth peer name far0\nlink set far0 up\nlink set eth0 up\naddress add 10.1.0.2/24 dev eth0\n"
       "route add default via 10.1.0.1\n");
    RequireHeard("2");
    REQUIRE(quern_network_GetNetworkState() == kANetworkReachableViaWiFi);

    char record[25] = "";
    const char wanted[25] = {0, 0, 0, 2};
    REQUIRE(!quern_network_GetDetailNetworkInfo(record, 24));
    REQUIRE(record[3] == 0);
    REQUIRE(quern_network_GetDetailNetworkInfo(record, 25));
    REQUIRE(memcmp(record, wanted, 24) == 0);

    Ip("link set far0 down\n");
    RequireHeard("20");
    quern_network_SetNetworkChangedCallback(NULL);
    REQUIRE(IsNumericIPv4("1.2.3.4:80") && !IsNumericIPv4("::1"));
    REQUIRE(IsNumericIPv6("::1") && !IsNumericIPv6("1.2.3.4:80"));
    REQUIRE(!Convert(NULL, record));
    return 0;
}
