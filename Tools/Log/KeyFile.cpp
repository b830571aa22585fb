#include "Log/KeyFile.h"

#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <vector>

#include "Serializer/Codec/Hex.h"
#include "Storage/File/WholeFile.h"

namespace OrvaneLog {
namespace {

constexpr size_t kKeyDigits = 64;
// More than any key file holds; a large file named by mistake is not read whole.
constexpr size_t kLargestKeyFile = 1024;

bool Fail(std::string& error, const std::string& what) {
    error = what + ": " + strerror(errno);
    return false;
}

}  // namespace

std::string ToHex(const uint8_t* bytes, size_t count) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string hex;
    hex.reserve(2 * count);
    for (size_t i = 0; i < count; ++i) {
        hex += kDigits[bytes[i] >> 4];
        hex += kDigits[bytes[i] & 15];
    }
    return hex;
}

bool ParseKey(std::string_view content, Quern::CurvePrivateKey& key, std::string& error) {
    if (content.ends_with('\n')) content.remove_suffix(1);
    if (content.ends_with('\r')) content.remove_suffix(1);
    if (content.size() == 2 * kKeyDigits) {
        error = "holds 128 characters, as many as a public key; a private key is 64 hexadecimal digits";
        return false;
    }
    if (content.size() != kKeyDigits) {
        error = "holds " + std::to_string(content.size()) + " characters where a private key is 64 hexadecimal digits";
        return false;
    }
    const size_t wrong = content.find_first_not_of("0123456789abcdefABCDEF");
    if (wrong != std::string_view::npos) {
        error = "character " + std::to_string(wrong + 1) + " is no hexadecimal digit";
        return false;
    }
    Quern::CurvePublicKey unused;
    if (!Quern::HexToBuffer(content.data(), key.data(), key.size()) || !Quern::CurvePublicFromPrivate(key, unused)) {
        error = "is no private key of secp256k1: zero, or not below the order of the curve";
        return false;
    }
    return true;
}

bool ReadKeyFile(const std::string& path, Quern::CurvePrivateKey& key, std::string& error, std::string& warning) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return Fail(error, path);
    std::vector<char> content(kLargestKeyFile);
    size_t size = 0;
    ssize_t count = 0;
    while (size < content.size()) {
        count = read(descriptor, content.data() + size, content.size() - size);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;
        size += static_cast<size_t>(count);
    }
    const int readError = errno;
    struct stat facts;
    if (fstat(descriptor, &facts) == 0 && S_ISREG(facts.st_mode) && (facts.st_mode & 077) != 0)
        warning = path + ": others than its owner have access to this private key";
    close(descriptor);
    if (count < 0) {
        errno = readError;
        return Fail(error, path);
    }
    std::string problem;
    const bool parsed = ParseKey({content.data(), size}, key, problem);
    explicit_bzero(content.data(), content.size());
    if (!parsed)
        error =
            path + ": " + (size == kLargestKeyFile ? "too large for a private key of 64 hexadecimal digits" : problem);
    return parsed;
}

bool MakeKeyFile(const std::string& path, Quern::CurvePublicKey& publicKey, std::string& error) {
    Quern::CurvePrivateKey privateKey;
    if (!Quern::MakeCurveKey(publicKey, privateKey)) {
        error = "no random numbers for a key";
        return false;
    }
    std::string text = ToHex(privateKey.data(), privateKey.size()) + "\n";
    const bool made = Quern::CreateFile(path, text, 0600) || Fail(error, path);
    explicit_bzero(text.data(), text.size());
    explicit_bzero(privateKey.data(), privateKey.size());
    return made;
}

}  // namespace OrvaneLog
