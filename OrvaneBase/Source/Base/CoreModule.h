// The name of the library's own module.
#ifndef ORVANE_BASE_CORE_MODULE_H
#define ORVANE_BASE_CORE_MODULE_H

namespace Quern {

// Of its plugin, of its logger, and of the section of its settings.
inline constexpr char kCoreModule[] = "OrvaneCore";

}  // namespace Quern

#endif
