// SPDX-License-Identifier: Apache-2.0
#include "core/config_keeper.h"

#include <gmock/gmock.h>

#include "read_text.h"

namespace cfm_agent::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Key;
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
  EXPECT_THAT(keeper_.complaints(), ::testing::SizeIs(1));
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

}  // namespace
}  // namespace cfm_agent::testing
