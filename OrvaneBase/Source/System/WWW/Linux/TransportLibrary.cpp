#include <dlfcn.h>

#include <condition_variable>
#include <mutex>
#include <utility>

#include "Base/XLog.h"
#include "System/WWW/Linux/Transport.h"

namespace Quern {
namespace {

class FailingTransport final : public Transport {
public:
    explicit FailingTransport(std::string reason) : _reason(std::move(reason)) {}

    void Start(UrlSession::TransferId, std::shared_ptr<TransferHandler> handler) override {
        TransferOutcome outcome;
        outcome.error = kUrlUnknown;
        outcome.errorText = _reason;
        handler->OnFinished(outcome);
    }
    void Cancel(UrlSession::TransferId) override {}
    void Step() override {
        std::unique_lock<std::mutex> guard(_lock);
        _woken.wait(guard, [this] { return _isWoken; });
        _isWoken = false;
    }
    void Wake() override {
        const std::lock_guard<std::mutex> guard(_lock);
        _isWoken = true;
        _woken.notify_one();
    }

private:
    const std::string _reason;
    std::mutex _lock;
    std::condition_variable _woken;
    bool _isWoken = false;
};

// Beside the library that this code is in; else where the program's own libraries are searched for.
void* OpenLibrary() {
    static const char kHere = 0;
    Dl_info here;
    std::string folder = dladdr(&kHere, &here) && here.dli_fname ? here.dli_fname : "";
    folder.erase(folder.rfind('/') + 1);
    constexpr int kMode = RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE;
    void* library = folder.empty() ? nullptr : dlopen((folder + kTransportLibrary).c_str(), kMode);
    return library ? library : dlopen(kTransportLibrary, kMode);
}

}  // namespace

std::unique_ptr<Transport> OpenTransport(const TransportOptions& options) {
    Transport* transport = nullptr;
    std::string reason;
    if (void* const library = OpenLibrary()) {
        const auto create = reinterpret_cast<TransportFactory>(dlsym(library, kTransportFactory));
        transport = create ? create(kTransportInterface, options) : nullptr;
        if (!transport) reason = std::string(kTransportLibrary) + " is of another build, or cannot work here";
    } else {
        const char* const error = dlerror();
        reason = error ? error : kTransportLibrary;
    }
    if (transport) return std::unique_ptr<Transport>(transport);
    ORVANE_CONSOLE(kLogError, "no HTTP: %s", reason.c_str());
    return NoTransport(std::string(kTransportLibrary) + " is missing");
}

std::unique_ptr<Transport> NoTransport(std::string reason) {
    return std::make_unique<FailingTransport>(std::move(reason));
}

}  // namespace Quern
