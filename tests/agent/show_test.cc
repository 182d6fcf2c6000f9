// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include "core/show_text.h"
#include "read_text.h"

namespace cfm_agent::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr const char* kConfig =
    "domains:\n"
    "- name: metro\n"
    "  level: 5\n"
    "  associations:\n"
    "  - name: line\n"
    "    mep-ids: [1, 2, 8, 9]\n"
    "    endpoints:\n"
    "    - {mep-id: 1, direction: up, port: eth1, admin-state: true, ccm-enabled: true}\n"
    "    - {mep-id: 2, direction: down, port: eth2}\n"
    "  - name: spare\n"
    "- {name: quiet, level: 0}\n";

const MepKey kFirst = {"metro", "line", 1};
const MepKey kSecond = {"metro", "line", 2};

class ShowTest : public ::testing::Test {
 protected:
  ShowTest() : config_(*ReadConfig(kConfig, ports_.Function()).config) {}

  std::vector<std::string> Lines(const ShowCommand& filter = {}) const {
    return TextOf(ShowOf(filter), {});
  }
  ShowAnswer ShowOf(const ShowCommand& filter) const {
    return Show(filter, config_, table_, server_, [this](sepan_port_t port) {
      const bool is_first = port == ports_.Of("eth1");
      return Interface{is_first ? "eth1" : "eth2", !missing_ || is_first};
    });
  }
  // The line of an endpoint.
  std::string LineOf(const char* mep_id) const {
    for (const std::string& line : Lines()) {
      if (line.find(std::string("1s    ") + mep_id + ' ') != std::string::npos) {
        return line;
      }
    }
    return "";
  }

  static cfm::local_mep_status Up() {
    cfm::local_mep_status status;
    status.port_state = 2;
    status.intf_status = 1;
    return status;
  }
  static cfm::remote_mep_status Remote(std::uint32_t state) {
    cfm::remote_mep_status status;
    status.fsm_state = state;
    return status;
  }

  Ports ports_;
  Config config_;
  StatusTable table_;
  ServerState server_ = ServerState::InStep;
  bool missing_ = false;
};

TEST_F(ShowTest, PutsWhatIsConfiguredBesideWhatIsReported) {
  table_.Local(kFirst, Up());
  table_.Remote(kFirst, 8, Remote(4));
  table_.Remote(kFirst, 9, Remote(3));
  EXPECT_THAT(
      Lines(),
      ElementsAre(
          "server: in step", "domain metro, level 5",
          "  ASSOCIATION  INTERVAL  MEP  PORT          DIRECTION  ADMIN     CCM  REMOTE MEPS  PORT "
          "STATUS  INTERFACE  DEFECTS  GAP",
          "  line               1s    1  eth1          up         active    on   1 of 2 ok    up   "
          "        up         none",
          "  line               1s    2  eth2          down       inactive  off  -            -    "
          "        -          -        never reported",
          "  spare              1s    -  no endpoints", "domain quiet, level 0"));
}

TEST_F(ShowTest, GivesNoReasonWhereThereIsNoGap) {
  table_.Local(kFirst, Up());
  EXPECT_THAT(LineOf("1"), ::testing::EndsWith(" none"));
}

TEST_F(ShowTest, TellsThatTheServerIsAbsent) {
  server_ = ServerState::Absent;
  EXPECT_EQ(Lines().front(), "server: absent");
  EXPECT_THAT(LineOf("1"), ::testing::EndsWith(" -        server absent"));
}

TEST_F(ShowTest, TellsThatTheServerIsNotInStep) {
  server_ = ServerState::Found;
  EXPECT_EQ(Lines().front(), "server: found, not in step yet");
  EXPECT_THAT(LineOf("1"), HasSubstr("server not in step"));
}

TEST_F(ShowTest, TellsThatAnInterfaceIsMissing) {
  missing_ = true;
  table_.Local(kSecond, Up());
  EXPECT_THAT(LineOf("2"), ::testing::EndsWith("interface eth2 missing"));
  EXPECT_THAT(LineOf("2"), HasSubstr(" up           up "));
  EXPECT_THAT(LineOf("1"), ::testing::EndsWith("never reported"));
}

