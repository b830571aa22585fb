// A file that is being filled and has no name until it is whole.
#ifndef ORVANE_SYSTEM_WWW_LINUX_PARTIAL_FILE_H
#define ORVANE_SYSTEM_WWW_LINUX_PARTIAL_FILE_H

#include <cstddef>
#include <memory>
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

    // Adds to its end. Small pieces are gathered, since a write of 64 KB takes the kernel little more than half the
    // time of four of 16: what fails may so be told by a later call. What could not be written is dropped, and Length
    // says where the file ends.
    int Append(const char* data, size_t length);
    // Writes what is gathered. Before another thread has the file.
    int Flush();
    // What was added, but for what was dropped.
    long long Length() const { return _length + static_cast<long long>(_gathered); }
    // Empties it.
    int Clear();
    // Gives it the name `path`, which must be free. Once. REQUIRES: nothing is gathered.
    int PlaceAt(const std::string& path);

private:
    int OpenNamed(const std::string& folder);
    // Of a write that fails a part may stand in the file, which the next one covers.
    int Write(const char* data, size_t length);

    int _descriptor = -1;
    long long _length = 0;  // of the file
    std::unique_ptr<char[]> _pieces;
    size_t _gathered = 0;  // bytes of `_pieces` that belong behind the file's end
    std::string _name;     // the hidden file's path, "" without
};

}  // namespace Quern

#endif
