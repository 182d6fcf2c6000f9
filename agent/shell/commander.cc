// SPDX-License-Identifier: Apache-2.0
#include "shell/commander.h"

#include <net/if.h>
#include <sepan/sepan.h>

#include <array>

#include "core/show.h"

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
void Start(TestKind kind, const Plan& plan, Trigger trigger, Monitor& monitor, cfm::Client& client,
           void (cfm::Client::*send)(const Trigger&)) {
  const auto request_id = monitor.Begin(kind, {trigger.md_name, trigger.ma_name, trigger.mep_id},
                                        trigger.remote_mep_id, plan);
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
  unanswered_.reset();
}

void Commander::Do(const cfm::linktrace_trigger& trigger, cfm::Client& client) {
  Start(TestKind::Linktrace, {0, trigger.ttl}, trigger, monitor_, client,
        &cfm::Client::LinktraceTrigger);
}

void Commander::Do(const cfm::loopback_trigger& trigger, cfm::Client& client) {
  Start(TestKind::Loopback, {trigger.param_a, 0}, trigger, monitor_, client,
        &cfm::Client::LoopbackTrigger);
}

void Commander::Do(const cfm::delay_measurement_trigger& trigger, cfm::Client& client) {
  Start(TestKind::Delay, {trigger.param_a, 0}, trigger, monitor_, client,
        &cfm::Client::DelayMeasurementTrigger);
}

void Commander::Do(const StatisticsCommand& /*command*/, cfm::Client& client) {
  if (monitor_.Begin(TestKind::Statistics)) {
    client.RequestStatistics();
  }
}

void Commander::Do(const ClearCommand& command, cfm::Client& client) {
  if (monitor_.server() == ServerState::Absent) {
    console_.Complain("server lost, nothing is cleared", "clear");
    failed_(EndReason::ServerLost);
    return;
  }
  if (timing_ == Timing::UpToDate && monitor_.server() == ServerState::Found) {
    console_.Complain("the server does not answer, nothing is cleared", "clear");
    failed_(EndReason::TimedOut);
    return;
  }
  client.ClearStatistics(NullIfAbsent(command.md), NullIfAbsent(command.ma), command.mep_id);
  console_.Tell(ClearAnswer{});
}

void Commander::Do(const ShowCommand& command, cfm::Client& client) {
  if (timing_ == Timing::AtOnce) {
    PrintShow(command);
  } else if (monitor_.server() == ServerState::Found) {
    FailShow(command, EndReason::TimedOut);
  } else if (unanswered_) {
    FailShow(command, *unanswered_);
  } else {
    waiting_show_ = command;
    Refresh(client);
  }
}

// The answer comes after all that was reported before.
void Commander::Refresh(const cfm::Client& client) {
  if (timing_ == Timing::UpToDate && monitor_.Begin(TestKind::Refresh)) {
    client.RequestStatistics();
  }
}

void Commander::Do(const HelpCommand& /*command*/, cfm::Client& /*client*/) {
  console_.Tell(HelpAnswer{CommandUsages()});
}

void Commander::Do(const QuitCommand& /*command*/, cfm::Client& /*client*/) { quit_ = true; }

void Commander::OnEnded(const TestEnd& end) {
  if (end.test.kind != TestKind::Refresh) {
    if (end.reason != EndReason::Complete) {
      failed_(end.reason);
    }
    return;
  }
  const bool complete = end.reason == EndReason::Complete;
  if (!waiting_show_) {
    unanswered_ = complete ? std::nullopt : std::optional(end.reason);
    return;
  }
  const ShowCommand show = *std::exchange(waiting_show_, std::nullopt);
  if (complete) {
    PrintShow(show);
  } else {
    FailShow(show, end.reason);
  }
}

void Commander::FailShow(const ShowCommand& command, EndReason reason) {
  console_.Complain(reason == EndReason::ServerLost
                        ? "server lost; this is what is known without it"
                        : "the server does not answer; this is what was known",
                    "show");
  failed_(reason);
  PrintShow(command);
}

void Commander::PrintShow(const ShowCommand& command) {
  ShowAnswer answer =
      Show(command, *keeper_.config(), monitor_.table(), monitor_.server(), InterfaceOf);
  const bool found = answer.found;
  console_.Tell(std::move(answer));
  if (!found) {
    console_.Complain("there is nothing of that name", "show");
    mistaken_ = true;
  }
}

}  // namespace cfm_agent
