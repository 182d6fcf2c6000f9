// SPDX-License-Identifier: Apache-2.0
#include "shell/file_watch.h"

#include <gtest/gtest.h>
#include <poll.h>

#include <filesystem>
#include <fstream>

#include "private_bus.h"

namespace cfm_agent::testing {
namespace {

namespace fs = std::filesystem;
using Activity = FileWatch::Activity;

class FileWatchTest : public ::testing::Test {
 protected:
  FileWatchTest() { Write(Path("config"), "old"); }

  std::string Path(const std::string& name) const { return directory_.File(name); }

  static void Write(const std::string& path, const std::string& text) {
    std::ofstream(path) << text;
  }

  cfm_test::TemporaryDirectory directory_;
};

TEST_F(FileWatchTest, IsQuietWhileNothingHappens) {
  FileWatch watch(Path("config"));
  EXPECT_TRUE(watch.watching());
  EXPECT_EQ(watch.Read(), Activity::None);
}

TEST_F(FileWatchTest, CanBeWaitedFor) {
  FileWatch watch(Path("config"));
  Write(Path("config"), "new");
  pollfd fd = {watch.fd(), POLLIN, 0};
  EXPECT_EQ(poll(&fd, 1, 0), 1);
}

TEST_F(FileWatchTest, NoticesAFileWrittenInPlace) {
  FileWatch watch(Path("config"));
  Write(Path("config"), "new");
  EXPECT_EQ(watch.Read(), Activity::Finished);
  EXPECT_EQ(watch.Read(), Activity::None);
}

TEST_F(FileWatchTest, TellsAFileThatIsStillBeingWritten) {
  FileWatch watch(Path("config"));
  std::ofstream file(Path("config"));
  file << "half" << std::flush;
  EXPECT_EQ(watch.Read(), Activity::Busy);
  file.close();
  EXPECT_EQ(watch.Read(), Activity::Finished);
}

TEST_F(FileWatchTest, TellsANewFileThatIsStillToBeWritten) {
  fs::remove(Path("config"));
  FileWatch watch(Path("config"));
  std::ofstream file(Path("config"));
  EXPECT_EQ(watch.Read(), Activity::Busy);
}

TEST_F(FileWatchTest, NoticesAFileMovedIntoItsPlace) {
  FileWatch watch(Path("config"));
  Write(Path("temporary"), "new");
  EXPECT_EQ(watch.Read(), Activity::None);
  fs::rename(Path("temporary"), Path("config"));
  EXPECT_EQ(watch.Read(), Activity::Finished);
}

TEST_F(FileWatchTest, NoticesAFileThatIsRemovedAndComesBack) {
  FileWatch watch(Path("config"));
  fs::remove(Path("config"));
  EXPECT_EQ(watch.Read(), Activity::Finished);
  Write(Path("config"), "new");
  EXPECT_EQ(watch.Read(), Activity::Finished);
}

TEST_F(FileWatchTest, IsNotConcernedWithOtherFiles) {
  FileWatch watch(Path("config"));
  Write(Path("other"), "new");
  fs::remove(Path("other"));
  EXPECT_EQ(watch.Read(), Activity::None);
}

TEST_F(FileWatchTest, NoticesALinkMadeInTheFilesPlace) {
  Write(Path("target"), "new");
  fs::remove(Path("config"));
  FileWatch watch(Path("config"));
  fs::create_symlink(Path("target"), Path("config"));
  EXPECT_EQ(watch.Read(), Activity::Finished);
  EXPECT_EQ(watch.Read(), Activity::None);
}

TEST_F(FileWatchTest, NoticesAWriteBehindALink) {
  fs::create_directory(Path("elsewhere"));
  Write(Path("elsewhere/target"), "old");
  fs::remove(Path("config"));
  fs::create_symlink(Path("elsewhere/target"), Path("config"));
  FileWatch watch(Path("config"));
  Write(Path("elsewhere/target"), "new");
  EXPECT_EQ(watch.Read(), Activity::Finished);
}

// As configuration is mounted into containers: a link to a directory is exchanged.
TEST_F(FileWatchTest, NoticesThatALinkOnTheWayIsExchanged) {
  for (const char* name : {"one", "two"}) {
    fs::create_directory(Path(name));
    Write(Path(name) + "/config", name);
  }
  fs::create_directory_symlink("one", Path("current"));
  fs::remove(Path("config"));
  fs::create_symlink("current/config", Path("config"));
  FileWatch watch(Path("config"));
  fs::create_directory_symlink("two", Path("next"));
  fs::rename(Path("next"), Path("current"));
  EXPECT_EQ(watch.Read(), Activity::Finished);
  EXPECT_EQ(watch.Read(), Activity::None);
  Write(Path("two/config"), "new");
  EXPECT_EQ(watch.Read(), Activity::Finished);
}

TEST_F(FileWatchTest, FollowsADirectoryThatIsExchanged) {
  fs::create_directory(Path("dir"));
  Write(Path("dir/config"), "old");
  fs::create_directory(Path("dir.new"));
  Write(Path("dir.new/config"), "new");
  FileWatch watch(Path("dir/config"));
  fs::rename(Path("dir"), Path("dir.old"));
  fs::rename(Path("dir.new"), Path("dir"));
  EXPECT_EQ(watch.Read(), Activity::Finished);
  Write(Path("dir/config"), "newer");
  EXPECT_EQ(watch.Read(), Activity::Finished);
}

TEST_F(FileWatchTest, TellsThatTheDirectoryIsGoneAndFindsItAgainWhenRenewed) {
  fs::create_directory(Path("dir"));
  Write(Path("dir/config"), "old");
  FileWatch watch(Path("dir/config"));
  fs::remove_all(Path("dir"));
  EXPECT_EQ(watch.Read(), Activity::Finished);
  EXPECT_FALSE(watch.watching());
  fs::create_directory(Path("dir"));
  watch.Renew();
  EXPECT_TRUE(watch.watching());
  Write(Path("dir/config"), "new");
  EXPECT_EQ(watch.Read(), Activity::Finished);
}

}  // namespace
}  // namespace cfm_agent::testing
