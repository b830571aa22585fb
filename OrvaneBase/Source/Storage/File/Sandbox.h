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
    // moment's state: what it names may be another file a moment later, so it is opened by OpenToRead.
    virtual std::string Resolve(const std::string& path) = 0;

    // Opens a regular file of the container to read it; the caller closes the descriptor. `path` has no link on its
    // way, as Resolve gives it. The way is walked from the container's folder down, so that a link that somebody has
    // put there since leads nowhere, and it is the opened file that is looked at. -1 for a link, for what is no
    // regular file, for a secret, and for a file that cannot be opened.
    virtual int OpenToRead(const std::string& path) = 0;
};

template <>
std::shared_ptr<Sandbox> Seam<Sandbox>::MakeBuiltIn();

}  // namespace Quern

#endif
