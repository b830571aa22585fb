// A zip file that is being written, of files of the sandbox (Storage/File/Sandbox.h).
#ifndef ORVANE_BASE_CONFIGURE_ZIP_ARCHIVE_H
#define ORVANE_BASE_CONFIGURE_ZIP_ARCHIVE_H

#include <climits>
#include <string>

namespace Quern {

// One thread at a time.
class ZipArchive {
public:
    // Takes in `mostBytes` of files at the most, before they are compressed.
    explicit ZipArchive(long long mostBytes = LLONG_MAX) : _bytesLeft(mostBytes) {}
    ~ZipArchive() { CloseZipFile(); }
    ZipArchive(const ZipArchive&) = delete;
    ZipArchive& operator=(const ZipArchive&) = delete;

    // Makes the file, readable by its owner alone, in place of one that lies there. A link there makes it fail. Closes
    // what was open before.
    bool CreateZipFile(const std::string& path);
    // Adds a regular file under that name, compressed, as long as it is now: what is appended meanwhile is left out.
    // `path` is one that the sandbox has resolved. False, and nothing is added, without an open zip, for what the
    // sandbox does not open (a link, a folder, a secret), and for a file that is larger than what may still be taken
    // in. False, with an entry that holds the beginning, if reading or writing failed.
    bool AddFileToZip(const std::string& path, const std::string& nameInZip);
    // Whether a file was left out for its size.
    bool HasLeftOut() const { return _hasLeftOut; }
    // False without an open zip, and if what was added could not be written.
    bool CloseZipFile();

private:
    bool Charge(long long bytes);

    void* _zip = nullptr;
    long long _bytesLeft;
    bool _hasLeftOut = false;
};

}  // namespace Quern

#endif
