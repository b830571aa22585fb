// The private keys that a reading was given, and what they agree on with the public keys of the records.
//
// A record's header holds a public key of its writer (secp256k1). Together with the deployment's private key it gives
// the cipher's key. Nothing in a record says which private key is the right one, so each is a candidate until one
// proves itself by the text that it gives.
#ifndef ORVANE_TOOLS_LOG_KEY_RING_H
#define ORVANE_TOOLS_LOG_KEY_RING_H

#include <map>
#include <string>
#include <vector>

#include "Serializer/Codec/EllipticCurve.h"
#include "Storage/Log/LogTea.h"

namespace OrvaneLog {

// One thread. Private keys stay in memory until the ring is gone.
class KeyRing {
public:
    // A private key that might open the records of one public key.
    struct Candidate {
        Quern::LogTeaKey key;  // the first 16 bytes of the secret that the two keys agree on
        std::string name;      // of the private key
    };
    // What the ring knows of one public key.
    struct Agreement {
        bool isPoint = false;               // false: no writer has made this public key
        std::vector<Candidate> candidates;  // in the order in which the keys were added
        // Whether one of them has given text that only a log holds. It is then the only one.
        bool proven = false;

        // Keeps the candidate of that index alone. Of no effect once one is proven.
        void Prove(size_t index);
    };

    // False for a private key that is not valid on the curve. `name` is what messages call it: its file or variable,
    // never its digits. Ends the agreements made so far.
    bool Add(const Quern::CurvePrivateKey& key, std::string name);
    bool IsEmpty() const { return _keys.empty(); }

    // The agreement with a record's public key, made at the first call and remembered; a computation on the curve for
    // each private key. Valid until the next call.
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
