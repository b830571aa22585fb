// Where the platform lets the application keep its files.
#ifndef ORVANE_STORAGE_FILE_PATH_SOURCE_H
#define ORVANE_STORAGE_FILE_PATH_SOURCE_H

#include <string>

#include "Base/Seam.h"

namespace Quern {

// Absolute paths without a "/" at the end. Each directory exists once it was asked for, unless the platform refuses to
// make it. Any thread.
class PathSource : public Seam<PathSource> {
public:
    // The application's own container, which holds the other two.
    virtual std::string Home() = 0;
    // What the user would miss.
    virtual std::string Documents() = 0;
    // What can be had again; the platform may purge it.
    virtual std::string Caches() = 0;
};

template <>
std::shared_ptr<PathSource> Seam<PathSource>::MakeBuiltIn();

}  // namespace Quern

#endif
