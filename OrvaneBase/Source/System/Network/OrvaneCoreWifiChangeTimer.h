// The check by hand for a change of the Wi-Fi network that the platform did not report while the application was in the
// background.
#ifndef ORVANE_SYSTEM_NETWORK_ORVANE_CORE_WIFI_CHANGE_TIMER_H
#define ORVANE_SYSTEM_NETWORK_ORVANE_CORE_WIFI_CHANGE_TIMER_H

namespace Quern {

// Whether it names a network: not empty and, on a system version from 13 on, none of the placeholders that the platform
// gives when it withholds the name.
bool IsValidSSID(const char* name);

// Main thread.
class OrvaneCoreWifiChangeTimer {
public:
    // Keeps the present detail record to compare with, and forgets what the platform reported so far.
    static void RememberBeforeBackground();
    // Has the check made once, in two seconds.
    static void Start();
    // Makes room for the record that is kept. Called once, while the library loads.
    static void MakeSnapshot();

    // The check: delivers the loss of the connection and its return if the network is another one. Nothing if the
    // setting "CheckWifiChange" is not 1, or the platform did report. Another access point of the same network is no
    // change.
    void timefire();
};

}  // namespace Quern

#endif
