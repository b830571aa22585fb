// What of the file system exists for a path that somebody outside the process names.
#ifndef ORVANE_STORAGE_FILE_SANDBOX_H
#define ORVANE_STORAGE_FILE_SANDBOX_H

#include <string>

#include "Base/Seam.h"

namespace Quern {

// Where the platform itself keeps the library inside its container, an implementation gives the paths back as they are.
// Any thread.
class Sandbox : public Seam<Sandbox> {
public:
    // The path of what `path` leads to, with all links followed. Empty if that does not exist, lies outside the
    // application's container, or is one of the library's secrets: the keychain and the user defaults, under whatever
    // name, what their writers leave beside them, and whatever bears their names, in any folder. What is given is a
    // moment's state: whoever opens it follows no further link.
    virtual std::string Resolve(const std::string& path) = 0;
};

template <>
std::shared_ptr<Sandbox> Seam<Sandbox>::MakeBuiltIn();

}  // namespace Quern

#endif
