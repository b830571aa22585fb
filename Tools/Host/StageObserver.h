// Says on the console which coarse stage of the application it heard, as "HostStages OnPause".
#ifndef ORVANE_TOOLS_HOST_STAGE_OBSERVER_H
#define ORVANE_TOOLS_HOST_STAGE_OBSERVER_H

#include "Orvane/IApplicationObserver.h"

namespace OrvaneHost {

// The base class registers the object when it is made and takes it out when it goes. The host has one for as long as it
// runs. The lines are for whoever compares the coarse stages with the events that the host sent. Main thread.
class StageObserver final : public Quern::IApplicationObserver {
public:
    void OnCreate() override { orvane_console_log("HostStages OnCreate"); }
    void OnStart() override { orvane_console_log("HostStages OnStart"); }
    void OnPause() override { orvane_console_log("HostStages OnPause"); }
    void OnResume() override { orvane_console_log("HostStages OnResume"); }
    void OnStop() override { orvane_console_log("HostStages OnStop"); }
    void OnDestroy() override { orvane_console_log("HostStages OnDestroy"); }
};

}  // namespace OrvaneHost

#endif
