// Opens sibling plugins, as a game's package does with the libraries that lie beside it.
#ifndef ORVANE_TOOLS_HOST_PLUGIN_LOADER_H
#define ORVANE_TOOLS_HOST_PLUGIN_LOADER_H

#include <string>

namespace OrvaneHost {

enum class PluginFolder { kUnreadable, kInPart, kWhole };

// Opens every *.so of the folder in byte order of the file names and says on the console what each registered. A file
// that cannot be opened is told and skipped; the folder is then taken in part. A library that registers no plugin is
// told, and is no fault: it may be there for another one. A library that opened is never closed: the host keeps
// pointers into it. Main thread.
PluginFolder LoadPlugins(const std::string& folder);

}  // namespace OrvaneHost

#endif
