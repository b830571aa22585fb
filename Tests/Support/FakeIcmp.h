// A name resolver and ICMP sockets that do what a test tells them.
#ifndef ORVANE_TESTS_SUPPORT_FAKE_ICMP_H
#define ORVANE_TESTS_SUPPORT_FAKE_ICMP_H

#include <arpa/inet.h>
#include <sys/eventfd.h>

#include <deque>

#include "Support/Test.h"
#include "System/NetworkChecker/IcmpSocket.h"
#include "System/NetworkChecker/NameResolver.h"

namespace OrvaneTest {

using Bytes = std::vector<uint8_t>;

inline Quern::SocketAddress Address(const std::string& text) {
    uint8_t bytes[16];
    const bool isIPv6 = text.find(':') != std::string::npos;
    inet_pton(isIPv6 ? AF_INET6 : AF_INET, text.c_str(), bytes);
    return Quern::MakeSocketAddress(isIPv6 ? Quern::kFamilyIPv6 : Quern::kFamilyIPv4, bytes, 0);
}

// Answers at once with the addresses it was made with, or with an error; made without any, when it is told to.
class FakeResolver : public Quern::NameResolver {
public:
    // Puts a new one in force.
    static std::shared_ptr<FakeResolver> Install(const std::vector<std::string>& addresses = {}) {
        auto resolver = std::make_shared<FakeResolver>();
        for (const std::string& address : addresses)
            resolver->answer.addresses.push_back(Address(address));
        Use(resolver);
        return resolver;
    }

    Lookup Start(const std::string&, Done done, Answer&) override {
        ++lookups;
        if (answer.errorDomain != 0 || !answer.addresses.empty()) {
            done(answer);
        } else {
            const std::lock_guard guard(_mutex);
            _waiting.push_back(std::move(done));
        }
        return std::make_shared<int>();
    }
    void AnswerAll(const Answer& late) {
        std::vector<Done> waiting;
        {
            const std::lock_guard guard(_mutex);
            waiting.swap(_waiting);
        }
        for (const Done& done : waiting)
            done(late);
    }

    Answer answer;
    std::atomic<int> lookups{0};

private:
    std::mutex _mutex;
    std::vector<Done> _waiting;
};

// What goes out, and what comes back for it.
class FakeIcmp : public Quern::IcmpSockets {
public:
    using Answers = std::vector<std::pair<Bytes, std::string>>;  // packets, and who sends them; none: an error of errno
    using OnSend = std::function<Answers(const Bytes& packet)>;

    explicit FakeIcmp(OnSend send) : onSend(std::move(send)) {}

    std::unique_ptr<Quern::IcmpSocket> Open(int) override {
        errno = openError;
        return openError == 0 ? std::make_unique<Socket>(*this) : nullptr;
    }

    OnSend onSend;
    int openError = 0, timeoutError = 0, hopsError = 0, receiveError = EAGAIN;
    ssize_t sent = 0;  // taken as the result of each send, if not 0

private:
    class Socket : public Quern::IcmpSocket {
    public:
        explicit Socket(FakeIcmp& owner) : _owner(owner) {}
        ~Socket() override { close(_descriptor); }
        bool SetReceiveTimeout(int) override { return _owner.timeoutError == 0; }
        bool SetTimeToLive(int) override { return _owner.hopsError == 0; }
        ssize_t SendTo(const void* data, size_t length, const Quern::SocketAddress&) override {
            if (_owner.sent != 0) {
                errno = ENETUNREACH;
                return _owner.sent;
            }
            const auto* bytes = static_cast<const uint8_t*>(data);
            for (auto& answer : _owner.onSend(Bytes(bytes, bytes + length)))
                _answers.push_back(std::move(answer));
            eventfd_write(_descriptor, 1);
            return static_cast<ssize_t>(length);
        }
        ssize_t ReceiveFrom(void* buffer, size_t capacity, Quern::SocketAddress& from) override {
            if (_answers.empty() || _answers.front().first.empty()) {
                errno = _owner.receiveError;
                if (!_answers.empty()) _answers.pop_front();
                return -1;
            }
            const auto [packet, sender] = _answers.front();
            _answers.pop_front();
            from = Address(sender);
            std::copy_n(packet.begin(), std::min(capacity, packet.size()), static_cast<uint8_t*>(buffer));
            return static_cast<ssize_t>(std::min(capacity, packet.size()));
        }
        int Descriptor() const override { return _descriptor; }
        bool IsReadable() override {
            eventfd_t count;
            if (_answers.empty()) eventfd_read(_descriptor, &count);
            return !_answers.empty();
        }

    private:
        FakeIcmp& _owner;
        const int _descriptor = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
        std::deque<std::pair<Bytes, std::string>> _answers;
    };
};

}  // namespace OrvaneTest

#endif
