#include "shell/commander.h"

#include <net/if.h>
#include <sepan/sepan.h>

#include <array>

#include "core/text.h"

namespace cfm_agent {
namespace {

Interface InterfaceOf(sepan_port_t port) {
  std::array<char, IF_NAMESIZE> name{};
  std::uint32_t index = 0;
  if (sepan_to_intfname(port, name.data(), name.size()) != 0) {
    return {"unknown", false};
  }
  return {name.data(), sepan_to_ifindex(port, &index) == 0};
}

// Follows a test and sends its trigger, if there is a server to send it to.
template <typename Trigger>
void Start(TestKind kind, Trigger trigger, Monitor& monitor, cfm::Client& client,
           void (cfm::Client::*send)(const Trigger&)) {
  const auto request_id = monitor.Begin(kind, {trigger.md_name, trigger.ma_name, trigger.mep_id},
                                        trigger.remote_mep_id);
  if (request_id) {
    trigger.request_id = *request_id;
    (client.*send)(trigger);
  }
}

const char* NullIfAbsent(const std::optional<std::string>& name) {
  return name ? name->c_str() : nullptr;
}

}  // namespace

void Commander::Run(const Command& command, cfm::Client& client) {
  std::visit([&](const auto& what) { Do(what, client); }, command);
}

void Commander::Do(const cfm::linktrace_trigger& trigger, cfm::Client& client) {
  Start(TestKind::Linktrace, trigger, monitor_, client, &cfm::Client::LinktraceTrigger);
}

void Commander::Do(const cfm::loopback_trigger& trigger, cfm::Client& client) {
  Start(TestKind::Loopback, trigger, monitor_, client, &cfm::Client::LoopbackTrigger);
}

void Commander::Do(const cfm::delay_measurement_trigger& trigger, cfm::Client& client) {
  Start(TestKind::Delay, trigger, monitor_, client, &cfm::Client::DelayMeasurementTrigger);
}

void Commander::Do(const StatisticsCommand& /*command*/, cfm::Client& client) {
  if (monitor_.Begin(TestKind::Statistics)) {
    client.RequestStatistics();
  }
}

void Commander::Do(const ClearCommand& command, cfm::Client& client) {
  if (monitor_.server() == ServerState::Absent) {
    console_.Complain("clear: server lost, nothing is cleared");
    failed_(EndReason::ServerLost);
    return;
  }
  client.ClearStatistics(NullIfAbsent(command.md), NullIfAbsent(command.ma), command.mep_id);
  console_.Print("clear: sent");
}

void Commander::Do(const ShowCommand& command, cfm::Client& client) {
  if (timing_ == Timing::AtOnce) {
    PrintShow(command);
    return;
  }
  waiting_show_ = command;
  Refresh(client);
}

// The answer comes after all that was reported before.
void Commander::Refresh(const cfm::Client& client) {
  if (timing_ == Timing::UpToDate && monitor_.Begin(TestKind::Refresh)) {
    client.RequestStatistics();
  }
}

void Commander::Do(const HelpCommand& /*command*/, cfm::Client& /*client*/) {
  for (const std::string& line : CommandHelp()) {
    console_.Print(line);
  }
}

void Commander::Do(const QuitCommand& /*command*/, cfm::Client& /*client*/) { quit_ = true; }

void Commander::OnEnded(const TestEnd& end) {
  if (end.test.kind != TestKind::Refresh) {
    if (end.reason != EndReason::Complete) {
      failed_(end.reason);
    }
    return;
  }
  if (waiting_show_) {
    PrintShow(*waiting_show_);
    waiting_show_.reset();
  }
}

void Commander::PrintShow(const ShowCommand& command) {
  for (const std::string& line :
       Show(command, *keeper_.config(), monitor_.table(), monitor_.server(), InterfaceOf)) {
    console_.Print(line);
  }
}

}  // namespace cfm_agent
