// What a game may show of the network.
#ifndef ORVANE_TOOLS_HOST_NETWORK_REPORT_H
#define ORVANE_TOOLS_HOST_NETWORK_REPORT_H

#include <string>

namespace OrvaneHost {

// Says on the console how the device is connected, in detail, and from the first call on each change of it. Main
// thread.
void TellNetwork();

// Plays a modem: from now on, a cellular connection (a link of a name such as "wwan0") is by that radio and carrier.
// `words` are a radio's name without its "CTRadioAccessTechnology", the country code and the network code ("LTE 460
// 00"). False if they are not three. Main thread.
bool PlayModem(const std::string& words);

}  // namespace OrvaneHost

#endif
