// The device's identity as the data plugin tells it, so that every part of the SDK reports the same.
#ifndef ORVANE_SYSTEM_SYSTEM_C_SYSTEM_UNIFY_H
#define ORVANE_SYSTEM_SYSTEM_C_SYSTEM_UNIFY_H

namespace Quern {

// Each gives null while the core setting "UnifyDeviceInfo" is off, without the plugin "PELL" and its service "REPORT",
// and for what the service does not know; the next call then asks again. An answer is kept, and valid for the life of
// the process. Any thread, once the plugin host has started: the setting is read at the first call and kept.
class CSystemUnify {
public:
    CSystemUnify() = delete;

    static const char* GetUdid();
    static const char* GetBundleId();
    static const char* GetModel();
    static const char* GetSysVersion();
    static const char* GetAppVersion();
    static const char* GetDeviceBrand();

private:
    static const char* getDeviceInfo(const char* key);
};

}  // namespace Quern

#endif
