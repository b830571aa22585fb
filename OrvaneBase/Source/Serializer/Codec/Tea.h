// The block routines of the TEA cipher with 16 and with 13 rounds. No state between calls; any thread.
//
// A block is 8 bytes: two big-endian words. A key is 16 bytes: four big-endian words. `out8` may be `block8`.
// What one round count enciphered, the other does not decipher; neither is the 32 of the published cipher.
//
// Code in Orvane that means the base library writes ::Quern::, since this namespace hides it there.
#ifndef ORVANE_SERIALIZER_CODEC_TEA_H
#define ORVANE_SERIALIZER_CODEC_TEA_H

namespace Orvane {
namespace Quern {

constexpr int kTeaBlockSize = 8;
constexpr int kTeaKeySize = 16;

void TeaEncryptECB(const char* block8, const char* key16, char* out8);
void TeaDecryptECB(const char* block8, const char* key16, char* out8);
// With 13 rounds.
void TeaEncryptECB3(const char* block8, const char* key16, char* out8);
void TeaDecryptECB3(const char* block8, const char* key16, char* out8);

}  // namespace Quern
}  // namespace Orvane

#endif
