// What nearly every test begins with, read once for all of them (precompiled): the framework, the names of its
// matchers, the standard headers that tests lean on, and their everyday helpers. A test includes this in their place,
// behind the header that it is about.
#ifndef ORVANE_TESTS_SUPPORT_TEST_H
#define ORVANE_TESTS_SUPPORT_TEST_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "Support/CapturedConsole.h"
#include "Support/TemporaryFolder.h"
#include "Support/TestContainer.h"
#include "Support/WaitFor.h"

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

#endif
