// An INI file as it lies on the disk, plain or enciphered, read without the classes that would change it.
#ifndef ORVANE_TOOLS_STORE_STORE_FILE_H
#define ORVANE_TOOLS_STORE_STORE_FILE_H

#include <sys/stat.h>

#include <string>

#include "Storage/Bundle/EncryptedIniFormat.h"
#include "Storage/Bundle/IniText.h"
#include "Store/Arguments.h"

namespace OrvaneStore {

struct StoreFile {
    std::string path;      // without links
    struct stat state {};  // of the file that was read
    std::string bytes;
    bool isEncrypted = false;
    // Of an enciphered file:
    Quern::EncryptedIni::Fault fault = Quern::EncryptedIni::Fault::kNone;
    Quern::EncryptedIni::File parts;
    Quern::EncryptedIni::TeaKey key{};
    std::string keyOrigin;    // empty if there is no key
    std::string keyProblem;   // why there is none
    bool isLeftOver = false;  // read from the new file beside it
    // Whether the text was read.
    bool isOpen = false;
    Quern::IniText text;
    std::string unfinished;  // of a plain file: the last line, if it has no line end; the library does not read it
};

// False, and what is wrong in `error`, if the file cannot be read at all. Damage and a missing key are in `file`. Where
// the file does not open but the new one beside it does, whose writer was killed, that is read.
bool ReadStoreFile(const Arguments& arguments, StoreFile& file, std::string& error);

// Replaces the file by its text, in the form and under the key that it has. Owner and mode stay. False, and why in
// `error`, also if the path leads to another file by now, or if a save was cut short that cannot be finished first.
// REQUIRES: the file is open.
bool WriteStoreFile(const StoreFile& file, std::string& error);

// What is wrong with an enciphered file, for people.
const char* FaultText(Quern::EncryptedIni::Fault fault);

}  // namespace OrvaneStore

#endif
