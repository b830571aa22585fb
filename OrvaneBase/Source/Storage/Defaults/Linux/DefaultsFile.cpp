#include "Storage/Defaults/Linux/DefaultsFile.h"

#include <fcntl.h>
#include <json/reader.h>
#include <json/writer.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>

#include "Base/XLog.h"
#include "Storage/File/FileReplacement.h"
#include "Storage/File/Linux/SecretFiles.h"
#include "Storage/File/WholeFile.h"

namespace Quern {
namespace {

// Far more than what small dictionaries need.
constexpr size_t kLargestFile = 4 << 20;
constexpr int kDeepestNesting = 64;

enum class Content { kNone, kWhole, kDamaged, kUnreadable };

bool Parse(const std::string& text, Json::Value& root) try {
    Json::CharReaderBuilder builder;
    Json::CharReaderBuilder::strictMode(&builder.settings_);
    builder["rejectDupKeys"] = false;  // others write this file as well; the last one counts
    builder["stackLimit"] = kDeepestNesting;
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    return reader->parse(text.data(), text.data() + text.size(), &root, nullptr) && root.isObject();
} catch (const std::exception&) {
    return false;  // the JSON library throws at texts that nest too deep
}

Content Refuse(Content content, const std::string& path, const char* why) {
    ORVANE_LOG_ERROR("user defaults %s %s", path.c_str(), why);
    return content;
}

// Gives the text of a damaged file too.
Content Read(const std::string& path, Json::Value& root, std::string& text) {
    root = Json::objectValue;
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) return errno == ENOENT ? Content::kNone : Refuse(Content::kUnreadable, path, strerror(errno));
    const std::unique_ptr<FILE, int (*)(FILE*)> file(fdopen(descriptor, "rb"), fclose);
    if (!file) {
        close(descriptor);
        return Refuse(Content::kUnreadable, path, "cannot be read");
    }
    struct stat state {};
    if (fstat(descriptor, &state) != 0 || !S_ISREG(state.st_mode))
        return Refuse(Content::kUnreadable, path, "is no file");
    bool error = false;
    text = ReadToEnd(file.get(), &error, kLargestFile);
    if (error) return Refuse(Content::kUnreadable, path, "cannot be read, or is far too large");
    if (Parse(text, root)) return Content::kWhole;
    // Where it cannot be replaced, it is written in place while the new file stays beside it.
    if (Parse(FileReplacement(path).LeftOver(kLargestFile), root)) return Content::kWhole;
    root = Json::objectValue;
    return Refuse(Content::kDamaged, path, "is damaged");
}

bool Replace(FileReplacement& file, const std::string& path, const std::string& text) {
    if (file.Prepare(text) && file.PutInPlace()) return true;
    ORVANE_LOG_ERROR("user defaults %s cannot be written: %s", path.c_str(), strerror(errno));
    return false;
}

void Apply(const DefaultsChanges& changes, Json::Value& root) {
    for (const auto& [key, members] : changes) {
        Json::Value& dictionary = root[key];
        if (!dictionary.isObject()) dictionary = Json::objectValue;
        for (const auto& [name, value] : members) {
            if (value.isNull())
                dictionary.removeMember(name);
            else
                dictionary[name] = value;
        }
    }
}

}  // namespace

Json::Value ReadDefaultsFile(const std::string& path) {
    Json::Value root;
    std::string unused;
    Read(path, root, unused);
    return root;
}

bool ChangeDefaultsFile(const std::string& path, const DefaultsChanges& changes) {
    FileReplacement file(path);
    file.Lock();
    Json::Value root;
    std::string old;
    const Content content = Read(path, root, old);
    if (content == Content::kUnreadable) return false;
    Json::Value changed = root;
    Apply(changes, changed);
    if (content == Content::kWhole && changed == root) return true;
    if (content == Content::kDamaged) {
        const std::string asidePath = path + kUnusableSuffix;
        FileReplacement aside(asidePath);
        if (!Replace(aside, asidePath, old)) return false;
    }
    Json::StreamWriterBuilder builder;
    builder["indentation"] = " ";
    return Replace(file, path, Json::writeString(builder, changed) + "\n");
}

}  // namespace Quern
