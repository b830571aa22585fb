// The service "REPORT": makes events that are written to a file, or forwarded where the environment names a receiver.
#ifndef ORVANE_EXAMPLES_PELL_REPORT_SERVICE_H
#define ORVANE_EXAMPLES_PELL_REPORT_SERVICE_H

#include "Forwarder.h"
#include "Orvane/IEvent.h"

namespace Pell {

constexpr char kPluginName[] = "PELL";
constexpr char kServiceName[] = "REPORT";

// Any thread.
class ReportService final : public Orvane::Plugin::IReportService {
public:
    const char* GetName() const override;
    const char* GetPluginName() const override;
    Orvane::Plugin::IEvent* CreateEvent(int srcID, const char* eventName) override;
    void DestroyEvent(Orvane::Plugin::IEvent** event) override;
    // From the lines "key=value" of the file that the environment names in PELL_DEVICE, read at each call.
    unsigned int GetDeviceInfo(const char* key, char** buffer, unsigned int size) override;

    // Waits until the events so far have been forwarded, at most that long.
    void Flush(std::chrono::milliseconds deadline) { _forwarder.Flush(deadline); }

private:
    Forwarder _forwarder;
};

}  // namespace Pell

#endif
