// What becomes of libcrypto when the process ends.
#ifndef ORVANE_BASE_LINUX_CRYPTO_AT_EXIT_H
#define ORVANE_BASE_LINUX_CRYPTO_AT_EXIT_H

namespace Quern {

// Asks libcrypto not to take itself down at the process's end: threads of the library's may be inside it then. Heard
// only before whoever uses libcrypto first in the process; so it is called before each use that may be that. Any
// thread.
void KeepCryptoAtExit();

}  // namespace Quern

#endif
