/// \file TraceParent.h
/// A span's ids as the rest of the world writes them: those of OpenTelemetry, and the header "traceparent" of HTTP
/// (W3C Trace Context), by which a server's spans become children of the game's.
///
///     task->SetHttpHeader("traceparent", Orvane::Plugin::sg_traceparent(span).c_str());
///
/// The library's ids are texts, of 32 and 11 characters as a rule; those are 16 and 8 bytes. The mapping is fixed, and
/// easily repeated in any language: **the first 16 bytes of the SHA-256 (FIPS 180-4) of the trace id's text, the first
/// 8 of that of the span id's**, with the last bit set where all would be zero, which both standards forbid. Whoever
/// forwards finished spans (the sample data plugin does) uses these functions, so both sides name a span alike.
///
/// For example the trace id "tid" and the span id "sid" give
///
///     00-c71179c23b75ed3a1ecfc1e15aee1a88-34b36454cab2e784-01
///        `printf tid | sha256sum`         `printf sid | sha256sum`, both cut
///
/// The mapping goes one way: nobody finds the library's ids from OpenTelemetry's, so a forwarded span bears both.
///
/// Everything here is inline and C++11, depends on nothing of the library, not even that it is loaded, and may be
/// called on any thread. Nothing is kept from call to call, and no setting is read: what is given twice is answered
/// alike, in every process and in every version.
#ifndef ORVANE_TRACE_PARENT_H
#define ORVANE_TRACE_PARENT_H

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <string>

namespace Orvane {
namespace Plugin {

/// The hash behind the mapping; not meant for anything else. It is the plain algorithm of FIPS 180-4, in portable C++,
/// since a library for it would be one more that a plugin has to link; an id takes a block or two.
class SpanIdHash {
public:
    /// The hash of a text of any length, which may hold zero bytes.
    /// \param text   may be null if `length` is 0
    /// \param length in bytes, without a terminator
    /// \param digest the caller's 32 bytes, all of which are written
    static void Digest(const char* text, size_t length, unsigned char* digest) {
        // The fractions of the square roots of the first eight primes.
        uint32_t state[8] = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                             0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
        const unsigned char* bytes = reinterpret_cast<const unsigned char*>(text);
        size_t left = length;
        for (; left >= 64; left -= 64, bytes += 64)
            Mix(state, bytes);
        // The rest, a bit that is set, zeros, and the length in bits: one block or two.
        unsigned char tail[128] = {0};
        if (left > 0) memcpy(tail, bytes, left);
        tail[left] = 0x80;
        const size_t size = left < 56 ? 64 : 128;
        const uint64_t bits = static_cast<uint64_t>(length) * 8;
        for (size_t i = 0; i < 8; ++i)
            tail[size - 1 - i] = static_cast<unsigned char>(bits >> (8 * i));
        for (size_t at = 0; at < size; at += 64)
            Mix(state, tail + at);
        // The state's words, big-endian.
        for (size_t i = 0; i < 32; ++i)
            digest[i] = static_cast<unsigned char>(state[i / 4] >> (24 - 8 * (i % 4)));
    }

    /// An id of OpenTelemetry's: the first bytes of the hash.
    /// \param text, length as above
    /// \param size how many bytes of the hash the id has: 16 for a trace, 8 for a span; 1 to 32
    /// \return the id in lower-case hexadecimal digits, two for each byte; never all zeros
    static std::string Id(const char* text, size_t length, size_t size) {
        unsigned char digest[32];
        Digest(text, length, digest);
        // Both standards forbid an id of zeros alone.
        bool isZero = true;
        for (size_t i = 0; i < size; ++i)
            isZero = isZero && digest[i] == 0;
        if (isZero) digest[size - 1] = 1;
        static const char kDigits[] = "0123456789abcdef";
        std::string id;
        for (size_t i = 0; i < size; ++i) {
            id += kDigits[digest[i] >> 4];
            id += kDigits[digest[i] & 15];
        }
        return id;
    }

private:
    // To the right; `bits` is 1 to 31.
    static uint32_t Turn(uint32_t word, int bits) { return (word >> bits) | (word << (32 - bits)); }

