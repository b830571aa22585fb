// Sends events to an OTLP receiver, as the environment says.
#ifndef ORVANE_EXAMPLES_PELL_FORWARDER_H
#define ORVANE_EXAMPLES_PELL_FORWARDER_H

#include <chrono>
#include <memory>

#include "EventBytes.h"
#include "Orvane/IEvent.h"
#include "Otlp/Exporter.h"

namespace Pell {

// Any thread. Where the environment names no endpoint (Otlp/Environment.h), it wants nothing. With PELL_OTLP_OPENID set
// to 1 the logged-in user's id goes along.
class Forwarder {
public:
    // Reads the environment, and says on the console what in it makes no sense. Starts no thread: the first event does.
    Forwarder();

    // Whether an event of that name is to be sent.
    bool Wants(const char* eventName) const;
    // Takes the event; waits for nothing. One for which there is no room is dropped, and counted (Exporter.h).
    // `isSpan`: it names a trace and a span.
    void Send(const EventBytes& event, bool isSpan);
    // Waits until all that was taken has been sent, at most that long. More may come afterwards.
    void Flush(std::chrono::milliseconds deadline);

private:
    std::unique_ptr<OrvaneOtlp::Exporter> _spans;  // null where its signal has no endpoint
    std::unique_ptr<OrvaneOtlp::Exporter> _logs;
};

// An event that the forwarder takes. One thread at a time.
class ForwardedEvent final : public Orvane::Plugin::IEvent {
public:
    // `forwarder` is borrowed, and outlives the event.
    ForwardedEvent(Forwarder& forwarder, int source, const char* name);
    void Add(const char* key, const char* value, int length) override;
    void Add(int key, const char* value, int length) override { _bytes.Add(key, value, length); }
    void Add(int key, int value) override { _bytes.Add(key, value); }
    void Report() override { _forwarder.Send(_bytes, _isSpan && _hasTrace && _hasId); }

private:
    Forwarder& _forwarder;
    EventBytes _bytes;
    bool _isSpan, _hasTrace = false, _hasId = false;
};

}  // namespace Pell

#endif
