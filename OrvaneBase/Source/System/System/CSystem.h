// What the device and the application are.
#ifndef ORVANE_SYSTEM_SYSTEM_C_SYSTEM_H
#define ORVANE_SYSTEM_SYSTEM_C_SYSTEM_H

namespace Quern {

// Identity comes from the data plugin where that has taken it over (CSystemUnify), else from the platform, and is kept.
// Texts are never null, and valid for the life of the process. Any thread.
class CSystem {
public:
    CSystem() = delete;

    // 32 upper-case hexadecimal digits that stand for the device and the application's vendor; "F", which is not kept,
    // if the platform has no id.
    static const char* GetUdid();
    // "UNKNOWN" if the manifest names none.
    static const char* GetBundleId();
    static const char* GetModel();
    // "N" if the platform does not tell.
    static const char* GetSysVersion();
    // The manifest's short version, with a "." and its build version behind it if there is one: "1.2.3.456". "N"
    // without a short version.
    static const char* GetAppVersion();
    // "Apple", whatever the data plugin says.
    static const char* GetDeviceBrand();

    // Whether the system's protection of an application from itself is gone.
    static bool IsDeviceRooted();
    // Deprecated. -1, with a log line.
    static int CheckPermission(int permission);
    // Whether the application counts as started for the first time; one answer for the whole process. It goes by the
    // form of the version alone: a version with two or more dots is always taken for new, and stored in the default
    // bundle.
    static bool IsFirstLaunch();
    // Bytes that are free on the file system of "/var"; -1 if that cannot be told.
    static long long GetFreeDiskSpace();
};

}  // namespace Quern

#endif