    // Takes one block of 64 bytes into the eight words of the state.
    static void Mix(uint32_t* state, const unsigned char* block) {
        // The fractions of the cube roots of the first 64 primes.
        static const uint32_t kRounds[64] = {
            0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
            0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
            0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
            0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
            0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
            0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
            0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
            0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};
        // The block as 16 words, big-endian, and 48 more that are mixed from them.
        uint32_t words[64];
        for (size_t i = 0; i < 16; ++i)
            words[i] = static_cast<uint32_t>(block[4 * i]) << 24 | static_cast<uint32_t>(block[4 * i + 1]) << 16 |
                       static_cast<uint32_t>(block[4 * i + 2]) << 8 | block[4 * i + 3];
        for (size_t i = 16; i < 64; ++i) {
            const uint32_t early = words[i - 15], late = words[i - 2];
            words[i] = words[i - 16] + (Turn(early, 7) ^ Turn(early, 18) ^ (early >> 3)) + words[i - 7] +
                       (Turn(late, 17) ^ Turn(late, 19) ^ (late >> 10));
        }
        // The 64 rounds, with the standard's own names.
        uint32_t a = state[0], b = state[1], c = state[2], d = state[3];
        uint32_t e = state[4], f = state[5], g = state[6], h = state[7];
        for (size_t i = 0; i < 64; ++i) {
            const uint32_t first =
                h + (Turn(e, 6) ^ Turn(e, 11) ^ Turn(e, 25)) + ((e & f) ^ (~e & g)) + kRounds[i] + words[i];
            const uint32_t second = (Turn(a, 2) ^ Turn(a, 13) ^ Turn(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
            h = g, g = f, f = e, e = d + first;
            d = c, c = b, b = a, a = first + second;
        }
        state[0] += a, state[1] += b, state[2] += c, state[3] += d;
        state[4] += e, state[5] += f, state[6] += g, state[7] += h;
    }
};

/// The trace id under which OpenTelemetry knows a trace of the library's.
/// \param tid the library's trace id: "tid" of a span, or ITraceService::GetTraceId
/// \return 32 hexadecimal digits; empty for an empty text
inline std::string sg_otel_trace_id(const std::string& tid) {
    return tid.empty() ? std::string() : SpanIdHash::Id(tid.data(), tid.size(), 16);
}

/// The span id under which OpenTelemetry knows a span of the library's.
/// \param sid the library's span id: "sid" of a span, or "pid", which is that of the span above
/// \return 16 hexadecimal digits; empty for an empty text, as a root's "pid" is
inline std::string sg_otel_span_id(const std::string& sid) {
    return sid.empty() ? std::string() : SpanIdHash::Id(sid.data(), sid.size(), 8);
}

/// The value of the header "traceparent", version 00, flags 01 (sampled), for a request that is made inside a span. The
/// server's own spans then have that span as their parent, once it is finished and forwarded; until then the store
/// shows them without it.
/// \param context the span's text, "TRACE-PARENT-SPAN-1" (ISpanContext.h)
/// \return empty for null and for what is not the text of a span, as there is none without tracing; then send no header
inline std::string sg_traceparent(const char* context) {
    // Four parts, of which the parent is empty for a root and the last tells nothing here. More or fewer are no span.
    std::string parts[4];
    size_t count = 0;
    for (const char* at = context ? context : ""; *at && count < 4; ++at) {
        if (*at == '-')
            ++count;
        else
            parts[count] += *at;
    }
    if (count != 3 || parts[0].empty() || parts[2].empty()) return std::string();
    return "00-" + sg_otel_trace_id(parts[0]) + "-" + sg_otel_span_id(parts[2]) + "-01";
}

}  // namespace Plugin
}  // namespace Orvane

#endif
