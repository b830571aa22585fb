#include "Otlp/Exporter.h"

#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <system_error>
#include <utility>

#include "Otlp/Messages.h"
#include "Otlp/RetryDelay.h"

namespace OrvaneOtlp {
namespace {

// What an item costs beside its bytes.
constexpr size_t kItemOverhead = 2 * sizeof(std::string);
constexpr char kNotSent[] = "it is time to end; not sent: ";
// So often it is said that items find no room.
constexpr std::chrono::seconds kOverflowPause{10};

bool IsTransient(int status) {
    return status == 0 || status == 429 || status == 502 || status == 503 || status == 504;
}

std::string Records(uint64_t count) {
    return std::to_string(count) + (count == 1 ? " record" : " records");
}

// The exporters that the end of the process stops. Never destroyed: it may be asked at any time up to the very end.
struct Ending {
    std::mutex mutex;
    std::vector<Exporter*> exporters;
};

Ending& TheEnding() {
    static Ending* const ending = new Ending;
    return *ending;
}

}  // namespace

Exporter::Exporter(const Endpoint& endpoint, Encoder encode, Say say, const ExporterOptions& options,
                   std::shared_ptr<Clock> clock)
    : _encode(std::move(encode)),
      _say(std::move(say)),
      _options(options),
      _url(ShownUrl(endpoint.url)),
      _clock(std::move(clock)),
      _client(MakeCurlClient(endpoint)),
      _random(static_cast<unsigned>(NanosSinceEpoch()) ^ static_cast<unsigned>(getpid())) {}

Exporter::~Exporter() {
    Stop(std::chrono::milliseconds(0));
    Ending& ending = TheEnding();
    const std::lock_guard<std::mutex> guard(ending.mutex);
    ending.exporters.erase(std::remove(ending.exporters.begin(), ending.exporters.end(), this), ending.exporters.end());
}

bool Exporter::Offer(std::string item) {
    bool wakes = false;
    {
        const Lock lock(_mutex);
        if (!Take(item, wakes)) {
            ++_counts.overflow;
            return false;
        }
    }
    // Not under the lock, into which the sender would run.
    if (wakes) _wake.notify_one();
    return true;
}

bool Exporter::Push(std::string& item, std::chrono::milliseconds deadline) {
    bool wakes = false;
    Lock lock(_mutex);
    const Clock::Time until = _clock->Now() + deadline;
    while (!Take(item, wakes)) {
        if (_clock->Now() >= until) return false;
        _clock->Wait(_done, lock, until);
    }
    lock.unlock();
    if (wakes) _wake.notify_one();
    return true;
}

// Under the lock. Takes the item, if there is room, and tells whether the sender has to know.
bool Exporter::Take(std::string& item, bool& wakes) {
    const size_t size = item.size() + kItemOverhead;
    if (_endBy != Clock::Time::max() || _hasEnded || size > _options.maxBytes - _heldBytes) return false;
    if (!_isStarted) {
        _isStarted = true;
        try {
            _thread = std::thread([this] { Run(); });
        } catch (const std::system_error&) {
            _hasEnded = true;
            return false;
        }
        if (_options.exitDeadline.count() > 0) EndWithProcess(this);
    }
    if (_incoming.empty()) _firstCame = _clock->Now();
    const size_t before = _heldBytes;
    _heldBytes += size;
    _incoming.push_back(std::move(item));
    ++_counts.accepted;
    wakes = _incoming.size() == 1 || _incoming.size() == _options.maxBatchItems ||
            (before < _options.maxBatchBytes && _heldBytes >= _options.maxBatchBytes);
    return true;
}

bool Exporter::Flush(std::chrono::milliseconds deadline) {
    Lock lock(_mutex);
    const uint64_t target = _counts.accepted;
    _flushUpTo = target;
    _wake.notify_one();
    const Clock::Time until = _clock->Now() + deadline;
    while (_finished < target && !_hasEnded) {
        if (_clock->Now() >= until) return false;
        _clock->Wait(_done, lock, until);
    }
    return _finished >= target;
}

void Exporter::Stop(std::chrono::milliseconds deadline) {
    std::thread thread;
    {
        Lock lock(_mutex);
        if (_endBy == Clock::Time::max()) _endBy = _clock->Now() + deadline;
        _wake.notify_one();
        while (_isStarted && !_hasEnded && _clock->Now() < _endBy)
            _clock->Wait(_done, lock, _endBy);
        thread.swap(_thread);
    }
    if (!thread.joinable()) return;
    _client->Abort();
    thread.join();
}

ExporterCounts Exporter::Counts() const {
    const Lock lock(_mutex);
    return _counts;
}

size_t Exporter::HeldBytes() const {
    const Lock lock(_mutex);
    return _heldBytes;
}

// libcurl and what is below it end with the process as well, by functions of their own that must not run under a sender
// that is at work. They are run before what was registered earlier: so this is called twice, when the thread is started
// and again when libcurl is up. Whichever function is run first does it all.
void Exporter::EndWithProcess(Exporter* exporter) {
    Ending& ending = TheEnding();
    {
        const std::lock_guard<std::mutex> guard(ending.mutex);
        if (std::find(ending.exporters.begin(), ending.exporters.end(), exporter) == ending.exporters.end())
            ending.exporters.push_back(exporter);
    }
    atexit([] {
        std::vector<Exporter*> exporters;
        {
            const std::lock_guard<std::mutex> guard(TheEnding().mutex);
            exporters.swap(TheEnding().exporters);
        }
        for (Exporter* const one : exporters)
            one->Stop(one->_options.exitDeadline);
    });
}

void Exporter::Run() {
    pthread_setname_np(pthread_self(), "OtlpSender");
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);  // the host's signals are for its own threads

