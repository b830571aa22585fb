// Every test process has a container of its own, whatever it tests: whoever reads a setting opens files there.
#include "Support/TestContainer.h"

namespace OrvaneTest {
namespace {

[[maybe_unused]] const std::string& g_folder = CacheFolder();

}  // namespace
}  // namespace OrvaneTest
