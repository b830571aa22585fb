#include "DevServer/Lint/KnownKeys.h"

#include <algorithm>

namespace OrvaneDevServer {
namespace {

using enum KeyType;
using enum Effect;

// "OperationQueueMinThreadNum" and "OperationQueueMaxThreadNum" are 3 and 6 with "OperationMode" 2: here is the default
// of the other mode.
constexpr KnownKey kKeys[] = {
    {"*", "LogMode", kInt, "0", kNextLaunch},
    {"*", "LogSingleSizeLimit", kInt, "0", kNextLaunch},
    {"*", "LogExceedOp", kInt, "0", kNextLaunch},
    {"*", "LogConsoleOutput", kInt, "1", kNextLaunch},
    {"*", "LogLevel", kText, "", kAtOnce},
    {"*", "LogHoursLimit", kInt, "240", kNextLaunch},
    {"*", "LogFileNumLimit", kInt, "-1", kNextLaunch},
    {"*", "LogFileCleanAuto", kBool, "true", kNextLaunch},
    {"Orvane", "ReportDataType", kInt, "2", kNextLaunch},
    {"OrvaneCore", "LogThreadTimeWait", kInt, "86400000", kNextLaunch},
    {"OrvaneCore", "OperaionQueueShrinkStep", kInt, "2", kNextLaunch},
    {"OrvaneCore", "OperationIntervalPerLoop", kInt, "10", kNextLaunch},
    {"OrvaneCore", "OperationMode", kInt, "1", kNextLaunch},
    {"OrvaneCore", "OperationQueueMaxThreadNum", kInt, "3", kNextLaunch},
    {"OrvaneCore", "OperationQueueMinThreadNum", kInt, "2", kNextLaunch},
    {"OrvaneCore", "OperationQueueShrinkInterval", kInt, "5", kNextLaunch},
    {"OrvaneCore", "OperationQueueStrechStep", kInt, "1", kNextLaunch},
    {"OrvaneCore", "OperationQueueStretch", kBool, "true", kNextLaunch},
    {"OrvaneCore", "OrvaneIntelliDevLogMode", kInt, "-1", kAtOnce},
    {"OrvaneCore", "PellReportAvailable", kInt, "1", kAtOnce},
    {"OrvaneCore", "RemoteConfigMaxRetryCount", kInt, "3", kAtOnce},
    {"OrvaneCore", "RemoteConfigNextGap", kInt, "86400", kNextLaunch},
    {"OrvaneCore", "RemoteConfigUrl", kText, "", kNextLaunch},
    {"OrvaneCore", "TaskSystemEnable", kBool, "false", kNextLaunch},
    {"OrvaneCore", "UnifyDeviceInfo", kBool, "false", kNextLaunch},
    {"OrvaneCore", "YarrowBackupUrl", kText, "unknown", kNextLaunch},
    {"OrvaneCore", "YarrowBlackList", kText, "", kNextLaunch},
    {"OrvaneCore", "YarrowEnable", kBool, "false", kNextLaunch},
    {"OrvaneCore", "YarrowLowerLimit", kInt, "5", kNextLaunch},
    {"OrvaneCore", "YarrowRequestCount", kInt, "30", kNextLaunch},
    {"OrvaneCore", "YarrowStoreFilename", kText, "traceids.store", kNextLaunch},
    {"OrvaneCore", "YarrowStoreFileEncrypt", kBool, "false", kNextLaunch},
    {"OrvaneCore", "YarrowTargetMode", kInt, "1", kNextLaunch},
    {"OrvaneCore", "YarrowUpperLimit", kInt, "60", kNextLaunch},
    {"OrvaneCore", "YarrowUrl", kText, "", kNextLaunch},
    {"OrvaneCore", "YarrowWhiteList", kText, "", kNextLaunch},
    {"Upload", "file_path", kText, "", kAtOnce},
    {"Upload", "file_pattern", kText, "", kAtOnce},
    {"Upload", "manual_upload", kInt, "0", kAtOnce},
    {"Upload", "part_size", kInt, "0", kAtOnce},
    {"Upload", "upload_id", kText, "", kAtOnce},
};

}  // namespace

std::span<const KnownKey> KnownKeys() {
    return kKeys;
}

const KnownKey* FindKnownKey(const std::string& module, const std::string& key) {
    const auto* const found = std::find_if(std::begin(kKeys), std::end(kKeys), [&](const KnownKey& known) {
        return key == known.name && (module == known.module || known.module[0] == '*');
    });
    return found == std::end(kKeys) ? nullptr : found;
}

}  // namespace OrvaneDevServer
