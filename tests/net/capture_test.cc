// What an independent analyser makes of the frames on a wire.
#include <gmock/gmock.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>

#include "child_process.h"
#include "packet_node.h"
#include "private_bus.h"

namespace cfm_mgr::net {
namespace {

using testing::Each;
using testing::IsEmpty;
using testing::IsSupersetOf;

constexpr std::uint32_t kOk = 4;

class CaptureTest : public WireTest {
 protected:
  void SetUp() override {
    if (!Runs("tshark --version && dumpcap --version")) {
      GTEST_SKIP() << "there is no tshark(1) to decode frames with";
    }
    WireTest::SetUp();
  }

  void StartCapture() {
    capture_ = cfm_test::ChildProcess({"dumpcap", "-q", "-i", "v1", "-w", File("wire.pcap")},
                                      File("out"), File("err"));
    // It says which file it writes when it has begun.
    ASSERT_TRUE(WaitUntil(
        [this] { return cfm_test::ReadFile(File("err")).find("File:") != std::string::npos; }));
  }

  void StopCapture() {
    capture_.Signal(SIGINT);
    ASSERT_EQ(capture_.Wait(), 0);
  }

  // Every line that tshark prints of the captured frames.
  std::vector<std::string> Decode(const std::string& options) {
    const std::string command =
        "tshark -n -r " + File("wire.pcap") + " " + options + " 2>/dev/null >" + File("decoded");
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    std::istringstream text(cfm_test::ReadFile(File("decoded")));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    return lines;
  }

  std::string File(const std::string& name) const { return directory_.File(name); }

  cfm_test::TemporaryDirectory directory_;
  cfm_test::ChildProcess capture_;
};

// All three tests from MEP 1 to MEP 2.
void StartTests(Node& node) {
  const engine::Time now = MonotonicNow();
  node.network.Advance(now);
  auto& engine = node.network.engine();
  engine::LoopbackRequest loopback;
  loopback.mep = SampleMep(1);
  loopback.remote_mep_id = 2;
  loopback.count = 3;
  loopback.data_size = 1000;
  EXPECT_FALSE(engine.StartLoopback(now, loopback).error);
  engine::LinktraceRequest linktrace;
  linktrace.mep = SampleMep(1);
  linktrace.remote_mep_id = 2;
  EXPECT_FALSE(engine.StartLinktrace(now, linktrace).error);
  engine::DelayRequest delay;
  delay.mep = SampleMep(1);
  delay.remote_mep_id = 2;
  delay.count = 3;
  delay.interval_ms = 10;
  EXPECT_FALSE(engine.StartDelayMeasurement(now, delay).error);
}

TEST_F(CaptureTest, AnAnalyserFindsNothingWrongWithTheFramesOnTheWire) {
  ASSERT_NO_FATAL_FAILURE(StartCapture());
  Node near({"v0"});
  Node far({"v1"});
  near.AddMep(1, "v0");
  far.AddMep(2, "v1");
  const std::vector<Node*> both = {&near, &far};
  ASSERT_TRUE(RunUntil(both, [&] { return near.StateOf(1, 2) == kOk; }));
  StartTests(near);
  ASSERT_TRUE(RunUntil(both, [&] {
    const auto& notified = near.notifications;
    return !notified.loopback_results.empty() && !notified.delay_results.empty() &&
           notified.linktraces_ended == 1;
  }));
  EXPECT_EQ(near.notifications.loopback_results[0].in_order, 3U);
  EXPECT_EQ(near.notifications.linktrace_replies.size(), 1U);
  EXPECT_EQ(near.notifications.delay_results[0].received, 3U);
  ASSERT_NO_FATAL_FAILURE(StopCapture());

  EXPECT_THAT(Decode("-Y _ws.malformed"), IsEmpty());
  const auto opcodes = Decode("-Y cfm -T fields -e cfm.opcode");
  EXPECT_THAT(std::set<std::string>(opcodes.begin(), opcodes.end()),
              IsSupersetOf({"1", "2", "3", "4", "5", "46", "47"}));
  EXPECT_THAT(Decode("-Y cfm -T fields -E separator=, -e vlan.id -e cfm.md.level -e cfm.version"),
              Each("100,4,0"));
}

}  // namespace
}  // namespace cfm_mgr::net