TEST_F(ShowTest, TellsThatTheServerRemovedAnEndpoint) {
  table_.Local(kFirst, Up());
  table_.LocalRemoved(kFirst);
  EXPECT_THAT(LineOf("1"), ::testing::EndsWith("removed by the server"));
  EXPECT_THAT(LineOf("1"), HasSubstr(" -            -          - "));
}

TEST_F(ShowTest, ForgetsARemovalOnceTheEndpointIsReportedAgain) {
  table_.LocalRemoved(kFirst);
  table_.Local(kFirst, Up());
  EXPECT_THAT(LineOf("1"), Not(HasSubstr("removed")));
}

TEST_F(ShowTest, NeverShowsWhatAnEarlierServerReported) {
  table_.Local(kFirst, Up());
  table_.Forget();
  EXPECT_THAT(LineOf("1"), ::testing::EndsWith("never reported"));
}

TEST_F(ShowTest, ListsWhatIsReportedButNotConfigured) {
  table_.Local({"metro", "line", 7}, Up());
  table_.Local({"else where", "x", 1}, Up());
  table_.LocalRemoved({"gone", "x", 1});
  const auto lines = Lines();
  EXPECT_THAT(lines, Contains("reported by the server but not configured"));
  EXPECT_THAT(lines, Contains("  DOMAIN        ASSOCIATION  MEP  PORT STATUS  INTERFACE  DEFECTS"));
  EXPECT_THAT(lines, Contains("  metro         line           7  up           up         none"));
  EXPECT_THAT(lines, Contains("  \"else where\"  x              1  up           up         none"));
  EXPECT_THAT(lines, Not(Contains(HasSubstr("gone"))));
}

TEST_F(ShowTest, OfOneEndpointListsItsRemoteMeps) {
  table_.Local(kFirst, Up());
  table_.Remote(kFirst, 8, Remote(4));
  table_.Remote(kFirst, 100, Remote(1));
  const auto lines = Lines({"metro", "line", 1});
  EXPECT_THAT(
      lines,
      ElementsAre(
          "server: in step", "domain metro, level 5", HasSubstr("  ASSOCIATION"),
          HasSubstr("  line "), "  remote MEPs of endpoint 1",
          "    MEP  STATE  ADDRESS            PORT STATUS  INTERFACE  SINCE UPTIME  GAP",
          "      8  ok     00:00:00:00:00:00  unknown      unknown            0 ms",
          "      9  -      -                  -            -                     -  never reported",
          "    100  idle   00:00:00:00:00:00  unknown      unknown            0 ms  not in the MEP "
          "list"));
}

TEST_F(ShowTest, TellsWhyARemoteMepIsNotReported) {
  const auto row = [this] { return Lines({"metro", "line", 1}).at(6); };
  EXPECT_THAT(row(), ::testing::MatchesRegex("      8  - .* -  never reported"));
  table_.Local(kFirst, Up());
  EXPECT_THAT(row(), ::testing::EndsWith(" never reported"));
  table_.RemoteRemoved(kFirst, 8);
  EXPECT_THAT(row(), ::testing::EndsWith(" removed by the server"));
  server_ = ServerState::Found;
  EXPECT_THAT(row(), ::testing::EndsWith(" server not in step"));
  server_ = ServerState::Absent;
  EXPECT_THAT(row(), ::testing::EndsWith(" server absent"));
  server_ = ServerState::InStep;
  table_.Remote(kFirst, 8, Remote(4));
  EXPECT_THAT(row(), HasSubstr(" ok "));
  EXPECT_THAT(row(), Not(HasSubstr("removed")));
  table_.LocalRemoved(kFirst);
  EXPECT_THAT(row(), ::testing::EndsWith(" removed by the server"));
}

TEST_F(ShowTest, TellsThatARemoteMepsEndpointHasNoInterface) {
  missing_ = true;
  EXPECT_THAT(Lines({"metro", "line", 2}).back(), ::testing::EndsWith("interface eth2 missing"));
}

