#include "shell/agent.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

#include "core/text.h"
#include "shell/file_reader.h"

namespace cfm_agent {
namespace {

using std::chrono::milliseconds;

// How long a written file must rest before it is read, and how long it may keep the agent waiting.
constexpr milliseconds kQuiet{100};
constexpr milliseconds kPatience{2000};

TimePoint Now() { return std::chrono::steady_clock::now(); }

// Time until `due` as poll(2) takes it; it must not end early.
int PollTimeout(TimePoint due) {
  const auto left = std::chrono::ceil<milliseconds>(due - Now()).count();
  return static_cast<int>(std::clamp<decltype(left)>(left, 0, 60'000));
}

// The shorter of two time-outs, of which -1 is the longest.
int Sooner(int a, int b) { return a < 0 ? b : b < 0 ? a : std::min(a, b); }

}  // namespace

Agent::Agent(const Options& options, ConfigKeeper& keeper, Console& console)
    : keeper_(keeper),
      console_(console),
      file_(options.config),
      signals_({SIGHUP, SIGTERM, SIGINT}),
      watch_(options.config),
      settle_(kQuiet, kPatience),
      bus_(options.name, options.bus, options.log_config),
      status_printer_(console),
      client_(bus_.handle()),
      presence_(
          bus_.handle(), [] {},
          [&console] { console.Print("server lost; waiting for it to come back"); }) {
  client_.RegisterStatusHandler(&status_printer_);
  console_.Print("configuration loaded: " + Summary(*keeper_.config()));
  HandIn();
}

void Agent::HandIn() {
  client_.UpdateConfig(keeper_.config()->hierarchy);
  client_.UpdateConfigProbe(keeper_.config()->probes);
}

void Agent::Run() {
  // What the file became between its being read and its being watched.
  settle_.Finished(Now());
  do {
    bus_.Dispatch();
    TakeFileActivity(Now());
    Wait();
  } while (TakeSignals());
  console_.Print("stopped; the server keeps its configuration");
}

void Agent::Wait() {
  std::array<pollfd, 3> fds = {{
      {vorx_fd(bus_.handle()), static_cast<short>(vorx_poll_events(bus_.handle())), 0},
      {watch_.fd(), POLLIN, 0},
      {signals_.fd(), POLLIN, 0},
  }};
  int timeout = vorx_poll_timeout(bus_.handle());
  if (const auto due = settle_.due()) {
    timeout = Sooner(timeout, PollTimeout(*due));
  }
  if (poll(fds.data(), fds.size(), timeout) < 0 && errno != EINTR) {
    throw std::system_error(errno, std::generic_category(), "poll");
  }
}

bool Agent::TakeSignals() {
  for (int signal = signals_.Take(); signal != 0; signal = signals_.Take()) {
    if (signal != SIGHUP) {
      return false;
    }
    watch_.Renew();
    Reload(keeper_.OfferAgain(ReadFile(file_)), true);
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

void Agent::Reload(ConfigKeeper::Outcome outcome, bool asked) {
  switch (outcome) {
    case ConfigKeeper::Outcome::Unchanged:
      if (asked) {
        console_.Print("configuration unchanged");
      }
      break;
    case ConfigKeeper::Outcome::Restored:
      console_.Print("configuration as in force; nothing to do");
      break;
    case ConfigKeeper::Outcome::Loaded:
      console_.Print("configuration reloaded: " + Summary(*keeper_.config()));
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

}  // namespace cfm_agent
