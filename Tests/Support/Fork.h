// A child of the test, which has what the test has.
#ifndef ORVANE_TESTS_SUPPORT_FORK_H
#define ORVANE_TESTS_SUPPORT_FORK_H

#include <sys/wait.h>
#include <unistd.h>

namespace OrvaneTest {

// Runs the body in a process of its own, whose status is what the body returns. One that hangs is killed.
template <typename Body>
pid_t Fork(Body body) {
    const pid_t child = fork();
    if (child != 0) return child;
    alarm(100);
    _exit(body());
}

// Waits for its end; the status as waitpid gives it.
inline int Wait(pid_t child) {
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

}  // namespace OrvaneTest

#endif
