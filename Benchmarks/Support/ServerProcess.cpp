#include "Support/ServerProcess.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>

#include "Support/TcpService.h"

namespace Orvane::Bench {

ServerProcess::ServerProcess(std::function<void(int connection, int port)> serve) {
    int out[2];
    if (pipe(out) != 0) abort();
    if ((_process = fork()) == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        std::atomic<int> port{0};
        const OrvaneTest::TcpService service([&](int connection) { serve(connection, port); });
        const int own = port = service.Port();  // nobody connects before it is told
        if (write(out[1], &own, sizeof own) != sizeof own) abort();
        for (;;)
            pause();
    }
    if (read(out[0], &_port, sizeof _port) != sizeof _port) abort();
    close(out[0]);
    close(out[1]);
}

ServerProcess::~ServerProcess() {
    kill(_process, SIGKILL);
    waitpid(_process, nullptr, 0);
}

}  // namespace Orvane::Bench
