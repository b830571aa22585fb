#include "Base/Linux/CryptoAtExit.h"

#include <openssl/crypto.h>

namespace Quern {

void KeepCryptoAtExit() {
    OPENSSL_init_crypto(OPENSSL_INIT_NO_ATEXIT, nullptr);
}

}  // namespace Quern
