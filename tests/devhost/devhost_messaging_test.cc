#include <gtest/gtest.h>
#include <vorx/host.h>

#include <cerrno>
#include <string>

#include "private_bus.h"
#include "test_process.h"

namespace cfm_test {
namespace {

constexpr vorx_sig_descriptor kRequest{"cC", 1, {}};
constexpr vorx_sig_descriptor kOtherNumber{"cC", 2, {}};
constexpr vorx_sig_descriptor kOtherBlock{"dC", 1, {}};
constexpr vorx_event_descriptor kEvent{"CFMM", 1};
constexpr vorx_event_descriptor kOtherEvent{"CFMM", 2};

class Messaging : public testing::Test {
 protected:
  PrivateBus bus_;
  TestProcess client_{bus_, "client"};
  TestProcess server_{bus_, "server"};
};

TEST_F(Messaging, CarriesASignalToTheProcessItIsSentTo) {
  const SignalRecorder received(server_, kRequest);
  const SignalRecorder elsewhere(client_, kRequest);
  ASSERT_EQ(client_.Send(server_.pid(), kRequest, "content"), 0);
  ASSERT_TRUE(ServiceUntil({client_.get(), server_.get()}, [&] { return received.count() == 1; }));
  EXPECT_EQ(received.entries()[0].data, "content");
  EXPECT_EQ(received.entries()[0].sender, client_.pid());
  EXPECT_EQ(elsewhere.count(), 0U);
}

}  // namespace
}  // namespace cfm_test
