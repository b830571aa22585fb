// The name of the library's own module, which plugins and games know too.
#ifndef ORVANE_BASE_CORE_MODULE_H
#define ORVANE_BASE_CORE_MODULE_H

#include "Orvane/IPluginManager.h"

namespace Quern {

using Orvane::Plugin::kCoreModule;

}  // namespace Quern

#endif
