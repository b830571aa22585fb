// The application's container of a test process: a temporary folder, gone when the process ends.
#ifndef ORVANE_TESTS_SUPPORT_TEST_CONTAINER_H
#define ORVANE_TESTS_SUPPORT_TEST_CONTAINER_H

#include <string>

#include "Support/Files.h"

namespace OrvaneTest {

// The cache folder of the process's container, made at the first call; the library's paths lead there from then on.
const std::string& CacheFolder();
// "<cache>/OrvaneSDKLog/<module>".
std::string LogFolder(const std::string& module);
// Every file of the module's log folder, one behind the other in order of their names.
std::string ReadLogFiles(const std::string& module);

}  // namespace OrvaneTest

#endif