    _canSend = _client->Prepare(_problem);
    if (_options.exitDeadline.count() > 0) EndWithProcess(this);
    if (!_canSend) SayOfUrl("nothing is sent: " + _problem);
    while (WaitForBatch()) {
        size_t bytes = 0;
        const Batch batch = CutBatch(bytes);
        Send(batch);
        {
            const Lock lock(_mutex);
            _heldBytes -= bytes;
            _finished += batch.size();
        }
        _done.notify_all();
        SayOverflow(false);
    }
    DropTheRest();
    SayOverflow(true);
    const Lock lock(_mutex);
    _hasEnded = true;
    _done.notify_all();
}

// False when it is time to end. Else the backlog has what the next batch is cut from.
bool Exporter::WaitForBatch() {
    Lock lock(_mutex);
    for (;;) {
        const bool isEnding = _endBy != Clock::Time::max();
        const bool isEmpty = _backlog.empty() && _incoming.empty();
        const Clock::Time now = _clock->Now();
        if (isEnding && (isEmpty || now >= _endBy)) return false;
        const Clock::Time due = isEmpty ? Clock::Time::max() : _firstCame + _options.delay;
        // Nothing is under way here, so all that is held waits.
        const bool isFull = _incoming.size() >= _options.maxBatchItems || _heldBytes >= _options.maxBatchBytes;
        if (!isEmpty && (!_backlog.empty() || isFull || isEnding || _flushUpTo > _finished || now >= due)) {
            if (_backlog.empty()) _backlog.swap(_incoming);
            return true;
        }
        _clock->Wait(_wake, lock, std::min(due, _endBy));
    }
}

Exporter::Batch Exporter::CutBatch(size_t& bytes) {
    Batch batch;
    while (!_backlog.empty() && batch.size() < _options.maxBatchItems && bytes < _options.maxBatchBytes) {
        bytes += _backlog.front().size() + kItemOverhead;
        batch.push_back(std::move(_backlog.front()));
        _backlog.pop_front();
    }
    return batch;
}

