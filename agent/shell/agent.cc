// SPDX-License-Identifier: Apache-2.0
#include "shell/agent.h"

#include <net/if.h>
#include <poll.h>
#include <sepan/sepan.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <system_error>

#include "core/text.h"
#include "shell/file_reader.h"

namespace cfm_agent {
namespace {

using std::chrono::milliseconds;

// How long a written file must rest before it is read, and how long it may keep the agent waiting.
constexpr milliseconds kQuiet{100};
constexpr milliseconds kPatience{2000};

// How often the progress of tests is looked at.
constexpr milliseconds kProgress{250};

TimePoint Now() { return std::chrono::steady_clock::now(); }

// Time until `due` as poll(2) takes it; it must not end early.
int PollTimeout(TimePoint due) {
  const auto left = std::chrono::ceil<milliseconds>(due - Now()).count();
  return static_cast<int>(std::clamp<decltype(left)>(left, 0, 60'000));
}

// The shorter of two time-outs, of which -1 is the longest.
int Sooner(int a, int b) { return a < 0 ? b : b < 0 ? a : std::min(a, b); }

// Request identifiers of one process on the bus differ from those of all others, whose events it
// gets too.
std::uint32_t RequestIdBase(const vorx_t* handle) {
  return static_cast<std::uint32_t>(vorx_self(handle)) << 16U;
}

std::uint32_t IndexOf(sepan_port_t port) {
  std::uint32_t index = 0;
  return sepan_to_ifindex(port, &index) == 0 ? index : 0;
}

std::string NameOf(sepan_port_t port) {
  std::array<char, IF_NAMESIZE> name = {};
  return sepan_to_intfname(port, name.data(), name.size()) == 0 ? name.data() : "";
}

// Without it all but an interface that appears is noticed.
std::optional<LinkWatch> WatchLinks(Console& console) {
  try {
    return LinkWatch();
  } catch (const std::system_error& error) {
    console.Complain(std::string("interfaces that appear will not be noticed: ") + error.what());
    return std::nullopt;
  }
}

}  // namespace

Agent::Agent(const Options& options, CommandSource source, ConfigKeeper& keeper, Console& console,
             Input* input)
    : source_(source),
      keeper_(keeper),
      console_(console),
      input_(input),
      file_(options.config),
      signals_({SIGHUP, SIGTERM, SIGINT, SIGWINCH}),
      watch_(options.config),
      links_(WatchLinks(console)),
      interfaces_(IndexOf),
      settle_(kQuiet, kPatience),
      script_(Now() + options.timeout),
      bus_(options.name, options.bus, options.log_config),
      monitor_(RequestIdBase(bus_.handle()), options.timeout,
               {Now, [&console](const Record& record) { console.Tell(record); },
                [this](const TestEnd& end) { commander_.OnEnded(end); }}),
      commander_(
          source == CommandSource::Prompt ? Commander::Timing::AtOnce : Commander::Timing::UpToDate,
          keeper, monitor_, console, [this](EndReason reason) { script_.Note(reason); }),
      client_(bus_.handle()),
      server_watch_(
          bus_.handle(), [this] { OnInStep(); }, [this] { monitor_.ServerLost(); }) {
  if (source == CommandSource::Given) {
    script_.Close();
  }
  RegisterHandlers();
  TellConfiguration(ConfigurationNews::What::Loaded);
  HandIn();
}

void Agent::RegisterHandlers() {
  client_.RegisterStatusHandler(&status_handler_);
  client_.RegisterStatisticsHandler(&statistics_handler_);
  client_.RegisterLinktraceHandler(&linktrace_handler_);
  client_.RegisterLoopbackHandler(&loopback_handler_);
  client_.RegisterDelayMeasurementHandler(&delay_measurement_handler_);
}

void Agent::HandIn() { HandIn(interfaces_.Look(keeper_.config()->hierarchy)); }

void Agent::HandIn(const std::set<sepan_port_t>& moved) {
  const cfm::hierarchy& hierarchy = keeper_.config()->hierarchy;
  // Which interface an endpoint has is told when it is created, and then no more.
  if (!moved.empty()) {
    client_.UpdateConfig(Without(hierarchy, moved));
  }
  for (const sepan_port_t port : moved) {
    console_.Tell(InterfaceNews{NameOf(port)});
  }
  client_.UpdateConfig(hierarchy);
  client_.UpdateConfigProbe(keeper_.config()->probes);
}

void Agent::TellConfiguration(ConfigurationNews::What what) const {
  if (what == ConfigurationNews::What::Loaded || what == ConfigurationNews::What::Reloaded) {
    for (const std::string& line : keeper_.WarningsToTell()) {
      console_.Tell(WarningNews{line});
    }
  }
  console_.Tell(ConfigurationNews{what, CountsOf(*keeper_.config())});
}

void Agent::OnInStep() {
  monitor_.ServerInStep();
  if (source_ == CommandSource::Given || source_ == CommandSource::Pipe) {
    commander_.Refresh(client_);
  }
}

ExitStatus Agent::Run() {
  try {
    Serve();
  } catch (...) {
    GiveUp();
    throw;
  }
  GiveUp();
  return Status();
}

void Agent::GiveUp() {
  monitor_.GiveUp();
  console_.ShowProgress("");
}

void Agent::Serve() {
  // What the file became between its being read and its being watched.
  settle_.Finished(Now());
  do {
    bus_.Dispatch();
    TakeFileActivity(Now());
    TakeInterfaces();
    TakeInput();
    monitor_.Expire();
    RunScript(Now());
    if (Finished()) {
      return;
    }
    ShowProgress();
    Wait();
  } while (TakeSignals());
  Abandon();
  console_.Tell(StopNews{});
}

void Agent::Abandon() {
  if (script_.waiting() > 0) {
    console_.Complain("stopped; " + Count(script_.waiting(), "command") + " not run");
    script_.Note(EndReason::ServerLost);
  }
}

void Agent::ShowProgress() {
  if (console_.shows_progress()) {
    console_.ShowProgress(monitor_.Progress());
  }
}

void Agent::Wait() {
  std::array<pollfd, 5> fds = {{
      {vorx_fd(bus_.handle()), static_cast<short>(vorx_poll_events(bus_.handle())), 0},
      {watch_.fd(), POLLIN, 0},
      {signals_.fd(), POLLIN, 0},
      {input_ != nullptr && !input_->ended() ? input_->fd() : -1, POLLIN, 0},
      {links_ ? links_->fd() : -1, POLLIN, 0},
  }};
  int timeout = vorx_poll_timeout(bus_.handle());
  if (console_.shows_progress() && !monitor_.Idle()) {
    timeout = Sooner(timeout, static_cast<int>(kProgress.count()));
  }
  for (const auto& due : {settle_.due(), monitor_.Deadline(), script_.Deadline()}) {
    if (due) {
      timeout = Sooner(timeout, PollTimeout(*due));
    }
  }
  const int ready = poll(fds.data(), fds.size(), timeout);
  if (ready < 0 && errno != EINTR) {
    throw std::system_error(errno, std::generic_category(), "poll");
  }
  input_waits_ = ready > 0 && fds[3].revents != 0;
}

bool Agent::TakeSignals() {
  for (int signal = signals_.Take(); signal != 0; signal = signals_.Take()) {
    if (signal == SIGWINCH) {
      if (input_ != nullptr) {
        input_->Resize();
      }
    } else if (signal == SIGHUP) {
      watch_.Renew();
      Reload(keeper_.OfferAgain(ReadFile(file_)), true);
    } else {
      return false;
    }
  }
  return true;
}

void Agent::TakeFileActivity(TimePoint now) {
  switch (watch_.Read()) {
    case FileWatch::Activity::None:
      break;
    case FileWatch::Activity::Busy:
      settle_.Busy(now);
      break;
    case FileWatch::Activity::Finished:
      settle_.Finished(now);
      if (!watch_.watching()) {
        console_.Complain(file_ + ": its directory is gone; send SIGHUP when it is back");
      }
      break;
  }
  if (settle_.Take(now)) {
    Reload(keeper_.Offer(ReadFile(file_)), false);
  }
}

void Agent::TakeInterfaces() {
  if (links_ && links_->Read()) {
    const auto moved = interfaces_.Look(keeper_.config()->hierarchy);
    if (!moved.empty()) {
      HandIn(moved);
    }
  }
}

void Agent::Reload(ConfigKeeper::Outcome outcome, bool asked) {
  switch (outcome) {
    case ConfigKeeper::Outcome::Unchanged:
      if (asked) {
        TellConfiguration(ConfigurationNews::What::Unchanged);
      }
      break;
    case ConfigKeeper::Outcome::Restored:
      TellConfiguration(ConfigurationNews::What::Restored);
      break;
    case ConfigKeeper::Outcome::Loaded:
      TellConfiguration(ConfigurationNews::What::Reloaded);
      HandIn();
      break;
    case ConfigKeeper::Outcome::Rejected:
      for (const std::string& complaint : keeper_.complaints()) {
        console_.Complain(complaint);
      }
      console_.Complain(file_ + ": " + Count(keeper_.complaints().size(), "mistake") +
                        "; the old configuration stays in force");
      break;
  }
}

void Agent::TakeInput() {
  if (!input_waits_) {
    return;
  }
  input_waits_ = false;
  for (const std::string& line : input_->Read()) {
    TakeLine(line);
  }
  if (input_->ended()) {
    script_.Close();
  }
}

void Agent::TakeLine(const std::string& line) {
  ParsedCommand parsed = ParseCommand(line);
  if (!parsed.mistake.empty()) {
    console_.Complain(parsed.mistake);
    bad_command_ = source_ == CommandSource::Pipe;
  } else if (parsed.command && source_ == CommandSource::Prompt) {
    commander_.Run(*parsed.command, client_);
  } else if (parsed.command) {
    script_.Add(std::move(*parsed.command));
  }
}

void Agent::RunScript(TimePoint now) {
  const auto next = [&] {
    return script_.Next(now, monitor_.server() == ServerState::InStep, monitor_.Idle());
  };
  for (auto command = next(); command && !commander_.quit(); command = next()) {
    commander_.Run(*command, client_);
  }
}

bool Agent::Finished() const {
  if (source_ == CommandSource::Prompt) {
    return commander_.quit() || input_->ended();
  }
  return source_ != CommandSource::None && (commander_.quit() || script_.Done(monitor_.Idle()));
}

ExitStatus Agent::Status() const {
  if (source_ == CommandSource::Prompt) {
    return ExitStatus::Success;
  }
  switch (script_.failure().value_or(EndReason::Complete)) {
    case EndReason::Complete:
      return bad_command_ || commander_.mistaken() ? ExitStatus::BadCommandLine
                                                   : ExitStatus::Success;
    case EndReason::Refused:
      return ExitStatus::Refused;
    case EndReason::TimedOut:
      return ExitStatus::TimedOut;
    case EndReason::EndpointRemoved:
    case EndReason::ServerLost:
      return ExitStatus::Broken;
  }
  return ExitStatus::Success;
}

}  // namespace cfm_agent
