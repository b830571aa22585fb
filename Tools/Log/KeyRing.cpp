#include "Log/KeyRing.h"

#include <algorithm>
#include <utility>

namespace OrvaneLog {
namespace {

// A writer draws a key pair at each start; a file of more writers than this is no log, and must not fill the memory.
constexpr size_t kRememberedAgreements = 1024;

bool IsPoint(const Quern::CurvePublicKey& publicKey) {
    Quern::CurvePrivateKey one{};
    one.back() = 1;
    Quern::CurveSecret unused;
    return Quern::CurveSharedSecret(publicKey, one, unused);
}

}  // namespace

void KeyRing::Agreement::Prove(size_t index) {
    if (proven) return;
    candidates = {std::move(candidates[index])};
    proven = true;
}

bool KeyRing::Add(const Quern::CurvePrivateKey& key, std::string name) {
    Quern::CurvePublicKey publicKey;
    if (!Quern::CurvePublicFromPrivate(key, publicKey)) return false;
    _keys.push_back({key, std::move(name)});
    _agreements.clear();
    return true;
}

KeyRing::Agreement& KeyRing::For(const Quern::CurvePublicKey& publicKey) {
    if (const auto known = _agreements.find(publicKey); known != _agreements.end()) return known->second;
    if (_agreements.size() >= kRememberedAgreements) _agreements.clear();
    Agreement& made = _agreements[publicKey];
    made.isPoint = IsPoint(publicKey);
    if (!made.isPoint) return made;
    for (const PrivateKey& own : _keys) {
        Quern::CurveSecret secret;
        if (!Quern::CurveSharedSecret(publicKey, own.key, secret)) continue;
        Candidate& candidate = made.candidates.emplace_back();
        candidate.name = own.name;
        std::copy_n(secret.begin(), candidate.key.size(), candidate.key.begin());
    }
    return made;
}

}  // namespace OrvaneLog
