// SPDX-License-Identifier: Apache-2.0
#include "core/config_keeper.h"

#include <gmock/gmock.h>

#include "read_text.h"

namespace cfm_agent::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Key;
using ::testing::SizeIs;
using ::testing::StartsWith;
using Outcome = ConfigKeeper::Outcome;

const FileText kOne{"domains: [{name: one, level: 1}]\n", ""};
const FileText kTwo{"domains: [{name: two, level: 1}]\n", ""};
const FileText kBad{"domains: [{name: one}]\n", ""};
const FileText kGone{std::nullopt, "cannot be opened: No such file or directory"};

class ConfigKeeperTest : public ::testing::Test {
 protected:
  const auto& Domains() const { return keeper_.config()->hierarchy.mds; }

  Ports ports_;
  ConfigKeeper keeper_{"agent.yaml", ports_.Function()};
};

TEST_F(ConfigKeeperTest, HasNothingBeforeTheFirstFile) {
  EXPECT_FALSE(keeper_.config().has_value());
}

TEST_F(ConfigKeeperTest, LoadsAGoodFile) {
  EXPECT_EQ(keeper_.Offer(kOne), Outcome::Loaded);
  EXPECT_THAT(Domains(), ElementsAre(Key("one")));
  EXPECT_THAT(keeper_.complaints(), IsEmpty());
}

TEST_F(ConfigKeeperTest, HasNothingAfterABadFirstFile) {
  EXPECT_EQ(keeper_.Offer(kBad), Outcome::Rejected);
  EXPECT_FALSE(keeper_.config().has_value());
}

TEST_F(ConfigKeeperTest, ReplacesTheOldConfiguration) {
  keeper_.Offer(kOne);
  EXPECT_EQ(keeper_.Offer(kTwo), Outcome::Loaded);
  EXPECT_THAT(Domains(), ElementsAre(Key("two")));
}

TEST_F(ConfigKeeperTest, KeepsTheOldConfigurationWhenTheFileTurnsBad) {
  keeper_.Offer(kOne);
  EXPECT_EQ(keeper_.Offer(kBad), Outcome::Rejected);
  EXPECT_THAT(Domains(), ElementsAre(Key("one")));
  EXPECT_THAT(keeper_.complaints(),
              ElementsAre("agent.yaml:1:11: domains[0].level: is missing; a domain needs it"));
}

TEST_F(ConfigKeeperTest, KeepsTheOldConfigurationWhenTheFileGoesAway) {
  keeper_.Offer(kOne);
  EXPECT_EQ(keeper_.Offer(kGone), Outcome::Rejected);
  EXPECT_THAT(Domains(), ElementsAre(Key("one")));
  EXPECT_THAT(keeper_.complaints(),
              ElementsAre("agent.yaml: cannot be opened: No such file or directory"));
}

TEST_F(ConfigKeeperTest, DoesNothingForTheSameText) {
  keeper_.Offer(kOne);
  EXPECT_EQ(keeper_.Offer(kOne), Outcome::Unchanged);
}

TEST_F(ConfigKeeperTest, ComplainsOnceAboutTheSameBadFile) {
  keeper_.Offer(kOne);
  keeper_.Offer(kBad);
  EXPECT_EQ(keeper_.Offer(kBad), Outcome::Unchanged);
}

TEST_F(ConfigKeeperTest, ComplainsAgainWhenAskedTo) {
  keeper_.Offer(kOne);
  keeper_.Offer(kBad);
  EXPECT_EQ(keeper_.OfferAgain(kBad), Outcome::Rejected);
  EXPECT_THAT(keeper_.complaints(), SizeIs(1));
}

TEST_F(ConfigKeeperTest, DoesNothingForTheSameGoodTextEvenWhenAskedTo) {
  keeper_.Offer(kOne);
  EXPECT_EQ(keeper_.OfferAgain(kOne), Outcome::Unchanged);
}

TEST_F(ConfigKeeperTest, TellsThatARejectedFileIsAsInForceAgain) {
  keeper_.Offer(kOne);
  keeper_.Offer(kBad);
  EXPECT_EQ(keeper_.Offer(kOne), Outcome::Restored);
  EXPECT_THAT(keeper_.complaints(), IsEmpty());
}

TEST_F(ConfigKeeperTest, LoadsAMendedFile) {
  keeper_.Offer(kOne);
  keeper_.Offer(kBad);
  EXPECT_EQ(keeper_.Offer(kTwo), Outcome::Loaded);
  EXPECT_THAT(Domains(), ElementsAre(Key("two")));
}

