#include "DevServer/Sha1Text.h"

#include <openssl/evp.h>

#include <cstdio>
#include <memory>
#include <vector>

namespace OrvaneDevServer {
namespace {

class Digest {
public:
    Digest() { EVP_DigestInit_ex(_context.get(), EVP_sha1(), nullptr); }
    void Add(const void* data, size_t length) { EVP_DigestUpdate(_context.get(), data, length); }
    std::string Text() {
        unsigned char bytes[EVP_MAX_MD_SIZE];
        unsigned int length = 0;
        EVP_DigestFinal_ex(_context.get(), bytes, &length);
        std::string text;
        char digits[3];
        for (unsigned int i = 0; i < length; ++i) {
            snprintf(digits, sizeof digits, "%02x", bytes[i]);
            text += digits;
        }
        return text;
    }

private:
    const std::unique_ptr<EVP_MD_CTX, void (*)(EVP_MD_CTX*)> _context{EVP_MD_CTX_new(), EVP_MD_CTX_free};
};

}  // namespace

std::string Sha1Text(std::string_view data) {
    Digest digest;
    digest.Add(data.data(), data.size());
    return digest.Text();
}

std::string Sha1TextOfFile(const std::string& path) {
    const std::unique_ptr<FILE, int (*)(FILE*)> file(fopen(path.c_str(), "rbe"), fclose);
    if (!file) return "";
    Digest digest;
    std::vector<char> piece(1 << 18);
    for (size_t count; (count = fread(piece.data(), 1, piece.size(), file.get())) > 0;)
        digest.Add(piece.data(), count);
    return ferror(file.get()) ? "" : digest.Text();
}

}  // namespace OrvaneDevServer
