// The manifest, and the same with the configuration server's address in it.
#ifndef ORVANE_TOOLS_HOST_SERVER_MANIFEST_H
#define ORVANE_TOOLS_HOST_SERVER_MANIFEST_H

#include <string>

namespace OrvaneHost {

// Whether the file can be read, and is a property list with a dictionary. Told on the console if not.
bool IsManifest(const std::string& path);

// Has the library read the manifest, of `path` or where it would look for itself if that is empty, with the address as
// the setting "RemoteConfigUrl" of the section "OrvaneCore". Before the library reads it; no file is changed. False,
// told on the console, if that cannot be.
bool UseServer(const std::string& url, const std::string& path);

}  // namespace OrvaneHost

#endif
