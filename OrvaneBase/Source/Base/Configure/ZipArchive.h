// A zip file that is being written.
#ifndef ORVANE_BASE_CONFIGURE_ZIP_ARCHIVE_H
#define ORVANE_BASE_CONFIGURE_ZIP_ARCHIVE_H

#include <string>

namespace Quern {

// One thread at a time.
class ZipArchive {
public:
    ZipArchive() = default;
    ~ZipArchive() { CloseZipFile(); }
    ZipArchive(const ZipArchive&) = delete;
    ZipArchive& operator=(const ZipArchive&) = delete;

    // Makes the file, readable by its owner alone, in place of one that lies there. A link there makes it fail. Closes
    // what was open before.
    bool CreateZipFile(const std::string& path);
    // Adds a regular file under that name, compressed, as long as it is now: what is appended meanwhile is left out.
    // False, and nothing is added, without an open zip, for a link and for what is no file. False, with an entry that
    // holds the beginning, if reading or writing failed.
    bool AddFileToZip(const std::string& path, const std::string& nameInZip);
    // False without an open zip, and if what was added could not be written.
    bool CloseZipFile();

private:
    void* _zip = nullptr;
};

}  // namespace Quern

#endif
