// A new content for a file, put in its place so that a kill, a full disk or a loss of power leaves the old or the new.
#ifndef ORVANE_STORAGE_FILE_FILE_REPLACEMENT_H
#define ORVANE_STORAGE_FILE_FILE_REPLACEMENT_H

#include <sys/stat.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace Quern {

// The content is written to a new file beside NAME, synced, and takes the name by a rename. Beside NAME lie at most
//
//   .NAME.orvane-new          the new file, locked (flock) by its writer. Unlocked it is what a killed writer left
//   .NAME.orvane-new-XXXX..   that of a writer who could not have the lock in time; the next writer removes it
//
// both readable by their owner alone while NAME does not exist, and of its owner and mode otherwise, before their
// first byte. Where there can be no second file (a full disk, a folder without the right, an owner who cannot be given)
// or it cannot take the name (NAME is a mount point), the content is written over the old one in place. A link is
// followed, and stays. Everything happens in the folder that NAME lay in when the object was made.
//
//   FileReplacement file(path);
//   if (file.Lock() ...) look at file.LeftOver(), if what a killed writer left may matter
//   if (file.Prepare(content)) { what must come before the new content; file.PutInPlace(); }
//
// One thread at a time. The old file is as it was until PutInPlace.
class FileReplacement {
public:
    using Duration = std::chrono::milliseconds;
    // How long a writer may hold the lock before others go past it: it may be stopped, or not even be a writer.
    static constexpr Duration kPatience{500};
    // Behind "." and NAME.
    static constexpr std::string_view kSuffix = ".orvane-new";

    explicit FileReplacement(const std::string& path);
    // Drops what was not put in place, and the lock. What someone else left over stays, unless Prepare took its place.
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    // Keeps other writers of the file off, as far as they keep to it. Waits for them: `patience` for each that comes
    // before, four times that at most, so it may go past one who has only begun: a holder is never sure to be alone.
    // False if it cannot be had; Prepare works all the same, and does not ask for it again.
    bool Lock(Duration patience = kPatience);

    // The file that is to be replaced, as it was when the object was made or Lock last looked; null if there was none.
    const struct stat* Old() const { return _hasOld ? &_old : nullptr; }

    // The whole content of the new file that someone else wrote. Empty if there is none, or none to be trusted: of
    // another user, open to more than NAME is, or longer than `most`. Without the lock its writer may be at work.
    std::string LeftOver(size_t most = SIZE_MAX) const;
    // Gives that file the name. REQUIRES: the lock, and no Prepare yet.
    bool PutLeftOverInPlace();

    // Makes the new content ready, and waits for the disk. False, with errno set, if there is no room or no right; the
    // old file is as it was. `content` must outlive the object. Once.
    bool Prepare(std::string_view content);
    // Whether it is ready in a file of its own. Else PutInPlace writes it over the old one.
    bool IsAside() const { return _isReady && _inPlace < 0; }
    // Once, after Prepare. False, with errno set, if it failed: a content that was ready aside then stays there.
    bool PutInPlace();

private:
    void LookAtOld();
    bool IsOurs(int descriptor) const;
    bool OpenNext();
    void OpenStray();
    void RemoveStrays();
    bool WriteNext();
    bool GiveOwnerAndMode();
    bool OpenInPlace();
    bool WriteInPlace(std::string_view content);
    bool MoveNext(std::string_view content);
    void CloseNext();

    int _folder = -1;
    std::string _name;  // in the folder
    struct stat _old {};
    bool _hasOld = false;

    std::string _next;         // the name of the new file; empty once it has another or is to stay
    int _descriptor = -1;      // of the new file
    bool _isLeftOver = false;  // and still as someone else wrote it
    bool _hasLock = false;
    bool _isRefused = false;  // the lock, when it was last asked for

    std::string_view _content;
    bool _isReady = false;
    int _inPlace = -1;  // the old file, with room for the content
};

}  // namespace Quern

#endif
