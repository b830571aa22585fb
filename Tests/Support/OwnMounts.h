// Mounts that this process alone sees: small disks, files that cannot be replaced, files that seem not to be there.
#ifndef ORVANE_TESTS_SUPPORT_OWN_MOUNTS_H
#define ORVANE_TESTS_SUPPORT_OWN_MOUNTS_H

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>

// Leaves the test where the user may not mount. What is mounted from then on goes with the process.
#define ORVANE_OWN_MOUNTS()                                                         \
    if (unshare(CLONE_NEWNS) != 0) GTEST_SKIP() << "the right to mount is missing"; \
    ASSERT_EQ(mount("", "/", nullptr, MS_REC | MS_PRIVATE, nullptr), 0)

#endif
