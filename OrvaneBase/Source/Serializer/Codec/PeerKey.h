// The peer that this build encrypts for: whoever holds its private key reads the logs and the encrypted INI files.
#ifndef ORVANE_SERIALIZER_CODEC_PEER_KEY_H
#define ORVANE_SERIALIZER_CODEC_PEER_KEY_H

namespace Quern {

// The peer's secp256k1 public key, X then Y, as 128 hexadecimal digits. Chosen by the deployment when it builds
// (ORVANE_PEER_PUBLIC_KEY).
const char* PeerPublicKey();

}  // namespace Quern

#endif
