#include "Store/StoreFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "Log/KeyFile.h"
#include "Serializer/Codec/Base64.h"
#include "Storage/Bundle/SecurityStore.h"
#include "Storage/File/FileReplacement.h"
#include "Storage/File/WholeFile.h"

namespace OrvaneStore {
namespace {

using namespace Quern::EncryptedIni;

constexpr std::string_view kCacheFolder = "/Library/Caches/";
constexpr std::string_view kMagicBytes = "\xE4\x08";
constexpr std::string_view kKeychain = "the keychain";

bool Fail(std::string& error, const std::string& what) {
    error = what + ": " + strerror(errno);
    return false;
}

void SplitPlain(StoreFile& file) {
    std::string_view rest = file.bytes;
    for (size_t end; (end = rest.find_first_of("\r\n")) != std::string_view::npos; rest.remove_prefix(end + 1))
        file.text.AddLine(rest.substr(0, end));
    file.unfinished = rest;
}

// The container that a file in its cache folder belongs to, or nothing.
std::string ContainerOf(const std::string& path) {
    char real[PATH_MAX];
    if (!realpath(path.c_str(), real)) return {};
    const std::string whole = real;
    const size_t at = whole.rfind(kCacheFolder);
    return at == std::string::npos ? "" : whole.substr(0, at);
}

void KeyFromKeychain(const Arguments& arguments, StoreFile& file) {
    const std::string home = arguments.home.empty() ? ContainerOf(arguments.file) : arguments.home;
    if (home.empty()) {
        file.keyProblem = "the file lies in no container; give --home, --key or --private-key";
        return;
    }
    char real[PATH_MAX];
    if (!realpath((home + "/Library").c_str(), real)) {  // asking the keychain would make the folder
        file.keyProblem = home + " is no application's container";
        return;
    }
    const std::string library = real;
    setenv("ORVANE_HOME", library.substr(0, library.rfind('/')).c_str(), 1);
    const std::string name =
        arguments.name.empty() ? arguments.file.substr(arguments.file.rfind('/') + 1) : arguments.name;
    const Quern::AString text = Quern::SecurityStore::GetInstance()->GetString(name.c_str(), "");
    const std::string bytes = Quern::base64_decode(text.c_str());
    if (bytes.size() != file.key.size()) {
        file.keyProblem = "the keychain of " + home + " has no key for " + name;
        return;
    }
    std::copy(bytes.begin(), bytes.end(), file.key.begin());
    file.keyOrigin = kKeychain;
}

void KeyFromPrivateKey(const Arguments& arguments, StoreFile& file) {
    Quern::CurvePrivateKey privateKey;
    std::string warning;
    if (!OrvaneLog::ReadKeyFile(arguments.privateKeyFile, privateKey, file.keyProblem, warning)) return;
    if (!warning.empty()) fprintf(stderr, "orvane-store: %s\n", warning.c_str());
    if (RecoverKey(file.parts.publicKey, privateKey, file.key))
        file.keyOrigin = "the private key";
    else
        file.keyProblem = "the file's public key is no point of the curve";
}

void FindKey(const Arguments& arguments, StoreFile& file) {
    if (arguments.key) {
        file.key = *arguments.key;
        file.keyOrigin = "--key";
    } else if (!arguments.privateKeyFile.empty()) {
        KeyFromPrivateKey(arguments, file);
    } else {
        KeyFromKeychain(arguments, file);
    }
}

// Whether the text was read.
bool ReadEncrypted(const Arguments& arguments, StoreFile& file) {
    file.fault = Parse(file.bytes, file.parts);
    if (file.fault != Fault::kNone) return false;
    FindKey(arguments, file);
    return file.isOpen = !file.keyOrigin.empty() && Open(file.parts.body, file.key, file.text);
}

bool IsWhole(std::string_view bytes) {
    File unused;
    return Parse(bytes, unused) == Fault::kNone;
}

// What was read is the only content that the key opens: it gets the name before anything is written over it. What has
// the name then must be of the same owner still, or root could be led elsewhere.
bool FinishSave(const StoreFile& file, Quern::FileReplacement& replacement) {
    if (replacement.LeftOver() != file.bytes || !replacement.PutLeftOverInPlace()) return false;
    const struct stat* const old = replacement.Old();
    return old && S_ISREG(old->st_mode) && old->st_uid == file.state.st_uid;
}

}  // namespace

bool ReadStoreFile(const Arguments& arguments, StoreFile& file, std::string& error) {
    char real[PATH_MAX];  // what a link leads to is replaced, and not the link
    if (!realpath(arguments.file.c_str(), real)) return Fail(error, arguments.file);
    file.path = real;
    const std::unique_ptr<FILE, int (*)(FILE*)> stream(fopen(real, "rb"), fclose);
    if (!stream || fstat(fileno(stream.get()), &file.state) != 0) return Fail(error, arguments.file);
    bool failed = false;
    file.bytes = Quern::ReadToEnd(stream.get(), &failed);
    if (failed) return Fail(error, arguments.file);
    // No text holds a zero byte; the head of an enciphered file does, also where its magic is hurt.
    file.isEncrypted = file.bytes.starts_with(kMagicBytes) || file.bytes.find('\0') != std::string::npos;
    if (!file.isEncrypted) {
        SplitPlain(file);
        file.isOpen = true;
        return true;
    }
    if (ReadEncrypted(arguments, file)) return true;
    StoreFile interrupted;
    interrupted.path = file.path;
    interrupted.state = file.state;
    interrupted.isEncrypted = interrupted.isLeftOver = true;
    interrupted.bytes = Quern::FileReplacement(file.path).LeftOver();
    if (ReadEncrypted(arguments, interrupted)) file = std::move(interrupted);
    return true;
}

bool WriteStoreFile(const StoreFile& file, std::string& error) {
    const std::string bytes =
        file.isEncrypted ? Build(file.text, file.key, file.parts.publicKey) : file.text.Join('\n') + "\n";
    if (bytes.empty()) {
        error = file.path + ": the text is too long for an enciphered file";
        return false;
    }
    // An application removes a file that it cannot open: what is edited stays its owner's.
    if (file.state.st_uid != geteuid() && geteuid() != 0) {
        error = file.path + ": belongs to another user";
        return false;
    }
    Quern::FileReplacement replacement(file.path);
    const bool isLocked = replacement.Lock();
    // Its application may have saved since; run by root in a folder of someone else's, the path may lead elsewhere.
    const struct stat* const old = replacement.Old();
    if (!old || old->st_dev != file.state.st_dev || old->st_ino != file.state.st_ino) {
        error = file.path + ": was replaced meanwhile; nothing is changed";
        return false;
    }
    if (file.isLeftOver && !(isLocked && FinishSave(file, replacement))) {
        error = file.path + ": the save that was cut short cannot be finished now";
        return false;
    }
    // Under a key from elsewhere the file opens, too, where it is the new one beside it that its application will take.
    if (file.isEncrypted && file.keyOrigin != kKeychain && IsWhole(replacement.LeftOver())) {
        error = file.path + ": a save was cut short; edit it with the key of its keychain";
        return false;
    }
    return (replacement.Prepare(bytes) && replacement.PutInPlace()) || Fail(error, file.path);
}

const char* FaultText(Fault fault) {
    switch (fault) {
        case Fault::kHeadBase:
        case Fault::kHeadExt:
            return "the head is cut short";
        case Fault::kMagic:
            return "the magic is another";
        case Fault::kVersion:
            return "the version is too old";
        case Fault::kEncryption:
            return "the encryption is unknown";
        case Fault::kPublicKeyLength:
            return "the public key has another length";
        case Fault::kDigestLength:
            return "the digest has another length";
        case Fault::kBody:
            return "the body is cut short";
        case Fault::kDigest:
            return "the digest does not agree with the body";
        case Fault::kNone:
            break;
    }
    return "ok";
}

}  // namespace OrvaneStore
