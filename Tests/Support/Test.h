// What nearly every test begins with, read once for all of them (precompiled): the framework, the names of its
// matchers, the headers of the standard and of the system that tests lean on, and how to wait, to read the console and
// to use the container. A test includes this in their place, behind the header that it is about.
#ifndef ORVANE_TESTS_SUPPORT_TEST_H
#define ORVANE_TESTS_SUPPORT_TEST_H

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

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
#include <numeric>
#include <optional>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "Support/CapturedConsole.h"
#include "Support/Fork.h"
#include "Support/TemporaryFolder.h"
#include "Support/TestContainer.h"
#include "Support/Threads.h"
#include "Support/WaitFor.h"

using testing::AllOf;
using testing::Contains;
using testing::ContainsRegex;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

// Whose own memory and time are counted with the program's, and under which a process takes its time to start.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool kIsSanitized = true;
#else
inline constexpr bool kIsSanitized = false;
#endif

#endif
