// Stands in front of any server on TCP, and does to its answers what networks and broken servers do.
#ifndef ORVANE_TESTS_SUPPORT_FAULT_PROXY_H
#define ORVANE_TESTS_SUPPORT_FAULT_PROXY_H

#include <condition_variable>
#include <mutex>
#include <string>

#include "Support/TcpService.h"

namespace OrvaneTest {

// What happens to the bytes from the server, on each connection by itself. `at` counts them.
struct Fault {
    enum Kind {
        kNone,
        kCut,      // the connection is closed at a byte
        kReset,    // likewise, by a reset
        kHold,     // nothing more comes from a byte on, until Release
        kDrip,     // `pace` bytes every 10 ms
        kInstead,  // `bytes` come in place of the answer, and the connection is closed
        kLength,   // the first Content-Length is replaced by the number `at`
        kEndless,  // the answer is followed by bytes without end
        kDieKept,  // a second request on a connection reaches the server, and the connection is closed unanswered
    };
    Kind kind = kNone;
    size_t at = 0;
    size_t pace = 1;
    std::string bytes = {};
};

class FaultProxy {
public:
    explicit FaultProxy(int serverPort);
    ~FaultProxy();

    int Port() const { return _service.Port(); }
    std::string Url(const std::string& target = "/") const;
    int Connections() const { return _service.Connections(); }

    // For what is read from the server from now on.
    void Use(Fault fault);
    // Lets go of every connection that is held.
    void Release();

private:
    struct Flow {
        int client;
        int server;
        size_t forwarded = 0;  // bytes of the server
        bool isKept = false;   // an answer has gone
        bool isAgain = false;  // the last request came after one
    };

    void Serve(int client);
    bool ForwardRequest(Flow& flow);
    bool ForwardAnswer(Flow& flow);
    bool Damage(Flow& flow, const Fault& fault, std::string bytes);
    void WaitWhileHeld();
    Fault Current();

    const int _serverPort;
    std::mutex _mutex;
    std::condition_variable _changed;
    Fault _fault;
    bool _isEnding = false;
    TcpService _service;  // last: its threads use the others
};

}  // namespace OrvaneTest

#endif
