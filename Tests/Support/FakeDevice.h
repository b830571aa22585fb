// A device that a test describes, in force for the rest of the process.
#ifndef ORVANE_TESTS_SUPPORT_FAKE_DEVICE_H
#define ORVANE_TESTS_SUPPORT_FAKE_DEVICE_H

#include <memory>
#include <string>

#include "System/System/DeviceFacts.h"

namespace OrvaneTest {

class FakeDevice final : public Quern::DeviceFacts {
public:
    static std::shared_ptr<FakeDevice> Install() {
        auto device = std::make_shared<FakeDevice>();
        Use(device);
        return device;
    }

    std::string VendorId() override { return ++reads, vendorId; }
    std::string Model() override { return ++reads, model; }
    std::string SystemVersion() override { return ++reads, systemVersion; }
    long long FreeSpace(const char* path) override { return asked = path, free; }
    bool IsRooted() override { return rooted; }

    std::string vendorId = "00112233-4455-6677-8899-AABBCCDDEEFF";
    std::string model = "Board9,4";
    std::string systemVersion = "17.5";
    std::string asked;  // the path of the last FreeSpace
    long long free = 5000000000;
    bool rooted = true;
    int reads = 0;
};

}  // namespace OrvaneTest

#endif
