#include "Base/Linux/MachineId.h"

#include <cstdint>
#include <fstream>

#include "Serializer/Codec/Hex.h"

namespace Quern {

std::string MachineId() {
    std::string bytes(16, '\0');
    // The second is where the id was kept before systemd, and on some systems still is.
    for (const char* path : {"/etc/machine-id", "/var/lib/dbus/machine-id"}) {
        std::string digits;
        std::getline(std::ifstream(path), digits);
        if (digits.size() == 2 * bytes.size() &&
            HexToBuffer(digits.c_str(), reinterpret_cast<uint8_t*>(bytes.data()), bytes.size()))
            return bytes;
    }
    return {};
}

}  // namespace Quern
