// What the network does at the application's way into the background and back.
#ifndef ORVANE_SYSTEM_NETWORK_A_NETWORK_APPLICATION_OBSERVER_H
#define ORVANE_SYSTEM_NETWORK_A_NETWORK_APPLICATION_OBSERVER_H

namespace Quern {

// A lifecycle observer. One object of it is made while the library loads, behind the lifecycle's run-time classes; it
// enters itself there by name and stays for the process.
class ANetworkApplicationObserver {
public:
    ANetworkApplicationObserver();
};

}  // namespace Quern

#endif
