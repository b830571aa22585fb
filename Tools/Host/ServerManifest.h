// The manifest, and the same with the configuration server's address in it.
#ifndef ORVANE_TOOLS_HOST_SERVER_MANIFEST_H
#define ORVANE_TOOLS_HOST_SERVER_MANIFEST_H

#include <string>

namespace OrvaneHost {

// Whether the file can be read, and is a property list with a dictionary. Told on the console if not.
bool IsManifest(const std::string& path);

// Gives the library a manifest that names the configuration server: a copy of the one at `path`, with the address as
// the setting "RemoteConfigUrl" of the section "OrvaneCore". An empty `path` stands for the manifest that the library
// would find by itself. Call it before the library reads its manifest. No file is changed. False, and told on the
// console, if that cannot be done.
bool UseServer(const std::string& url, const std::string& path);

}  // namespace OrvaneHost

#endif
