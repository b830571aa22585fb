// HTTP tasks against libcurl by itself, on a server of its own process.
#include <arpa/inet.h>
#include <fcntl.h>
#include <net/if.h>
#include <sched.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>

#include "Base/ConsoleSink.h"
#include "Downloads.h"
#include "Gets.h"
#include "Support/Ratio.h"

namespace {

class Silence final : public Quern::ConsoleSink {
public:
    void Write(const char*, size_t) override {}
};

// A network of this process's own, whose name server answers nothing.
bool BecomeMute() {
    if (unshare(CLONE_NEWNS | CLONE_NEWNET) != 0) return false;
    const int mute = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ifreq loopback{};
    strcpy(loopback.ifr_name, "lo");
    loopback.ifr_flags = IFF_UP | IFF_RUNNING;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(53);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    char file[] = "/tmp/orvane-bench-resolv-XXXXXX";
    const int descriptor = mkstemp(file);
    const char line[] = "nameserver 127.0.0.1\n";
    const bool isMute = write(descriptor, line, strlen(line)) > 0 && ioctl(mute, SIOCSIFFLAGS, &loopback) == 0 &&
                        bind(mute, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
                        mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                        mount(file, "/etc/resolv.conf", nullptr, MS_BIND, nullptr) == 0;
    close(descriptor);
    unlink(file);
    return isMute;
}

}  // namespace

int main(int argc, char** argv) {
    using namespace Orvane::Bench;
    Quern::ConsoleSink::Use(std::make_shared<Silence>());
    if (argc > 2 && strcmp(argv[1], "exit") == 0) return ExitInFlight(argv[2]);
    const bool isMute = BecomeMute();
    const BenchServer server;
    PrintHead();
    MeasureGets(server);
    MeasureBesideSlowListener(server);
    MeasureDownload(server);
    MeasureExit(server);
    MeasureBesideHungLookups(server, isMute);
    return 0;
}
