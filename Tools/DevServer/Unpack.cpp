#include "DevServer/Unpack.h"

#include <fcntl.h>
#include <minizip/unzip.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <unordered_map>

#include "Storage/File/WholeFile.h"

namespace OrvaneDevServer {
namespace {

constexpr size_t kLongestName = 255;  // in bytes, which a device's files may have

bool IsPlainName(const std::string& name) {
    const auto isOdd = [](char c) { return c == '/' || c == '\\' || static_cast<unsigned char>(c) < ' ' || c == 0x7F; };
    return !name.empty() && name.size() <= kLongestName && name != "." && name != ".." &&
           std::none_of(name.begin(), name.end(), isOdd);
}

// Control characters are for no terminal.
std::string Shown(const std::string& name) {
    std::string shown = "\"" + name.substr(0, kLongestName) + "\"";
    for (char& c : shown)
        if (static_cast<unsigned char>(c) < ' ' || c == 0x7F) c = '?';
    return shown;
}

// A zip made on a system of this kind says so in its attributes.
bool IsLink(const unz_file_info64& info) {
    constexpr unsigned kUnix = 3;
    return info.version >> 8 == kUnix && S_ISLNK(info.external_fa >> 16);
}

class Unpacking {
public:
    Unpacking(unzFile zip, const std::string& folder, const UnpackLimits& limits, uint64_t packed)
        : _zip(zip), _folder(folder), _limits(limits), _most(std::min(limits.mostBytes, packed * limits.mostRatio)) {}

    std::vector<std::string> Run() {
        int step = unzGoToFirstFile(_zip);
        for (; step == UNZ_OK && TakeEntry(); step = unzGoToNextFile(_zip)) {
        }
        if (step != UNZ_OK && step != UNZ_END_OF_LIST_OF_FILE) _notes.push_back("the zip is damaged");
        _notes.insert(_notes.begin(), std::to_string(_files) + (_files == 1 ? " file, " : " files, ") +
                                          std::to_string(_written) + " bytes");
        return std::move(_notes);
    }

private:
    // False if there is to be no further one.
    bool TakeEntry() {
        unz_file_info64 info;
        std::string name(kLongestName + 2, '\0');
        if (++_entries > _limits.mostEntries) return Stop("there are too many entries");
        if (unzGetCurrentFileInfo64(_zip, &info, name.data(), name.size(), nullptr, 0, nullptr, 0) != UNZ_OK)
            return Stop("the zip is damaged");
        name.resize(std::min<size_t>(info.size_filename, name.size()));
        if (!IsPlainName(name) || IsLink(info)) {
            _notes.push_back("left out: " + Shown(name) + (IsLink(info) ? ", a link" : ", no plain file name"));
            return true;
        }
        if (unzOpenCurrentFile(_zip) != UNZ_OK) {
            _notes.push_back("left out: " + Shown(name) + ", which cannot be read");
            return true;
        }
        const bool goesOn = WriteEntry(name);
        if (unzCloseCurrentFile(_zip) != UNZ_OK && goesOn) _notes.push_back(Shown(name) + " is damaged");
        return goesOn;
    }

    bool WriteEntry(const std::string& name) {
        const int descriptor = OpenNew(name);
        if (descriptor < 0 && errno == ENAMETOOLONG) {
            _notes.push_back("left out: " + Shown(name) + ", whose name is too long here");
            return true;
        }
        if (descriptor < 0) return Stop(Shown(name) + ": " + strerror(errno));
        ++_files;
        const bool goesOn = CopyTo(descriptor, name);
        close(descriptor);
        return goesOn;
    }

    bool CopyTo(int descriptor, const std::string& name) {
        for (int count; (count = unzReadCurrentFile(_zip, _piece, sizeof _piece)) != 0;) {
            if (count < 0) {
                _notes.push_back(Shown(name) + " is damaged");
                return true;
            }
            if (_written + static_cast<uint64_t>(count) > _most)
                return Stop("it holds far more than its size allows: ended in " + Shown(name));
            if (!Quern::WriteAll(descriptor, {_piece, static_cast<size_t>(count)}))
                return Stop(Shown(name) + ": " + strerror(errno));
            _written += static_cast<uint64_t>(count);
        }
        return true;
    }

    // The search for a free number goes on where the name's last one ended.
    int OpenNew(const std::string& name) {
        for (size_t& copies = _copies[name];;) {
            ++copies;
            const std::string path = _folder + "/" + name + (copies == 1 ? "" : "." + std::to_string(copies));
            const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600);
            if (descriptor >= 0 || errno != EEXIST) return descriptor;
        }
    }

    bool Stop(const std::string& why) {
        _notes.push_back(why);
        return false;
    }

    const unzFile _zip;
    const std::string _folder;
    const UnpackLimits _limits;
    const uint64_t _most;
    size_t _entries = 0, _files = 0;
    uint64_t _written = 0;
    std::unordered_map<std::string, size_t> _copies;  // of each name
    std::vector<std::string> _notes;
    char _piece[1 << 16];
};

}  // namespace

std::vector<std::string> Unpack(const std::string& zip, const std::string& folder, const UnpackLimits& limits) {
    std::error_code error;
    const uint64_t packed = std::filesystem::file_size(zip, error);
    if (error) return {"no zip: " + error.message()};
    std::filesystem::create_directories(folder, error);
    constexpr uint64_t kEmptyZip = 22;  // which the reader takes for none
    const std::unique_ptr<void, int (*)(void*)> opened(unzOpen64(zip.c_str()), unzClose);
    if (!opened) return {packed == kEmptyZip ? "0 files, 0 bytes" : "it is no zip, and kept as it is"};
    return std::make_unique<Unpacking>(opened.get(), folder, limits, packed)->Run();
}

}  // namespace OrvaneDevServer
