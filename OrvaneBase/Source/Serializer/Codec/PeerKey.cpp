#include "Serializer/Codec/PeerKey.h"

namespace Quern {

const char* PeerPublicKey() {
    return ORVANE_PEER_PUBLIC_KEY;
}

}  // namespace Quern
