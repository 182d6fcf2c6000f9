// SPDX-License-Identifier: Apache-2.0
#include "store_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <system_error>

#include "convert.h"
#include "messages.h"
#include "private_bus.h"
#include "render.h"
#include "save_schedule.h"

namespace cfm_mgr_test {
namespace {

using cfm_mgr::Render;
using cfm_mgr::Store;
using cfm_mgr::StoreFile;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class StoreFileTest : public testing::Test {
 protected:
  StoreFileTest() {
    store_.Apply(CreateMd(std::string("D\0\xff", 3)));
    auto association = CreateMa(std::string("D\0\xff", 3), "A1", {1, 2});
    SetAis(*association.mutable_ais());
    store_.Apply(association);
    store_.Apply(CreateMep(std::string("D\0\xff", 3), "A1", 1));
    store_.Apply(CreateProbe(1));
    store_.Apply(CreateSession(1, 1));
  }

  std::string Content() const { return cfm_test::ReadFile(file_.path()); }
  void SetContent(const std::string& content) const {
    std::ofstream(file_.path(), std::ios::binary) << content;
  }
  bool Exists(const std::string& name) const {
    return access(directory_.File(name).c_str(), F_OK) == 0;
  }

  cfm_test::TemporaryDirectory directory_;
  StoreFile file_{directory_.File("store")};
  Store store_;
};

TEST_F(StoreFileTest, NoFileIsAnEmptyStore) {
  const StoreFile::Loaded loaded = file_.Load();
  EXPECT_THAT(loaded.store.tree().domains, IsEmpty());
  EXPECT_FALSE(loaded.on_disk);
  EXPECT_THAT(loaded.messages, ElementsAre(HasSubstr("new, starting empty")));
}

TEST_F(StoreFileTest, LoadsWhatItSaved) {
  file_.Save(store_.tree());
  const StoreFile::Loaded loaded = file_.Load();
  EXPECT_TRUE(loaded.on_disk);
  EXPECT_EQ(Render(loaded.store.tree()), Render(store_.tree()));
  EXPECT_THAT(loaded.messages, ElementsAre(HasSubstr("loaded 1 domain, 1 association")));
}

TEST_F(StoreFileTest, IsTheMessageOfTheCacheReply) {
  file_.Save(store_.tree());
  EXPECT_EQ(Content(), cfm_mgr::ToCacheSync(store_.tree()).SerializeAsString());
}

TEST_F(StoreFileTest, AnEmptyStoreIsSavedToo) {
  file_.Save(store_.tree());
  file_.Save({});
  const StoreFile::Loaded loaded = file_.Load();
  EXPECT_TRUE(loaded.on_disk);
  EXPECT_THAT(loaded.store.tree().domains, IsEmpty());
}

TEST_F(StoreFileTest, PutsAsideAFileThatIsNoStoreAndStartsEmpty) {
  SetContent("this is no store");
  const StoreFile::Loaded loaded = file_.Load();
  EXPECT_FALSE(loaded.on_disk);
  EXPECT_THAT(loaded.store.tree().domains, IsEmpty());
  EXPECT_THAT(loaded.messages, Contains(HasSubstr("not a store: 16 octets")));
  EXPECT_THAT(loaded.messages, Contains(HasSubstr("put aside as " + file_.path() + ".bad-1")));
  EXPECT_FALSE(Exists("store"));
  EXPECT_EQ(cfm_test::ReadFile(directory_.File("store.bad-1")), "this is no store");
}

TEST_F(StoreFileTest, NeverPutsOneFileAsideOverAnother) {
  for (const char* content : {"first bad one", "second bad one"}) {
    SetContent(content);
    file_.Load();
  }
  EXPECT_EQ(cfm_test::ReadFile(directory_.File("store.bad-1")), "first bad one");
  EXPECT_EQ(cfm_test::ReadFile(directory_.File("store.bad-2")), "second bad one");
}

TEST_F(StoreFileTest, KeepsTheGoodEntriesOfAFileAndTheFileItself) {
  auto cache = cfm_mgr::ToCacheSync(store_.tree());
  *cache.add_meps() = CreateMep("nowhere", "A1", 1);
  SetContent(cache.SerializeAsString());
  const StoreFile::Loaded loaded = file_.Load();
  EXPECT_FALSE(loaded.on_disk);
  EXPECT_EQ(Render(loaded.store.tree()), Render(store_.tree()));
  EXPECT_THAT(loaded.messages,
              Contains(HasSubstr(R"(left out md "nowhere" ma "A1" mep 1: no domain "nowhere")")));
  EXPECT_EQ(cfm_test::ReadFile(directory_.File("store.bad-1")), cache.SerializeAsString());
}

TEST_F(StoreFileTest, EveryTruncationIsPutAsideOrLoadedAsWhatItIs) {
  const std::string whole = cfm_mgr::ToCacheSync(store_.tree()).SerializeAsString();
  for (std::size_t length = 0; length < whole.size(); ++length) {
    SetContent(whole.substr(0, length));
    const StoreFile::Loaded loaded = file_.Load();
    if (loaded.on_disk) {
      EXPECT_EQ(cfm_mgr::ToCacheSync(loaded.store.tree()).SerializeAsString(), Content());
    } else {
      EXPECT_FALSE(Exists("store"));
    }
  }
  EXPECT_TRUE(Exists("store.bad-1"));
}

TEST_F(StoreFileTest, AFailedSaveLeavesTheOldContent) {
  file_.Save(store_.tree());
  const std::string before = Content();
  // Something that cannot be written over stands where the new content is prepared.
  ASSERT_EQ(mkdir(directory_.File("store.new").c_str(), 0700), 0);
  EXPECT_THROW(file_.Save({}), std::system_error);
  EXPECT_EQ(Content(), before);
  ASSERT_EQ(rmdir(directory_.File("store.new").c_str()), 0);
}

TEST_F(StoreFileTest, ANewContentReplacesTheFileRatherThanChangesIt) {
  file_.Save(store_.tree());
  const std::string before = Content();
  ASSERT_EQ(link(file_.path().c_str(), directory_.File("held").c_str()), 0);
  file_.Save({});
  EXPECT_EQ(cfm_test::ReadFile(directory_.File("held")), before);
  EXPECT_EQ(Content(), "");
  EXPECT_FALSE(Exists("store.new"));
}

TEST_F(StoreFileTest, AFileThatCannotBeReadIsAnErrorAndStays) {
  ASSERT_EQ(mkdir(file_.path().c_str(), 0700), 0);
  EXPECT_THROW(file_.Load(), std::system_error);
  EXPECT_TRUE(Exists("store"));
  ASSERT_EQ(rmdir(file_.path().c_str()), 0);
}

using cfm_mgr::SaveSchedule;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr SaveSchedule::Clock::time_point kStart{};

TEST(SaveSchedule, NothingIsDueWithoutAChange) { EXPECT_EQ(SaveSchedule().due(), std::nullopt); }

TEST(SaveSchedule, LaterChangesDoNotPutASaveOff) {
  SaveSchedule schedule;
  schedule.Change(kStart);
  schedule.Change(kStart + milliseconds(90));
  EXPECT_EQ(schedule.due(), kStart + milliseconds(100));
}

TEST(SaveSchedule, WaitsTenTimesAsLongAsTheLastSaveTook) {
  SaveSchedule schedule;
  schedule.Change(kStart);
  schedule.Saved(kStart, kStart + milliseconds(50));
  EXPECT_EQ(schedule.due(), std::nullopt);
  schedule.Change(kStart);
  EXPECT_EQ(schedule.due(), kStart + milliseconds(500));
}

TEST(SaveSchedule, TriesAgainAfterAFailure) {
  SaveSchedule schedule;
  schedule.Change(kStart);
  schedule.Failed(kStart + seconds(1));
  EXPECT_EQ(schedule.due(), kStart + seconds(6));
}

}  // namespace
}  // namespace cfm_mgr_test
