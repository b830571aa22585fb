#include "Support/FaultProxy.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>

namespace OrvaneTest {
namespace {

// One read; "" at the end.
std::string Receive(int connection) {
    char buffer[65536];
    const ssize_t count = recv(connection, buffer, sizeof buffer, 0);
    return count > 0 ? std::string(buffer, static_cast<size_t>(count)) : "";
}

}  // namespace

FaultProxy::FaultProxy(int serverPort)
    : _serverPort(serverPort), _service([this](int connection) { Serve(connection); }) {}

FaultProxy::~FaultProxy() {
    {
        const std::lock_guard guard(_mutex);
        _isEnding = true;
        _fault = {};
    }
    _changed.notify_all();
}

std::string FaultProxy::Url(const std::string& target) const {
    return "http://127.0.0.1:" + std::to_string(Port()) + target;
}

void FaultProxy::Use(Fault fault) {
    {
        const std::lock_guard guard(_mutex);
        _fault = std::move(fault);
    }
    _changed.notify_all();
}

void FaultProxy::Release() {
    Use({});
}

Fault FaultProxy::Current() {
    const std::lock_guard guard(_mutex);
    return _fault;
}

void FaultProxy::WaitWhileHeld() {
    std::unique_lock guard(_mutex);
    _changed.wait(guard, [this] { return _isEnding || _fault.kind != Fault::kHold; });
}

void FaultProxy::Serve(int client) {
    Flow flow{.client = client, .server = ConnectTo(_serverPort)};
    pollfd both[] = {{client, POLLIN, 0}, {flow.server, POLLIN, 0}};
    for (bool isOpen = flow.server >= 0; isOpen && poll(both, 2, -1) > 0;) {
        if (both[0].revents) isOpen = ForwardRequest(flow);
        if (isOpen && both[1].revents) isOpen = ForwardAnswer(flow);
    }
    if (flow.server >= 0) close(flow.server);
}

bool FaultProxy::ForwardRequest(Flow& flow) {
    const std::string bytes = Receive(flow.client);
    flow.isAgain = flow.isKept;
    return !bytes.empty() && SendAll(flow.server, bytes);
}

bool FaultProxy::ForwardAnswer(Flow& flow) {
    std::string bytes = Receive(flow.server);
    if (bytes.empty() || (flow.isAgain && Current().kind == Fault::kDieKept)) return false;
    flow.isKept = true;
    return Damage(flow, Current(), std::move(bytes));
}

// False ends the connection.
bool FaultProxy::Damage(Flow& flow, const Fault& fault, std::string bytes) {
    const size_t untilFault = fault.at > flow.forwarded ? fault.at - flow.forwarded : 0;
    const bool isReached = bytes.size() >= untilFault;
    flow.forwarded += bytes.size();
    switch (fault.kind) {
        case Fault::kCut:
        case Fault::kReset:
            if (!isReached) break;
            SendAll(flow.client, bytes.substr(0, untilFault));
            if (fault.kind == Fault::kReset) {
                const linger atOnce{1, 0};
                setsockopt(flow.client, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
            }
            return false;
        case Fault::kHold:
            if (!isReached) break;
            if (!SendAll(flow.client, bytes.substr(0, untilFault))) return false;
            WaitWhileHeld();
            return SendAll(flow.client, bytes.substr(untilFault));
        case Fault::kDrip:
            for (size_t i = 0; i < bytes.size(); i += fault.pace) {
                if (!SendAll(flow.client, bytes.substr(i, fault.pace))) return false;
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            }
            return true;
        case Fault::kInstead:
            SendAll(flow.client, fault.bytes);
            return false;
        case Fault::kLength: {
            const std::string name = "Content-Length: ";
            const size_t begin = bytes.find(name) + name.size();
            bytes.replace(begin, bytes.find('\r', begin) - begin, std::to_string(fault.at));
            SendAll(flow.client, bytes);
            return false;
        }
        case Fault::kEndless:
            while (SendAll(flow.client, bytes))
                bytes.assign(65536, 'x');
            return false;
        default:
            break;
    }
    return SendAll(flow.client, bytes);
}

}  // namespace OrvaneTest
