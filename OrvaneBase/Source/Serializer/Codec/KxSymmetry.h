// Encryption of whole texts with TEA of 16 rounds, in two chaining modes over one self-describing frame:
//
//   bytes      content
//   1          low 3 bits: pad; high 5 bits: random
//   pad        random
//   2          random salt
//   inLength   the plaintext
//   7          zero
//
// `pad` fills the frame up to a multiple of 8 bytes. With frame blocks P, cipher blocks C (and C(0) = X(0) = 0):
//   kx_symmetry_encrypt    C(i) = E(P(i) ^ C(i-1))
//   kx_symmetry_encrypt2   X(i) = P(i) ^ C(i-1),  C(i) = E(X(i)) ^ X(i-1)
//
// The random bytes come from rand(): whoever runs the process decides whether it is seeded. No state of its own; any
// thread. The zero tail notices nearly every wrong key and every damage of the end; it is no proof of origin.
#ifndef ORVANE_SERIALIZER_CODEC_KX_SYMMETRY_H
#define ORVANE_SERIALIZER_CODEC_KX_SYMMETRY_H

namespace Orvane {
namespace Quern {

// The size of the ciphertext of `inLength` bytes, for either chain: at least 16, a multiple of 8.
// REQUIRES: 0 <= inLength <= INT_MAX - 17.
int kx_symmetry_encrypt2_len(int inLength);

// Encrypts. REQUIRES: `out` has room for kx_symmetry_encrypt2_len(inLength) bytes and does not overlap `in`.
// *outLength becomes the number of bytes written.
void kx_symmetry_encrypt(const char* in, int inLength, const char* key16, char* out, int* outLength);
void kx_symmetry_encrypt2(const char* in, int inLength, const char* key16, char* out, int* outLength);

// Decrypts. *outLength is the capacity of `out` on entry and the plaintext's length on success; `out` may be `in`.
// Returns 1 if the frame was whole, else 0:
// - a length that no ciphertext has: *outLength and `out` stay as they were;
// - a plaintext that is longer than the capacity, or a frame too short for its pad: `out` stays as it was, and so does
//   *outLength, but that kx_symmetry_decrypt leaves the (negative) length of a frame too short there;
// - a tail that is not zero: *outLength is set and `out` holds what was decrypted.
int kx_symmetry_decrypt(const char* in, int inLength, const char* key16, char* out, int* outLength);
int kx_symmetry_decrypt2(const char* in, int inLength, const char* key16, char* out, int* outLength);

}  // namespace Quern
}  // namespace Orvane

#endif
