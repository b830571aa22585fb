// From the platform's error codes to those that listeners get.
#ifndef ORVANE_SYSTEM_WWW_TASK_WWW_ERROR_CODE_H
#define ORVANE_SYSTEM_WWW_TASK_WWW_ERROR_CODE_H

#include "Orvane/WWWTask.h"

namespace Quern {

// kWWWErrorOther for every code that has no place of its own.
WWWErrorCode ConvertToWWWErrorCode(int platformCode);

}  // namespace Quern

#endif
