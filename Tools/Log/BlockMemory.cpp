#include "Log/BlockMemory.h"

#include <algorithm>
#include <utility>

#include "Storage/Log/LogTea.h"

namespace OrvaneLog {
namespace {

constexpr size_t kHeadLength = 64;
// A block is written to the file at once when it leaves the mapped file. One that has not come by then was dropped.
constexpr std::chrono::seconds kPatience(2);

}  // namespace

BlockIdentity BlockIdentity::Of(const RecordHeader& header, std::span<const uint8_t> payload) {
    BlockIdentity identity{header.magic, header.seq, header.beginHour, header.publicKey, {}};
    // The last few bytes of an encrypted block are enciphered once their group is full.
    const size_t fixed = payload.size() / Quern::kLogTeaGroup * Quern::kLogTeaGroup;
    identity.head.assign(reinterpret_cast<const char*>(payload.data()), std::min(fixed, kHeadLength));
    return identity;
}

bool BlockIdentity::IsStartOf(const BlockIdentity& later) const {
    return magic == later.magic && seq == later.seq && beginHour == later.beginHour && publicKey == later.publicKey &&
           later.head.starts_with(head);
}

void BlockMemory::See(std::optional<BlockIdentity> block, Clock::time_point now) {
    if (_current && block && _current->identity.IsStartOf(*block)) {
        _current->identity = std::move(*block);
        return;
    }
    if (_current && _current->shown > 0) {
        _current->left = now;
        _waiting.push_back(std::move(*_current));
    }
    _current.reset();
    if (block) _current = Block{std::move(*block), 0, {}};
}

void BlockMemory::SetShown(uint64_t textSize) {
    if (_current) _current->shown = std::max(_current->shown, textSize);
}

uint64_t BlockMemory::TakeRecord(const BlockIdentity& record) {
    const auto known = std::find_if(_waiting.begin(), _waiting.end(),
                                    [&record](const Block& block) { return block.identity.IsStartOf(record); });
    if (known != _waiting.end()) {
        const uint64_t shown = known->shown;
        _waiting.erase(known);
        return shown;
    }
    if (!_current || !_current->identity.IsStartOf(record)) return 0;
    const uint64_t shown = _current->shown;
    _current.reset();
    return shown;
}

bool BlockMemory::IsWaiting(Clock::time_point now) {
    std::erase_if(_waiting, [now](const Block& block) { return now - block.left > kPatience; });
    return !_waiting.empty();
}

}  // namespace OrvaneLog
