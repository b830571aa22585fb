#include "Serializer/Codec/KxSymmetry.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "Serializer/Codec/Tea.h"

namespace Orvane {
namespace Quern {
namespace {

constexpr int kHeadSize = 1;
constexpr int kSaltSize = 2;
constexpr int kTailSize = 7;
constexpr int kSmallestFrame = 16;
constexpr int kPadMask = 7;

// Eight bytes as they stand in memory: blocks are only copied and xored.
using Block = uint64_t;
static_assert(sizeof(Block) == kTeaBlockSize);

Block LoadBlock(const char* bytes) {
    Block block;
    memcpy(&block, bytes, sizeof block);
    return block;
}

Block EncryptBlock(Block block, const char* key) {
    char bytes[kTeaBlockSize];
    memcpy(bytes, &block, sizeof bytes);
    TeaEncryptECB(bytes, key, bytes);
    return LoadBlock(bytes);
}

Block DecryptBlock(Block block, const char* key) {
    char bytes[kTeaBlockSize];
    memcpy(bytes, &block, sizeof bytes);
    TeaDecryptECB(bytes, key, bytes);
    return LoadBlock(bytes);
}

struct SingleChain {
    static constexpr bool kSetsLengthBeforeFrameTest = true;

    Block Encrypt(Block plain, const char* key) { return cipher = EncryptBlock(plain ^ cipher, key); }
    Block Decrypt(Block next, const char* key) {
        const Block plain = DecryptBlock(next, key) ^ cipher;
        cipher = next;
        return plain;
    }

    Block cipher = 0;
};

struct DoubleChain {
    static constexpr bool kSetsLengthBeforeFrameTest = false;

    Block Encrypt(Block plain, const char* key) {
        const Block next = plain ^ cipher;
        cipher = EncryptBlock(next, key) ^ mixed;
        mixed = next;
        return cipher;
    }
    Block Decrypt(Block next, const char* key) {
        mixed = DecryptBlock(next ^ mixed, key);
        const Block plain = mixed ^ cipher;
        cipher = next;
        return plain;
    }

    Block cipher = 0;
    Block mixed = 0;
};

// Collects bytes and writes a cipher block whenever eight have come together.
template <typename Chain>
class FrameWriter {
public:
    FrameWriter(const char* key, char* out, int* written) : _key(key), _out(out), _written(written) { *_written = 0; }

    void Put(char byte) {
        _plain[_position++] = byte;
        if (_position < kTeaBlockSize) return;
        const Block cipher = _chain.Encrypt(LoadBlock(_plain), _key);
        memcpy(_out + *_written, &cipher, sizeof cipher);
        *_written += kTeaBlockSize;
        _position = 0;
    }

private:
    const char* _key;
    char* _out;
    int* _written;
    Chain _chain;
    char _plain[kTeaBlockSize];
    int _position = 0;
};

// Hands out a frame's bytes, taking the next cipher block only when a byte of it is wanted.
template <typename Chain>
class FrameReader {
public:
    FrameReader(const char* in, int inLength, const char* key) : _in(in), _inLength(inLength), _key(key) {}

    // False at the end of the ciphertext.
    bool Get(char* byte) {
        if (_position == kTeaBlockSize && !TakeBlock()) return false;
        *byte = _plain[_position++];
        return true;
    }

private:
    bool TakeBlock() {
        if (_taken + kTeaBlockSize > _inLength) return false;
        const Block plain = _chain.Decrypt(LoadBlock(_in + _taken), _key);
        memcpy(_plain, &plain, sizeof plain);
        _taken += kTeaBlockSize;
        _position = 0;
        return true;
    }

    const char* _in;
    int _inLength;
    const char* _key;
    Chain _chain;
    char _plain[kTeaBlockSize];
    int _position = kTeaBlockSize;
    int _taken = 0;
};

int PadFor(int inLength) {
    const int over = (inLength + kHeadSize + kSaltSize + kTailSize) % kTeaBlockSize;
    return over == 0 ? 0 : kTeaBlockSize - over;
}

char RandomByte() {
    return static_cast<char>(rand());
}

template <typename Chain>
void EncryptFrame(const char* in, int inLength, const char* key, char* out, int* outLength) {
    FrameWriter<Chain> frame(key, out, outLength);
    const int pad = PadFor(inLength);
    frame.Put(static_cast<char>((rand() & ~kPadMask) | pad));
    for (int i = 0; i < pad + kSaltSize; ++i)
        frame.Put(RandomByte());
    for (int i = 0; i < inLength; ++i)
        frame.Put(in[i]);
    for (int i = 0; i < kTailSize; ++i)
        frame.Put(0);
}

template <typename Chain>
int DecryptFrame(const char* in, int inLength, const char* key, char* out, int* outLength) {
    if (inLength < kSmallestFrame || inLength % kTeaBlockSize != 0) return 0;
    FrameReader<Chain> frame(in, inLength, key);
    char byte;
    if (!frame.Get(&byte)) return 0;
    const int pad = byte & kPadMask;
    const int behindPad = inLength - kHeadSize - pad;
    const int length = behindPad - kSaltSize - kTailSize;

    if (*outLength < length) return 0;
    if (Chain::kSetsLengthBeforeFrameTest) *outLength = length;
    if (behindPad < kSaltSize + kTailSize) return 0;
    *outLength = length;

    for (int i = 0; i < pad + kSaltSize; ++i) {
        if (!frame.Get(&byte)) return 0;
    }
    for (int i = 0; i < length; ++i) {
        if (!frame.Get(out + i)) return 0;
    }
    for (int i = 0; i < kTailSize; ++i) {
        if (!frame.Get(&byte) || byte != 0) return 0;
    }
    return 1;
}

}  // namespace

int kx_symmetry_encrypt2_len(int inLength) {
    return inLength + kHeadSize + kSaltSize + kTailSize + PadFor(inLength);
}

void kx_symmetry_encrypt(const char* in, int inLength, const char* key16, char* out, int* outLength) {
    EncryptFrame<SingleChain>(in, inLength, key16, out, outLength);
}

void kx_symmetry_encrypt2(const char* in, int inLength, const char* key16, char* out, int* outLength) {
    EncryptFrame<DoubleChain>(in, inLength, key16, out, outLength);
}

int kx_symmetry_decrypt(const char* in, int inLength, const char* key16, char* out, int* outLength) {
    return DecryptFrame<SingleChain>(in, inLength, key16, out, outLength);
}

int kx_symmetry_decrypt2(const char* in, int inLength, const char* key16, char* out, int* outLength) {
    return DecryptFrame<DoubleChain>(in, inLength, key16, out, outLength);
}

}  // namespace Quern
}  // namespace Orvane
