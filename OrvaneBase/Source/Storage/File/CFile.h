// A thin class over a standard file stream.
#ifndef ORVANE_STORAGE_FILE_C_FILE_H
#define ORVANE_STORAGE_FILE_C_FILE_H

#include <cstdint>
#include <cstdio>
#include <ctime>

#include "Base/Container/AString.h"

namespace Quern {

// Any other value opens for reading.
enum FileMode : int32_t {
    kFileCreate = 0,     // "wb+": truncates, reads and writes
    kFileAppend = 1,     // "ab+": keeps, reads anywhere and writes at the end
    kFileRead = 2,       // "rb"
    kFileRecreate = 3,   // as kFileCreate
    kFileWriteOnly = 4,  // "wb": truncates, writes
};

// Any value above the last counts as from the start.
enum FilePosition : int32_t {
    kFromBegin = 0,
    kFromCurrent = 1,
    kFromEnd = 2,
};

// Lengths and offsets are in bytes; a negative length counts as 0. One thread at a time.
class CFile {
public:
    CFile() = default;
    virtual ~CFile();
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;

    // Closes what is open first, unless the path is null. The path is kept even if it could not be opened.
    bool Open(const char* path, FileMode mode);
    void Close();

    // Whether a stream is open and its file is still there under its path.
    bool Exist() const;
    // The same for a third of its cost, to be asked before every line of a log: walks along the path only if the open
    // file has changed since the path was last found in place. Deleting or renaming the file shows at once; a folder
    // above it that is renamed shows when the stream has next written.
    bool IsInPlace() const;
    static bool Exist(const char* path);
    // Removes the file under the path, and leaves an open stream open.
    bool Remove();
    static bool Remove(const char* path);
    static bool Rename(const char* oldPath, const char* newPath);
    static bool IsDir(const char* path);

    // Reads from `offset`, counted from the start. The count read, less than asked for at the end of the file; 0 if
    // there is no such position; -1 for a null buffer, without a stream, and if reading failed.
    int Read(void* buffer, int64_t offset, int length);
    // From the start.
    int Read(void* buffer, int length) { return Read(buffer, 0, length); }
    // Writes over the start of the file (in mode kFileAppend: at its end), and flushes.
    bool Write(const void* buffer, int length);
    // Writes at the end and does not flush. The result is true only for a length of 0 or 1, whatever was written;
    // callers ignore it.
    bool Append(const void* buffer, int length);

    // 0 on failure. A file of 2 GiB or more gives the greatest int.
    int GetLength();
    // The new position; 0 on failure.
    int64_t Seek(int64_t offset, FilePosition from);
    // What fseek gives; 0 without a stream.
    int SeekToBegin();
    int SeekToEnd();

private:
    // Moves the stream, which also ends a run of appends.
    int Move(int64_t offset, int whence);

    FILE* _stream = nullptr;
    AString _path;
    // The open file's change time when its path was last found in place.
    mutable timespec _seenChange{};
    bool _appendMode = false;
    // In append mode, nothing but Append came since the last move: the stream stands at its end, and another append
    // needs no seek, which would cost a system call and flush the stream.
    bool _appending = false;
};

}  // namespace Quern

#endif
