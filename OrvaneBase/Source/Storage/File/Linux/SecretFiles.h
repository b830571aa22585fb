// The names of the library's own files in the container's folder Library that nobody else is to see.
//
// Beside each may lie what its writer makes (Storage/File/FileReplacement.h) and, with kUnusableSuffix behind the name,
// what was set aside.
#ifndef ORVANE_STORAGE_FILE_LINUX_SECRET_FILES_H
#define ORVANE_STORAGE_FILE_LINUX_SECRET_FILES_H

namespace Quern {

constexpr char kKeychainFileName[] = "OrvaneCore.keychain";
constexpr char kDefaultsFileName[] = "UserDefaults.json";
constexpr char kUnusableSuffix[] = ".unusable";

}  // namespace Quern

#endif
