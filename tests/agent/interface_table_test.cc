// SPDX-License-Identifier: Apache-2.0
#include "core/interface_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cfm_agent {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

// Endpoint N of the one association is on the Nth of these ports.
cfm::hierarchy EndpointsOn(const std::vector<sepan_port_t>& ports) {
  cfm::hierarchy hierarchy;
  auto& meps = hierarchy.mds["d"].mas["a"].meps;
  for (const sepan_port_t port : ports) {
    const auto mep_id = static_cast<std::uint16_t>(meps.size() + 1);
    meps[mep_id].cfg.port = port;
  }
  return hierarchy;
}

class Interfaces : public testing::Test {
 protected:
  std::map<sepan_port_t, std::uint32_t> indexes_;
  InterfaceTable table_{[this](sepan_port_t port) { return indexes_[port]; }};
};

TEST_F(Interfaces, AreAllAsTheyWereAtTheFirstLook) {
  indexes_ = {{1, 7}};
  EXPECT_THAT(table_.Look(EndpointsOn({1, 2})), IsEmpty());
}

TEST_F(Interfaces, ThatAppearAreToldOnce) {
  table_.Look(EndpointsOn({1, 2}));
  indexes_ = {{2, 7}};
  EXPECT_THAT(table_.Look(EndpointsOn({1, 2})), ElementsAre(2));
  EXPECT_THAT(table_.Look(EndpointsOn({1, 2})), IsEmpty());
}

TEST_F(Interfaces, ThatComeBackUnderAnotherIndexAreTold) {
  indexes_ = {{1, 7}};
  table_.Look(EndpointsOn({1}));
  indexes_ = {};
  EXPECT_THAT(table_.Look(EndpointsOn({1})), IsEmpty());
  indexes_ = {{1, 8}};
  EXPECT_THAT(table_.Look(EndpointsOn({1})), ElementsAre(1));
}

TEST_F(Interfaces, ThatComeBackAsTheyWereAreNotTold) {
  indexes_ = {{1, 7}};
  table_.Look(EndpointsOn({1}));
  indexes_ = {};
  table_.Look(EndpointsOn({1}));
  indexes_ = {{1, 7}};
  EXPECT_THAT(table_.Look(EndpointsOn({1})), IsEmpty());
}

TEST_F(Interfaces, OfPortsThatAreNewInTheConfigurationAreNotTold) {
  table_.Look(EndpointsOn({1}));
  indexes_ = {{2, 7}};
  EXPECT_THAT(table_.Look(EndpointsOn({1, 2})), IsEmpty());
}

TEST_F(Interfaces, ThatAppearWithANewConfigurationAreTold) {
  table_.Look(EndpointsOn({1}));
  indexes_ = {{1, 7}};
  EXPECT_THAT(table_.Look(EndpointsOn({2, 1})), ElementsAre(1));
}

TEST(ConfigurationWithoutPorts, KeepsTheOtherEndpoints) {
  const cfm::hierarchy rest = Without(EndpointsOn({1, 2, 3, 2}), {2, 9});
  const auto& meps = rest.mds.at("d").mas.at("a").meps;
  EXPECT_THAT(meps, ElementsAre(Pair(1, testing::_), Pair(3, testing::_)));
}

}  // namespace
}  // namespace cfm_agent
