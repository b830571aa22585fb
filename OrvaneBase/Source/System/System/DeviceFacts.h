// What the platform tells about the device and its system.
#ifndef ORVANE_SYSTEM_SYSTEM_DEVICE_FACTS_H
#define ORVANE_SYSTEM_SYSTEM_DEVICE_FACTS_H

#include <string>

#include "Base/Seam.h"

namespace Quern {

// A text is empty if the platform cannot tell. Any thread.
class DeviceFacts : public Seam<DeviceFacts> {
public:
    // Identifies the device towards the applications of one vendor: the same for all of them, another for another
    // vendor's. In the form of a UUID, upper case.
    virtual std::string VendorId() = 0;
    // The model, in the maker's notation.
    virtual std::string Model() = 0;
    // The version of the system, such as "12".
    virtual std::string SystemVersion() = 0;
    // Bytes that are free on the file system of a path; -1 if that cannot be told.
    virtual long long FreeSpace(const char* path) = 0;
    // Whether the system's protection of an application from itself is gone.
    virtual bool IsRooted() = 0;
};

template <>
std::shared_ptr<DeviceFacts> Seam<DeviceFacts>::MakeBuiltIn();

}  // namespace Quern

#endif
