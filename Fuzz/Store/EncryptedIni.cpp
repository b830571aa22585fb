// The enciphered INI file: the input is the file, with the digest mended so that what stands behind it is reached too.
#include "Storage/Bundle/EncryptedIniFormat.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "Serializer/Codec/Md5.h"
#include "Storage/Bundle/IniText.h"

using namespace Quern::EncryptedIni;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string bytes(reinterpret_cast<const char*>(data), size);
    File file;
    Fault fault = Parse(bytes, file);
    if (fault == Fault::kDigest) {
        Quern::Md5HashBuffer(bytes.data() + 82, file.body.data(), static_cast<int>(file.body.size()));
        fault = Parse(bytes, file);
        if (fault != Fault::kNone) abort();
    }
    if (fault != Fault::kNone) return 0;

    const TeaKey key{};
    Quern::IniText text;
    if (!Open(file.body, key, text)) return 0;
    // What opens is built again to something that opens to the same.
    const std::string built = Build(text, key, file.publicKey);
    Quern::IniText again;
    if (Parse(built, file) != Fault::kNone || !Open(file.body, key, again)) abort();
    if (again.Join('\n') != text.Join('\n')) abort();
    return 0;
}
