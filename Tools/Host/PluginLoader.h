// Opens sibling plugins, as a game's package does with the libraries that lie beside it.
#ifndef ORVANE_TOOLS_HOST_PLUGIN_LOADER_H
#define ORVANE_TOOLS_HOST_PLUGIN_LOADER_H

#include <string>

namespace OrvaneHost {

// Opens every *.so of the folder in byte order of the file names and says on the console what each registered. A file
// that does not open, or registers no plugin, is told and skipped. A library that opened is never closed: the host
// keeps pointers into it. Main thread. False only if the folder cannot be read.
bool LoadPlugins(const std::string& folder);

}  // namespace OrvaneHost

#endif
