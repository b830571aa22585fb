// The tests of the tools know the folder by their own namespace.
#ifndef ORVANE_TESTS_TOOLS_LOG_TEMPORARY_FOLDER_H
#define ORVANE_TESTS_TOOLS_LOG_TEMPORARY_FOLDER_H

#include "Support/TemporaryFolder.h"

namespace OrvaneLog {
using OrvaneTest::TemporaryFolder;
}

#endif
