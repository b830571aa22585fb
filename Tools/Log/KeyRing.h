// The private keys that a reading was given, and what they agree on with the public keys of the records.
#ifndef ORVANE_TOOLS_LOG_KEY_RING_H
#define ORVANE_TOOLS_LOG_KEY_RING_H

#include <map>
#include <string>
#include <vector>

#include "Serializer/Codec/EllipticCurve.h"
#include "Storage/Log/LogTea.h"

namespace OrvaneLog {

class KeyRing {
public:
    struct Candidate {
        Quern::LogTeaKey key;
        std::string name;  // of the private key
    };
    struct Agreement {
        bool isPoint = false;  // a public key that is no point of the curve was written by no one
        std::vector<Candidate> candidates;
        // Once one of them has given what only a log holds the others are dropped.
        bool proven = false;

        void Prove(size_t index);
    };

    // False for a private key that is not valid on the curve.
    bool Add(const Quern::CurvePrivateKey& key, std::string name);
    bool IsEmpty() const { return _keys.empty(); }

    // Valid until the next call.
    Agreement& For(const Quern::CurvePublicKey& publicKey);

private:
    struct PrivateKey {
        Quern::CurvePrivateKey key;
        std::string name;
    };
    std::vector<PrivateKey> _keys;
    std::map<Quern::CurvePublicKey, Agreement> _agreements;
};

}  // namespace OrvaneLog

#endif
