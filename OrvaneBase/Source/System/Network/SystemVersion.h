// The version of the system as a number, for what differs between versions.
#ifndef ORVANE_SYSTEM_NETWORK_SYSTEM_VERSION_H
#define ORVANE_SYSTEM_NETWORK_SYSTEM_VERSION_H

namespace Quern {

// What stands at the text's beginning behind blanks, as in "13.4.1" 13.4; 0 if that is no number. The same in every
// locale. Null is 0.
float ParseSystemVersion(const char* text);

// The version of this system, asked for anew. Any thread.
float SystemVersion();

}  // namespace Quern

#endif