TEST_F(ConfigKeeperTest, KeepsThePortsOfInterfacesFromFileToFile) {
  const std::string text =
      "domains: [{name: d, level: 1, associations: [{name: a, mep-ids: [1], endpoints: "
      "[{mep-id: 1, direction: up, port: eth7}]}]}]";
  const auto port = [this] { return Domains().at("d").mas.at("a").meps.at(1).cfg.port; };
  keeper_.Offer({text, ""});
  const sepan_port_t before = port();
  keeper_.Offer({text + " # changed", ""});
  EXPECT_EQ(port(), before);
}

// A file whose association has so many endpoints in one place, and one elsewhere.
FileText Crowd(int endpoints, const std::string& comment = "") {
  std::string mep_ids = "500";
  std::string list = "    - {mep-id: 500, direction: down, port: lo}\n";
  for (int id = 1; id <= endpoints; ++id) {
    mep_ids += ", " + std::to_string(id);
    list += "    - {mep-id: " + std::to_string(id) + ", direction: up, port: lo}\n";
  }
  return {comment +
              "domains:\n- name: d\n  level: 1\n  associations:\n  - name: a\n    mep-ids: [" +
              mep_ids + "]\n    endpoints:\n" + list,
          ""};
}

TEST_F(ConfigKeeperTest, HasNoWarningsToTellOfAFileWithoutAny) {
  keeper_.Offer(kOne);
  EXPECT_THAT(keeper_.warnings(), IsEmpty());
  EXPECT_THAT(keeper_.WarningsToTell(), IsEmpty());
}

TEST_F(ConfigKeeperTest, TellsWarningsAndTheirNumber) {
  EXPECT_EQ(keeper_.Offer(Crowd(3)), Outcome::Loaded);
  EXPECT_THAT(keeper_.complaints(), IsEmpty());
  EXPECT_THAT(keeper_.WarningsToTell(),
              ElementsAre(StartsWith("agent.yaml:10:7: warning: "),
                          StartsWith("agent.yaml:11:7: warning: "), "agent.yaml: 2 warnings"));
}

TEST_F(ConfigKeeperTest, DoesNotTellWarningsAgainThatAnEditHasMoved) {
  keeper_.Offer(Crowd(3));
  EXPECT_EQ(keeper_.Offer(Crowd(3, "# a line more\n")), Outcome::Loaded);
  EXPECT_THAT(keeper_.WarningsToTell(), IsEmpty());
  EXPECT_THAT(keeper_.warnings(), SizeIs(2));
}

TEST_F(ConfigKeeperTest, TellsOnlyWhatIsNewAmongItsWarnings) {
  keeper_.Offer(Crowd(3));
  keeper_.Offer(Crowd(4));
  EXPECT_THAT(keeper_.WarningsToTell(), ElementsAre(StartsWith("agent.yaml:12:7: warning: "),
                                                    "agent.yaml: 3 warnings, 1 of them new"));
}

TEST_F(ConfigKeeperTest, TellsAWarningAgainThatWasGoneInBetween) {
  keeper_.Offer(Crowd(2));
  keeper_.Offer(kOne);
  EXPECT_THAT(keeper_.WarningsToTell(), IsEmpty());
  keeper_.Offer(Crowd(2));
  EXPECT_THAT(keeper_.WarningsToTell(), SizeIs(2));
}

TEST_F(ConfigKeeperTest, TellsTheFirstOfManyWarnings) {
  keeper_.Offer(Crowd(11));
  EXPECT_THAT(keeper_.WarningsToTell(), SizeIs(11));
  EXPECT_EQ(keeper_.WarningsToTell().back(), "agent.yaml: 10 warnings");
  keeper_.Offer(kOne);
  keeper_.Offer(Crowd(400));
  EXPECT_THAT(keeper_.warnings(), SizeIs(399));
  EXPECT_THAT(keeper_.WarningsToTell(), SizeIs(11));
  EXPECT_EQ(keeper_.WarningsToTell().back(),
            "agent.yaml: 399 warnings; these are the first 10, --check tells all");
  keeper_.Offer(Crowd(450));
  EXPECT_EQ(keeper_.WarningsToTell().back(),
            "agent.yaml: 449 warnings, 50 of them new; these are the first 10, --check tells all");
}

TEST_F(ConfigKeeperTest, KeepsItsWarningsWhileTheFileIsBad) {
  keeper_.Offer(Crowd(2));
  keeper_.Offer(kBad);
  EXPECT_THAT(keeper_.warnings(), SizeIs(1));
  keeper_.Offer(Crowd(2, "# mended\n"));
  EXPECT_THAT(keeper_.WarningsToTell(), IsEmpty());
}

}  // namespace
}  // namespace cfm_agent::testing