TEST_F(ShowTest, ForgetsARemovedRemoteMep) {
  table_.Local(kFirst, Up());
  table_.Remote(kFirst, 8, Remote(4));
  table_.RemoteRemoved(kFirst, 8);
  EXPECT_THAT(LineOf("1"), HasSubstr(" 0 of 2 ok "));
}

TEST_F(ShowTest, ShowsOnlyWhatIsAskedFor) {
  EXPECT_THAT(Lines({"quiet", {}, 0}), ElementsAre("server: in step", "domain quiet, level 0"));
  EXPECT_THAT(
      Lines({"metro", "spare", 0}),
      ElementsAre("server: in step", "domain metro, level 5", "  ASSOCIATION  INTERVAL  MEP  PORT",
                  "  spare              1s    -  no endpoints"));
}

TEST_F(ShowTest, TellsWhetherThereIsWhatIsAskedFor) {
  EXPECT_TRUE(ShowOf({}).found);
  EXPECT_TRUE(ShowOf({"metro", "line", 2}).found);
  EXPECT_FALSE(ShowOf({"metro", "line", 77}).found);
  table_.Local({"metro", "line", 77}, Up());
  EXPECT_TRUE(ShowOf({"metro", "line", 77}).found);
  const ShowAnswer nowhere = ShowOf({"nowhere", {}, 0});
  EXPECT_FALSE(nowhere.found);
  EXPECT_THAT(TextOf(nowhere, {}), ElementsAre("server: in step"));
  config_ = Config{};
  EXPECT_TRUE(ShowOf({}).found);
}

TEST_F(ShowTest, ShowsAnEmptyConfiguration) {
  config_ = Config{};
  EXPECT_THAT(Lines(), ElementsAre("server: in step", "nothing configured"));
}

TEST_F(ShowTest, ColoursWhatIsGoodAndWhatIsNot) {
  cfm::local_mep_status bad = Up();
  bad.defect_remote_ccm = bad.rdi = true;
  bad.highest_defect_priority = 3;
  table_.Local(kFirst, bad);
  table_.Local(kSecond, Up());
  const auto lines = TextOf(ShowOf({}), {true, false});
  EXPECT_EQ(lines.front(), "\x1b[32mserver: in step\x1b[0m");
  EXPECT_THAT(lines.at(3), HasSubstr("\x1b[31mmissing CCMs\x1b[0m  \x1b[33msends RDI\x1b[0m"));
  EXPECT_THAT(lines.at(3), HasSubstr("\x1b[31m0 of 2 ok\x1b[0m"));
  EXPECT_THAT(lines.at(4), ::testing::EndsWith("\x1b[32mnone\x1b[0m"));
}

TEST_F(ShowTest, NamesAHighestDefectThatIsNotAmongThem) {
  cfm::local_mep_status odd = Up();
  odd.highest_defect_priority = 5;
  table_.Local(kFirst, odd);
  EXPECT_THAT(LineOf("1"), ::testing::EndsWith("none (highest: cross-connected CCMs)"));
}

TEST(StatusTable, TellsWhatIsNews) {
  StatusTable table;
  cfm::local_mep_status local;
  EXPECT_TRUE(table.Local(kFirst, local));
  EXPECT_FALSE(table.Local(kFirst, local));
  local.defect_rdi = true;
  EXPECT_TRUE(table.Local(kFirst, local));
  cfm::remote_mep_status remote;
  EXPECT_TRUE(table.Remote(kFirst, 8, remote));
  EXPECT_FALSE(table.Remote(kFirst, 8, remote));
  EXPECT_TRUE(table.Remote(kFirst, 9, remote));
  remote.fsm_state = 3;
  EXPECT_TRUE(table.Remote(kFirst, 8, remote));
  table.LocalRemoved(kFirst);
  EXPECT_TRUE(table.Local(kFirst, local));
}

}  // namespace
}  // namespace cfm_agent::testing
