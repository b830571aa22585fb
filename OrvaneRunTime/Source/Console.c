#define _POSIX_C_SOURCE 200809L

#include <errno.h>
#include <poll.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/time.h>
#include <sys/uio.h>
#include <time.h>
#include <unistd.h>

#include "Orvane/RunTime.h"

enum { kHeadRoom = 64, kFormatRoom = 1024, kPatienceMilliseconds = 1000 };

// Breaking the time down consults the zone, which may touch the file system; one break-down a second is enough.
static void local_time(time_t seconds, struct tm* out) {
    static __thread time_t cached_second = -1;
    static __thread struct tm cached;
    if (seconds != cached_second) {
        localtime_r(&seconds, &cached);
        cached_second = seconds;
    }
    *out = cached;
}

// Whether the console was waited for in vain: until it takes something again, lines that find no room are dropped,
// since one that nobody reads must not hold the game up a second a line.
static int g_is_stuck;

// Waits for a console that takes no more at the moment, since whoever shares it made it non-blocking.
static int wait_writable(void) {
    struct pollfd console = {STDERR_FILENO, POLLOUT, 0};
    const int patience = __atomic_load_n(&g_is_stuck, __ATOMIC_RELAXED) ? 0 : kPatienceMilliseconds;
    int ready;
    do {
        ready = poll(&console, 1, patience);
    } while (ready < 0 && errno == EINTR);
    __atomic_store_n(&g_is_stuck, ready <= 0, __ATOMIC_RELAXED);
    return ready > 0;
}

// A line goes out in one call, so that lines of several threads and processes do not mix; in more only where the
// console takes a part of it.
static void write_all(struct iovec* parts, int count) {
    while (count > 0) {
        ssize_t written = writev(STDERR_FILENO, parts, count);
        if (written < 0) {
            if (errno == EINTR) continue;
            if ((errno == EAGAIN || errno == EWOULDBLOCK) && wait_writable()) continue;
            return;  // there is nowhere to report that the console is gone
        }
        while (count > 0 && (size_t)written >= parts->iov_len) {
            written -= (ssize_t)parts->iov_len;
            ++parts;
            --count;
        }
        if (count > 0) {
            parts->iov_base = (char*)parts->iov_base + written;
            parts->iov_len -= (size_t)written;
        }
    }
}

void orvane_console_write(const char* text, size_t length) {
    const int saved_errno = errno;
    if (!text) {
        text = "";
        length = 0;
    }
    if (length > 0 && text[length - 1] == '\n') --length;

    struct timeval now;
    struct tm local;
    gettimeofday(&now, NULL);
    local_time(now.tv_sec, &local);
    char head[kHeadRoom];
    const int head_length =
        snprintf(head, sizeof head, "%04d-%02d-%02d %02d:%02d:%02d.%03d [%d] ", local.tm_year + 1900, local.tm_mon + 1,
                 local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec, (int)(now.tv_usec / 1000), (int)getpid());

    struct iovec parts[3] = {
        {head, (size_t)head_length},
        {(void*)(uintptr_t)text, length},
        {(void*)(uintptr_t) "\n", 1},
    };
    write_all(parts, 3);
    errno = saved_errno;
}

void orvane_console_log(const char* format, ...) {
    if (!format) return;
    char small[kFormatRoom];
    va_list arguments;
    va_start(arguments, format);
    const int length = vsnprintf(small, sizeof small, format, arguments);
    va_end(arguments);
    if (length < 0) return;
    if ((size_t)length < sizeof small) {
        orvane_console_write(small, (size_t)length);
        return;
    }

    char* large = malloc((size_t)length + 1);
    if (!large) {
        orvane_console_write(small, sizeof small - 1);
        return;
    }
    va_start(arguments, format);
    vsnprintf(large, (size_t)length + 1, format, arguments);
    va_end(arguments);
    orvane_console_write(large, (size_t)length);
    free(large);
}
