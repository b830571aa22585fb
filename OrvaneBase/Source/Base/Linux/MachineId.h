// The machine's own id, as systemd keeps it (machine-id(5)).
#ifndef ORVANE_BASE_LINUX_MACHINE_ID_H
#define ORVANE_BASE_LINUX_MACHINE_ID_H

#include <string>

namespace Quern {

// Its 16 bytes; empty on a machine without a sound one. Never to be handed out as it is: derive from it.
std::string MachineId();

}  // namespace Quern

#endif
