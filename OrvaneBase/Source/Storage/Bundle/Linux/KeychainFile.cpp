#include "Storage/Bundle/Linux/KeychainFile.h"

#include <fcntl.h>
#include <json/json.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <exception>
#include <memory>

#include "Base/XLog.h"
#include "Serializer/Codec/Base64.h"
#include "Storage/Bundle/Linux/KeychainSeal.h"
#include "Storage/File/FileReplacement.h"
#include "Storage/File/WholeFile.h"

namespace Quern {
namespace {

constexpr int kVersion = 1;
constexpr mode_t kOthers = 0077;
// Far more than all secrets of one user.
constexpr size_t kLargestFile = 16 << 20;

std::string ToText(const std::string& bytes) {
    return base64_encode(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<unsigned>(bytes.size()));
}

bool Fetch(const Json::Value& object, const char* name, std::string& bytes) {
    const Json::Value& text = object[name];
    if (!text.isString()) return false;
    bytes = base64_decode(text.asString());
    return true;
}

bool ParseItem(const Json::Value& object, KeychainItem& item) {
    if (!object.isObject()) return false;
    std::string accessible;
    if (Fetch(object, "accessible", accessible)) item.accessible = accessible;
    return Fetch(object, "service", item.service) && Fetch(object, "account", item.account) &&
           Fetch(object, "sealed", item.data);
}

bool ParseContent(const std::string& text, KeychainContent& content) try {
    content.items.clear();
    Json::Value root;
    Json::CharReaderBuilder builder;
    Json::CharReaderBuilder::strictMode(&builder.settings_);
    builder["stackLimit"] = 8;
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    if (!reader->parse(text.data(), text.data() + text.size(), &root, nullptr) || !root.isObject()) return false;
    if (root["version"] != kVersion || !root["items"].isArray() || !Fetch(root, "salt", content.salt) ||
        content.salt.size() != KeychainSeal::kSaltLength)
        return false;
    for (const Json::Value& object : root["items"])
        if (!ParseItem(object, content.items.emplace_back())) return false;
    return true;
} catch (const std::exception&) {
    return false;  // the JSON library throws at texts that nest too deep
}

int32_t Refuse(int32_t status, const std::string& path, const char* why) {
    ORVANE_CONSOLE(kLogError, "keychain %s %s", path.c_str(), why);
    return status;
}

}  // namespace

int32_t ReadKeychainFile(const std::string& path, KeychainContent& content) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (descriptor < 0) {
        if (errno == ENOENT || errno == ENOTDIR) {
            ORVANE_CONSOLE(kLogInfo, "keychain %s does not exist", path.c_str());
            return errSecItemNotFound;
        }
        if (errno == ELOOP) return Refuse(errSecAuthFailed, path, "is a link and is not used");
        return Refuse(errno == EACCES ? errSecAuthFailed : errSecIO, path, strerror(errno));
    }
    const std::unique_ptr<FILE, int (*)(FILE*)> file(fdopen(descriptor, "rb"), fclose);
    if (!file) {
        close(descriptor);
        return Refuse(errSecIO, path, "cannot be read");
    }
    struct stat state {};
    if (fstat(descriptor, &state) != 0) return Refuse(errSecIO, path, strerror(errno));
    if (!S_ISREG(state.st_mode)) return Refuse(errSecAuthFailed, path, "is no file and is not used");
    if (state.st_uid != geteuid()) return Refuse(errSecAuthFailed, path, "belongs to another user and is not used");
    if (state.st_mode & kOthers) return Refuse(errSecAuthFailed, path, "is open to other users and is not used");
    bool error = false;
    KeychainContent read;
    read.text = ReadToEnd(file.get(), &error, kLargestFile);
    if (read.text.size() > kLargestFile) return Refuse(errSecDecode, path, "is damaged");
    if (error) return Refuse(errSecIO, path, "cannot be read");
    if (!ParseContent(read.text, read)) {
        // Where it cannot be replaced, it is written in place while the new file stays beside it.
        read.text = FileReplacement(path).LeftOver(kLargestFile);
        read.isLeftOver = ParseContent(read.text, read);
        if (!read.isLeftOver) return Refuse(errSecDecode, path, "is damaged");
    }
    content = std::move(read);
    return errSecSuccess;
}

int32_t WriteKeychainFile(FileReplacement& file, const std::string& path, const KeychainContent& content) {
    Json::Value root;
    root["version"] = kVersion;
    root["salt"] = ToText(content.salt);
    Json::Value& items = root["items"] = Json::arrayValue;
    for (const KeychainItem& item : content.items) {
        Json::Value& object = items.append(Json::objectValue);
        object["service"] = ToText(item.service);
        object["account"] = ToText(item.account);
        if (item.accessible) object["accessible"] = ToText(*item.accessible);
        object["sealed"] = ToText(item.data);
    }
    Json::StreamWriterBuilder builder;
    builder["indentation"] = " ";
    const std::string text = Json::writeString(builder, root) + "\n";
    // Written in place without a second file, a kill or a loss of power would cost every secret: then rather not at
    // all.
    if (!file.Prepare(text)) return Refuse(errSecIO, path, strerror(errno));
    if (!file.IsAside()) return Refuse(errSecIO, path, "has no room for a second file beside it");
    const std::unique_ptr<FILE, int (*)(FILE*)> now(fopen(path.c_str(), "rbe"), fclose);
    if ((now ? ReadToEnd(now.get()) : "") != content.text)
        return Refuse(errSecIO, path, "was changed by another process meanwhile");
    return file.PutInPlace() ? errSecSuccess : Refuse(errSecIO, path, strerror(errno));
}

}  // namespace Quern
