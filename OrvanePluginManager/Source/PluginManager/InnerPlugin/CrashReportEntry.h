// What the library leaves in the user defaults for the crash-report SDK beside it.
#ifndef ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_CRASH_REPORT_ENTRY_H
#define ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_CRASH_REPORT_ENTRY_H

namespace Orvane::Plugin {

// Enters the library's version into the dictionary "FennelSDKInfos", under the library's key of ten hexadecimal digits,
// and keeps what other SDKs have entered there. At the first call of the process; a further one does nothing. Does not
// wait for the disk.
void registerFennel();

}  // namespace Orvane::Plugin

#endif
