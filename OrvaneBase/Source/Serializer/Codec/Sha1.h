// SHA-1 (FIPS 180-4), as a protocol asks for it. It proves nothing against an attacker.
#ifndef ORVANE_SERIALIZER_CODEC_SHA1_H
#define ORVANE_SERIALIZER_CODEC_SHA1_H

#include <cstddef>
#include <memory>
#include <string>

struct evp_md_ctx_st;

namespace Quern {

// The digest of bytes that come in pieces. One thread at a time.
class Sha1 {
public:
    static constexpr size_t kHexLength = 40;

    Sha1();
    // Any number of times before HexDigest. `length` is in bytes, and may be 0.
    void Update(const void* data, size_t length);
    // The digest as 40 lower-case hexadecimal characters. Once, at the end; "" if there is no memory.
    std::string HexDigest();

private:
    // Libcrypto's; null if there was no memory for it.
    std::unique_ptr<evp_md_ctx_st, void (*)(evp_md_ctx_st*)> _context;
};

}  // namespace Quern

#endif
