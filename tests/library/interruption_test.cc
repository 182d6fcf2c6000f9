// SPDX-License-Identifier: Apache-2.0
// A host that, from inside a call that the library makes to it, hands in another configuration. The
// library is in the midst of reading its configurations then: the sanitizers and valgrind notice
// when it goes on with one that is gone.
#include <cfm/client.h>
#include <cfm/identifiers.h>
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>

#include "failure_configurations.h"
#include "recording_host.h"
#include "server_model.h"

namespace cfm_test {
namespace {

// A client in step with a server that holds the first configuration.
class Site {
 public:
  Site() {
    host_.on_send = [this](const std::string& signal, const std::string& payload) {
      server_.Take(signal, payload);
      CalledOut();
    };
    host_.on_note = [this] { CalledOut(); };
    host_.on_port_name = [this] { CalledOut(); };
    host_.GetInStep();
    client.UpdateConfig(FirstConfiguration());
    client.UpdateConfigProbe(FirstProbes());
  }

  /// Hands in the other configuration from inside the call that comes after as many.
  void InterruptAfter(std::size_t calls) { calls_to_come_ = calls; }
  bool IsInterruptionToCome() const { return calls_to_come_.has_value(); }

  void HandInOther() {
    client.UpdateConfig(OtherConfiguration());
    client.UpdateConfigProbe(OtherProbes());
  }

  void RestartServer() {
    host_.ServerLost();
    server_ = {};
    host_.ServerFound();
    host_.Signal(CFM_MGR_S2C_SIG_CACHE_REPLY, "");
  }

  std::string ServerHolds() const { return server_.Cache().SerializeAsString(); }

 private:
  void CalledOut() {
    if (calls_to_come_ && (*calls_to_come_)-- == 0) {
      calls_to_come_.reset();
      HandInOther();
    }
  }

  ServerModel server_;
  RecordingHost host_;
  std::optional<std::size_t> calls_to_come_;

 public:
  cfm::Client client{host_.handle()};
};

// The two configurations are sent in pieces, one inside the other, so that the server ends up with
// neither. Handed in once more, the later one reaches it whole.
void InterruptEachCallOut(std::size_t least_calls, const std::function<void(Site&)>& operation) {
  const std::string wanted = CacheOf(OtherConfiguration(), OtherProbes()).SerializeAsString();
  for (std::size_t calls = 0;; ++calls) {
    SCOPED_TRACE("interrupted after " + std::to_string(calls) + " calls");
    Site site;
    site.InterruptAfter(calls);
    operation(site);
    if (site.IsInterruptionToCome()) {
      EXPECT_GE(calls, least_calls);
      return;
    }
    site.HandInOther();
    EXPECT_TRUE(site.ServerHolds() == wanted);
  }
}

TEST(Interruption, OfAConfigurationThatIsSentDoesNoHarm) {
  InterruptEachCallOut(20, [](Site& site) { site.client.UpdateConfig(SecondConfiguration()); });
}

TEST(Interruption, OfProbesThatAreSentDoesNoHarm) {
  InterruptEachCallOut(8, [](Site& site) { site.client.UpdateConfigProbe(SecondProbes()); });
}

TEST(Interruption, OfARestartedServerBeingServedDoesNoHarm) {
  InterruptEachCallOut(40, [](Site& site) { site.RestartServer(); });
}

}  // namespace
}  // namespace cfm_test
