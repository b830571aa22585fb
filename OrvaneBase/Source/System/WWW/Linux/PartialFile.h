// A file that is being filled and has no name until it is whole.
#ifndef ORVANE_SYSTEM_WWW_LINUX_PARTIAL_FILE_H
#define ORVANE_SYSTEM_WWW_LINUX_PARTIAL_FILE_H

#include <cstddef>
#include <string>

namespace Quern {

// One thread at a time. Results are 0 or errno.
class PartialFile {
public:
    PartialFile() = default;
    // What was not placed is gone.
    ~PartialFile();
    PartialFile(const PartialFile&) = delete;
    PartialFile& operator=(const PartialFile&) = delete;

    // Makes an empty one on the file system of `place`, the path that it is meant for: without a name, or, where the
    // file system knows no such files or /proc is missing, as a hidden one beside it. An empty path means the folder
    // for temporary files.
    int Open(const std::string& place);
    bool IsOpen() const { return _descriptor >= 0; }

    // At an offset of the caller's: of a write that fails a part may stand in the file, which the next one covers.
    int Write(const char* data, size_t length, long long offset);
    // Empties it.
    int Clear();
    // Gives it the name `path`, which must be free. Once.
    int PlaceAt(const std::string& path);

private:
    int OpenNamed(const std::string& folder);

    int _descriptor = -1;
    std::string _name;  // the hidden file's path, "" without
};

}  // namespace Quern

#endif
