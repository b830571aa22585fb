// The TEA block routines and both chains. The ciphertexts and blocks were made by another implementation.
#include "Serializer/Codec/KxSymmetry.h"

#include "Serializer/Codec/Tea.h"
#include "Support/Test.h"

namespace Orvane {
namespace Quern {
namespace {

std::string Bytes(const std::string& hex) {
    std::string bytes;
    for (size_t i = 0; i < hex.size(); i += 2)
        bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    return bytes;
}

const std::string kKey = Bytes("000102030405060708090a0b0c0d0e0f");

using BlockRoutine = void (*)(const char*, const char*, char*);
using Encrypt = void (*)(const char*, int, const char*, char*, int*);
using Decrypt = int (*)(const char*, int, const char*, char*, int*);

std::string Apply(BlockRoutine routine, const std::string& block, const std::string& key) {
    std::string out(8, '\0');
    routine(block.data(), key.data(), out.data());
    return out;
}

TEST(Tea, BlocksOfSixteenAndThirteenRounds) {
    const struct {
        const char *key, *plain, *sixteen, *thirteen;
    } kBlocks[] = {
        {"00000000000000000000000000000000", "0000000000000000", "a889f798182d8083", "26dc357b238b2f61"},
        {"fedcba98765432100f1e2d3c4b5a6978", "ffffffffffffffff", "db94ede9a1088675", "7f497b53b1b44ce9"},
    };
    for (const auto& block : kBlocks) {
        const std::string key = Bytes(block.key), plain = Bytes(block.plain);
        EXPECT_EQ(Apply(TeaEncryptECB, plain, key), Bytes(block.sixteen));
        EXPECT_EQ(Apply(TeaEncryptECB3, plain, key), Bytes(block.thirteen));
        EXPECT_EQ(Apply(TeaDecryptECB, Bytes(block.sixteen), key), plain);
        EXPECT_EQ(Apply(TeaDecryptECB3, Bytes(block.thirteen), key), plain);
    }
}

std::string Xor(std::string left, const std::string& right) {
    for (size_t i = 0; i < left.size(); ++i)
        left[i] = static_cast<char>(left[i] ^ right[i]);
    return left;
}

struct Chain {
    const char* name;
    Encrypt encrypt;
    Decrypt decrypt;
    bool isDouble;
};

class KxSymmetry : public testing::TestWithParam<Chain> {
protected:
    std::string EncryptText(const std::string& text) {
        std::string out(static_cast<size_t>(kx_symmetry_encrypt2_len(static_cast<int>(text.size()))), '\0');
        int length = -1;
        GetParam().encrypt(text.data(), static_cast<int>(text.size()), kKey.data(), out.data(), &length);
        EXPECT_EQ(length, static_cast<int>(out.size()));
        return out;
    }
    // Decrypts into `out`, whose size is the capacity; `length` is *outLength afterwards.
    int DecryptInto(const std::string& cipher, std::string& out) {
        length = static_cast<int>(out.size());
        return GetParam().decrypt(cipher.data(), static_cast<int>(cipher.size()), kKey.data(), out.data(), &length);
    }
    // Enciphers a frame, whatever its bytes.
    std::string EncryptFrame(const std::string& frame) {
        std::string out, mixed(8, '\0'), cipher(8, '\0');
        for (size_t at = 0; at < frame.size(); at += 8) {
            const std::string next = Xor(frame.substr(at, 8), cipher);
            cipher = Apply(TeaEncryptECB, next, kKey);
            if (GetParam().isDouble) cipher = Xor(cipher, mixed);
            mixed = next;
            out += cipher;
        }
        return out;
    }
    int length = 0;
};

INSTANTIATE_TEST_SUITE_P(Chains, KxSymmetry,
                         testing::Values(Chain{"Single", kx_symmetry_encrypt, kx_symmetry_decrypt, false},
                                         Chain{"Double", kx_symmetry_encrypt2, kx_symmetry_decrypt2, true}),
                         [](const auto& info) { return info.param.name; });

TEST_P(KxSymmetry, DecryptsWhatAnotherImplementationMade) {
    const struct {
        std::string text;
        const char *single, *twofold;
    } kCiphers[] = {
        {"", "a6f1319d58d00ef20d30d064c74cacd9", "a6f1319d58d00ef2a36a8b389a12f3b9"},
        {"a", "5ef7c21ab31de5270416dd55473a7267", "5ef7c21ab31de527a94c86091a642d07"},
        {"sixsix", "e090f55d2be9044263c19b7345575b47", "e090f55d2be90442cb9bc0002c2f282e"},
        {"seven!!", "ce387ca83905b3d46df42e15321f1e410dc4d2d2d43285e3",
         "ce387ca83905b3d4c2ae75496f414121cb0321163eb8f96f"},
        {std::string("The quick brown fox\0jumps over the lazy dog", 43),
         "cea469c899005c401c22255524e98293b607cfda298c38c1999acf32ab839af05a93e492a9a7d1eecc327d7ef42ae5e458fa6607a208"
         "ba5c",
         "cea469c899005c40b7787e0979b7d6fb54334fbca3fe71192c11e4b430fbd2890e0a0f215aa824118c65c7da0b25541b479baa616031"
         "09a2"},
    };
    for (const auto& cipher : kCiphers) {
        const std::string bytes = Bytes(GetParam().isDouble ? cipher.twofold : cipher.single);
        EXPECT_EQ(kx_symmetry_encrypt2_len(static_cast<int>(cipher.text.size())), static_cast<int>(bytes.size()));
        std::string out(cipher.text.size() + 3, 'x');
        EXPECT_EQ(DecryptInto(bytes, out), 1);
        EXPECT_EQ(length, static_cast<int>(cipher.text.size()));
        EXPECT_EQ(out, cipher.text + "xxx");
    }
}

// Neither chain changes the first block, which shows what the random bytes of the seed went into.
TEST_P(KxSymmetry, FramesStartWithPadAndSalt) {
    for (size_t size = 0; size < 20; ++size) {
        SCOPED_TRACE(size);
        const std::string text(size, static_cast<char>('A' + size));
        const size_t pad = (16 - (size + 10) % 8) % 8;
        srand(static_cast<unsigned>(size) + 1);
        const std::string cipher = EncryptText(text);

        srand(static_cast<unsigned>(size) + 1);
        std::string frame(1, static_cast<char>((rand() & 0xF8) | static_cast<int>(pad)));
        for (size_t i = 0; i < pad + 2; ++i)
            frame += static_cast<char>(rand());
        frame += text + std::string(7, '\0');
        EXPECT_EQ(Apply(TeaDecryptECB, cipher.substr(0, 8), kKey), frame.substr(0, 8));

        std::string out(size + 3, 'x');
        EXPECT_EQ(DecryptInto(cipher, out), 1);
        EXPECT_EQ(length, static_cast<int>(size));
        EXPECT_EQ(out, text + "xxx");
    }
}

TEST_P(KxSymmetry, WrongLengthsAndTooLittleRoomChangeNothing) {
    for (size_t size : {0, 8, 15, 17, 23}) {
        std::string out(64, 'x');
        EXPECT_EQ(DecryptInto(std::string(size, 'c'), out), 0);
        EXPECT_EQ(length, 64);
        EXPECT_EQ(out, std::string(64, 'x'));
    }
    std::string small(13, 'x');
    EXPECT_EQ(DecryptInto(EncryptText("fourteen bytes"), small), 0);
    EXPECT_EQ(length, 13);
    EXPECT_EQ(small, std::string(13, 'x'));
}

TEST_P(KxSymmetry, AFrameTooShortForItsPadIsRefused) {
    const std::string cipher = Bytes(GetParam().isDouble ? "6c23ef4be818a2836fe779564196c720"  // pad 7 in 16 bytes
                                                         : "6c23ef4be818a28368e779564196c720");
    std::string out(20, 'x');
    EXPECT_EQ(DecryptInto(cipher, out), 0);
    EXPECT_EQ(length, GetParam().isDouble ? 20 : -1);
    EXPECT_EQ(out, std::string(20, 'x'));
}

TEST_P(KxSymmetry, EachOfTheZerosIsLookedAtAndTheTextIsGivenAllTheSame) {
    const std::string sound = std::string(3, '\0') + "six by" + std::string(7, '\0');
    for (size_t at = 9; at <= 16; ++at) {
        std::string frame = sound, out(9, 'x');
        if (at < 16) frame[at] = 1;
        EXPECT_EQ(DecryptInto(EncryptFrame(frame), out), at == 16 ? 1 : 0) << at;
        EXPECT_EQ(out, "six byxxx");
        EXPECT_EQ(length, 6);
    }
}

}  // namespace
}  // namespace Quern
}  // namespace Orvane
