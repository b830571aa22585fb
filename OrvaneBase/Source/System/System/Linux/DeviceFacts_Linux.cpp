#include "System/System/DeviceFacts.h"

#include <sys/statfs.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cctype>
#include <cstdio>
#include <fstream>

#include "Base/Linux/MachineId.h"
#include "Serializer/Codec/Md5.h"
#include "Storage/Bundle/InfoDictionary.h"

namespace Quern {
namespace {

std::string FirstLine(const char* path) {
    std::ifstream file(path);
    std::string line;
    std::getline(file, line, '\n');
    line.resize(line.find_last_not_of(std::string(" \t\r\0", 4)) + 1);
    return line;
}

// A bundle id without its last component, which names the application.
std::string Vendor() {
    const InfoValue* id = InfoDictionary::Current().Root().Find("CFBundleIdentifier");
    if (!id || !id->Text()) return {};
    return id->Text()->substr(0, id->Text()->rfind('.'));
}

// The name-based UUID of RFC 4122, version 3: the machine id is the name space, the vendor the name. It gives the
// machine id away to nobody, which its manual asks of whoever hands out an id of the machine.
std::string NameBasedUuid(std::string space, const std::string& name) {
    space += name;
    unsigned char uuid[kMd5DigestSize];
    Md5HashBuffer(reinterpret_cast<char*>(uuid), space.data(), static_cast<int>(space.size()));
    uuid[6] = static_cast<unsigned char>((uuid[6] & 0x0F) | 0x30);  // version 3
    uuid[8] = static_cast<unsigned char>((uuid[8] & 0x3F) | 0x80);  // the variant of the RFC
    std::string text;
    for (int i = 0; i < kMd5DigestSize; ++i) {
        char digits[3];
        snprintf(digits, sizeof digits, "%02X", uuid[i]);
        if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
        text += digits;
    }
    return text;
}

// The value of a line KEY=VALUE, with or without quotes, of the system's description (os-release).
std::string FromOsRelease(const std::string& key) {
    for (const char* path : {"/etc/os-release", "/usr/lib/os-release"}) {
        std::ifstream file(path);
        for (std::string line; std::getline(file, line);) {
            if (line.compare(0, key.size() + 1, key + "=") != 0) continue;
            std::string value = line.substr(key.size() + 1);
            if (value.size() >= 2 && (value[0] == '"' || value[0] == '\'') && value.back() == value[0])
                value = value.substr(1, value.size() - 2);
            return value;
        }
        if (file.is_open()) break;  // the second stands in for the first, it does not add to it
    }
    return {};
}

class LinuxDevice final : public DeviceFacts {
public:
    std::string VendorId() override {
        const std::string machine = MachineId();
        return machine.empty() ? machine : NameBasedUuid(machine, Vendor());
    }

    // The product of a PC, the board of a device tree, or at least the kind of processor.
    std::string Model() override {
        for (const char* path : {"/sys/class/dmi/id/product_name", "/proc/device-tree/model"}) {
            const std::string model = FirstLine(path);
            if (!model.empty()) return model;
        }
        utsname names;
        return uname(&names) == 0 ? names.machine : "";
    }

    // A distribution that rolls on has no version but its kernel's.
    std::string SystemVersion() override {
        const std::string version = FromOsRelease("VERSION_ID");
        if (!version.empty()) return version;
        utsname names;
        return uname(&names) == 0 ? names.release : "";
    }

    long long FreeSpace(const char* path) override {
        struct statfs system;
        if (statfs(path, &system) != 0) return -1;
        return static_cast<long long>(system.f_bfree) * static_cast<long long>(system.f_bsize);
    }

    bool IsRooted() override { return geteuid() == 0; }
};

}  // namespace

template <>
std::shared_ptr<DeviceFacts> Seam<DeviceFacts>::MakeBuiltIn() {
    return std::make_shared<LinuxDevice>();
}

}  // namespace Quern
