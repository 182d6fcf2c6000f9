// SPDX-License-Identifier: Apache-2.0
#include "store_lock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <optional>
#include <stdexcept>

#include "private_bus.h"

namespace cfm_mgr_test {
namespace {

using cfm_mgr::StoreLock;
using testing::HasSubstr;

class StoreLockTest : public testing::Test {
 protected:
  /** Why the store cannot be had; empty when it can. */
  std::string Refusal() const {
    try {
      const StoreLock lock(store_);
      return lock.fault();
    } catch (const std::runtime_error& error) {
      return error.what();
    }
  }

  cfm_test::TemporaryDirectory directory_;
  std::string store_ = directory_.File("store");
};

TEST_F(StoreLockTest, IsHadByOneAtATime) {
  std::optional<StoreLock> lock(store_);
  EXPECT_EQ(lock->fault(), "");
  EXPECT_THAT(Refusal(), HasSubstr("another cfm-mgr uses the store " + store_));
  EXPECT_THAT(Refusal(), HasSubstr("--store"));
  lock.reset();
  EXPECT_EQ(Refusal(), "");
}

TEST_F(StoreLockTest, OfOneStoreIsNotThatOfAnotherInTheDirectory) {
  const StoreLock lock(directory_.File("other"));
  EXPECT_EQ(Refusal(), "");
}

TEST_F(StoreLockTest, CanBeTakenByItsUserAlone) {
  const StoreLock lock(store_);
  struct stat status {};
  ASSERT_EQ(stat((store_ + ".lock").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  EXPECT_EQ(status.st_size, 0);
}

TEST_F(StoreLockTest, SaysWhyItCannotLock) {
  ASSERT_EQ(mkdir((store_ + ".lock").c_str(), 0700), 0);
  EXPECT_EQ(Refusal(), store_ + ".lock: cannot lock: Is a directory; another server with this " +
                           "store would not be noticed");
}

enum Status { kLocked, kSaid, kNoMounts };

/** In a process of its own: the directory becomes a file system that cannot be written. */
Status LockWhereNothingCanBeWritten(const std::string& directory, const std::string& store) {
  if (unshare(CLONE_NEWNS) != 0 || mount("", "/", "", MS_REC | MS_PRIVATE, nullptr) != 0 ||
      mount("tmpfs", directory.c_str(), "tmpfs", MS_RDONLY, nullptr) != 0) {
    return kNoMounts;
  }
  const StoreLock lock(store);
  return lock.fault().find("Read-only file system") == std::string::npos ? kLocked : kSaid;
}

TEST_F(StoreLockTest, SaysThatTheFileSystemIsReadOnly) {
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) _exit(LockWhereNothingCanBeWritten(directory_.File("."), store_));
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) == kNoMounts) GTEST_SKIP() << "takes the right to mount";
  EXPECT_EQ(WEXITSTATUS(status), kSaid);
}

}  // namespace
}  // namespace cfm_mgr_test
