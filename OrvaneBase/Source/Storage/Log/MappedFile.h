// A file of fixed size in memory, which keeps what is written to it when the process is killed.
#ifndef ORVANE_STORAGE_LOG_MAPPED_FILE_H
#define ORVANE_STORAGE_LOG_MAPPED_FILE_H

#include <cstddef>

namespace Quern {

// Maps the first `size` bytes of a file, shared and writable, creating it with mode 0660. A file that is shorter is
// filled with zeros from its start, so that every byte has its place on the disk. Returns 1 and the address, or 0 and
// a line on the console. The mapping stays for the life of the process.
int open_mmap_file(const char* path, void** memory, size_t size);

}  // namespace Quern

#endif