void Exporter::Send(const Batch& batch) {
    if (!_canSend) return Refuse(batch, "");
    const std::string body = _encode(batch);
    const Clock::Time begin = _clock->Now();
    for (;;) {
        if (!WaitToTry()) return Refuse(batch, kNotSent + Records(batch.size()));
        if (Judge(_client->Post(body), batch)) return;
        SayOverflow(false);
        // What the receiver asked to be waited for may be longer than that; then the next batch waits for it.
        if (_notBefore - begin >= _options.giveUp)
            return Refuse(batch, Records(batch.size()) + " dropped: not taken in " +
                                     std::to_string(_options.giveUp.count() / 1000) + " s");
    }
}

// False when the time to end has come first.
bool Exporter::WaitToTry() {
    Lock lock(_mutex);
    while (_clock->Now() < std::min(_notBefore, _endBy))
        _clock->Wait(_wake, lock, std::min(_notBefore, _endBy));
    return _clock->Now() < _endBy;
}

bool Exporter::IsOver() const {
    const Lock lock(_mutex);
    return _clock->Now() >= _endBy;
}

// Whether the batch is done with.
bool Exporter::Judge(const PostAnswer& answer, const Batch& batch) {
    const std::string status = answer.status == 0 ? answer.problem : "the answer " + std::to_string(answer.status);
    if (answer.status >= 200 && answer.status < 300) {
        if (_failures > 0) SayOfUrl("takes records again");
        _failures = 0;
        const PartialSuccess partial = ReadPartialSuccess(answer.body);
        const uint64_t rejected = std::min<uint64_t>(partial.rejected, batch.size());
        if (rejected > 0)
            SayOfUrl("takes " + Records(batch.size()) + ", but not " + std::to_string(rejected) +
                     " of them: " + partial.message);
        else if (!partial.message.empty())
            SayOfUrl("warns: " + partial.message);
        const Lock lock(_mutex);
        _counts.sent += batch.size() - rejected;
        _counts.rejected += rejected;
        return true;
    }
    if (!IsTransient(answer.status)) {
        _failures = 0;
        const std::string why = ReadRefusal(answer.body);
        Refuse(batch, Records(batch.size()) + " dropped: " + status + (why.empty() ? "" : ", " + why));
        return true;
    }
    ++_failures;
    const double random =
        static_cast<double>(_random() - _random.min()) / static_cast<double>(_random.max() - _random.min());
    _notBefore = _clock->Now() + RetryDelay(_failures, random, answer.retryAfter);
    if (_failures == 1 && !IsOver()) SayOfUrl(status + "; it is tried again");
    return false;
}

void Exporter::Refuse(const Batch& batch, const std::string& why) {
    if (!why.empty()) SayOfUrl(why);
    const Lock lock(_mutex);
    _counts.refused += batch.size();
}

void Exporter::SayOverflow(bool isLast) {
    uint64_t overflow;
    {
        const Lock lock(_mutex);
        overflow = _counts.overflow;
    }
    const Clock::Time now = _clock->Now();
    const bool isTooSoon = _overflowSaid > 0 && now - _overflowSaidAt < kOverflowPause;
    if (overflow == _overflowSaid || (isTooSoon && !isLast)) return;
    SayOfUrl(Records(overflow - _overflowSaid) + " dropped, " + std::to_string(overflow) +
             " in all: there was no room for them");
    _overflowSaid = overflow;
    _overflowSaidAt = now;
}

void Exporter::SayOfUrl(const std::string& what) {
    _say(_url + ": " + what);
}

void Exporter::DropTheRest() {
    uint64_t count;
    {
        const Lock lock(_mutex);
        count = _backlog.size() + _incoming.size();
        _incoming.clear();
        _heldBytes = 0;
        _finished += count;
        _counts.refused += count;
    }
    _backlog.clear();
    if (count > 0) SayOfUrl(kNotSent + Records(count));
}

}  // namespace OrvaneOtlp
