// SPDX-License-Identifier: Apache-2.0
// The client library on the development host, provisioning 10,000 endpoints into another process.

#include "provisioning.h"

#include <cfm/client.h>
#include <cfm/identifiers.h>
#include <poll.h>
#include <vorx/host.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <ctime>
#include <memory>
#include <stdexcept>

#include "child_process.h"
#include "private_bus.h"

namespace cfm_bench {
namespace {

using cfm_test::ChildProcess;
using cfm_test::ReadFile;

constexpr std::uint8_t kClientSignals = 20;

struct CloseHandle {
  void operator()(vorx_t* handle) const { vorx_close(handle); }
};
using Handle = std::unique_ptr<vorx_t, CloseHandle>;

Handle Join(const std::string& bus, const char* name) {
  vorx_options_t options{};
  options.name = name;
  options.bus_address = bus.c_str();
  vorx_t* handle = nullptr;
  if (vorx_open(&options, &handle) < 0) {
    throw std::runtime_error(vorx_last_error(nullptr));
  }
  return Handle(handle);
}

template <typename Condition>
void Serve(const Handle& handle, const Condition& is_over) {
  constexpr int kMostMs = 5;
  while (!is_over()) {
    if (vorx_dispatch(handle.get()) < 0) {
      throw std::runtime_error(vorx_last_error(handle.get()));
    }
    const int timeout = vorx_poll_timeout(handle.get());
    pollfd fd{vorx_fd(handle.get()), static_cast<short>(vorx_poll_events(handle.get())), 0};
    poll(&fd, 1, timeout < 0 ? kMostMs : std::min(timeout, kMostMs));
  }
}

/** Plays an empty server. What it does with the requests is the user's to say. */
class Receiver {
 public:
  using Take = std::function<void(const Request&)>;

  Receiver(const std::string& bus, Take take)
      : take_(std::move(take)), handle_(Join(bus, CFM_MGR_PROCESS)) {
    for (std::uint8_t i = 0; i < kClientSignals; ++i) {
      entries_.at(i) = {this, static_cast<std::uint8_t>(i + 1)};
      const vorx_sig_descriptor signal{CFM_MGR_C2S_SIGBLOCK, entries_.at(i).number, {}};
      vorx_sig_register_sized(handle_.get(), &signal, &Receive, &entries_.at(i));
    }
  }

  bool is_in_step() const { return is_in_step_; }
  const Handle& handle() const { return handle_; }

 private:
  struct Entry {
    Receiver* receiver;
    std::uint8_t number;
  };

  static void Receive(vorx_t* handle, void* user, const vorx_pid_t* sender, void* data,
                      unsigned int length) {
    const Entry& entry = *static_cast<Entry*>(user);
    if (entry.number == CFM_MGR_C2S_SIG_CACHE_GET->number) {
      vorx_sig_send(handle, sender, CFM_MGR_S2C_SIG_CACHE_REPLY, nullptr, 0);
    } else if (entry.number == CFM_MGR_C2S_SIG_STATUS_GET_ALL->number) {
      entry.receiver->is_in_step_ = true;
    } else {
      entry.receiver->take_({{}, entry.number, {static_cast<char*>(data), length}});
    }
  }

  Take take_;
  bool is_in_step_ = false;
  std::array<Entry, kClientSignals> entries_{};
  Handle handle_;
};

int Provision(const std::string& bus, const cfm::hierarchy& configuration, Rendezvous& rendezvous) {
  const Handle handle = Join(bus, "bench");
  cfm::Client client(handle.get());
  bool is_in_step = false;
  // After the client's own, and so called after it.
  vorx_sig_register_sized(
      handle.get(), CFM_MGR_S2C_SIG_CACHE_REPLY,
      [](vorx_t*, void* user, const vorx_pid_t*, void*, unsigned int) {
        *static_cast<bool*>(user) = true;
      },
      &is_in_step);
  Serve(handle, [&] { return is_in_step && rendezvous.is_ready(); });
  rendezvous.Start();
  client.UpdateConfig(configuration);
  Serve(handle, [&] { return rendezvous.is_dismissed(); });
  return 0;
}

/** The time at the beginning of a line of the server's log, in nanoseconds since the epoch. */
std::int64_t TimeOf(const std::string& line) {
  constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
  constexpr std::int64_t kNanosecondsPerMillisecond = 1'000'000;
  std::tm time{};
  const char* const rest = strptime(line.c_str(), "%Y-%m-%d %H:%M:%S.", &time);
  if (rest == nullptr) {
    throw std::runtime_error("no time in the server's log: " + line);
  }
  time.tm_isdst = -1;
  return mktime(&time) * kNanosecondsPerSecond + std::stoi(rest) * kNanosecondsPerMillisecond;
}

/** The line of the server's log on the create that completes them; empty while it is not there. */
std::string LineOfCreate(const std::string& log, std::size_t number) {
  std::size_t at = 0;
  for (std::size_t found = 0; found < number; ++found) {
    at = log.find(": created\n", at + 1);
    if (at == std::string::npos) {
      return {};
    }
  }
  const std::size_t start = log.rfind('\n', at) + 1;
  const std::size_t end = log.find('\n', at);
  return end == std::string::npos ? std::string() : log.substr(start, end - start);
}

}  // namespace

cfm::hierarchy ConfigurationOf(int endpoints) {
  constexpr int kEndpoints = 10;
  constexpr int kAssociations = 100;
  constexpr std::uint16_t kRemote = 8000;
  cfm::hierarchy hierarchy;
  for (int i = 0; i < endpoints; ++i) {
    const std::string md_name = "domain" + std::to_string(i / kEndpoints / kAssociations);
    const std::string ma_name = "association" + std::to_string(i / kEndpoints);
    cfm::hierarchy_md& md = hierarchy.mds[md_name];
    md.cfg = {cfm::MdNameFormat::CharString, 4, cfm::SenderIdTlvContent::None,
              cfm::MhfCreationMode::None};
    cfm::hierarchy_ma& ma = md.mas[ma_name];
    ma.md_name = md_name;
    ma.cfg.format = cfm::MaNameFormat::CharString;
    ma.cfg.ccm_interval = cfm::CcmInterval::Interval1s;
    ma.cfg.sender_id = cfm::SenderIdTlvContent::Defer;
    ma.cfg.mhf_creation = cfm::MhfCreationMode::Defer;
    ma.cfg.vids = {static_cast<std::uint16_t>(1 + i / kEndpoints % 4000)};
    const auto mep_id = static_cast<std::uint16_t>(1 + i % kEndpoints);
    ma.cfg.mep_ids.insert(mep_id);
    ma.cfg.mep_ids.insert(kRemote);
    cfm::hierarchy_mep& mep = ma.meps[mep_id];
    mep.md_name = md_name;
    mep.ma_name = ma_name;
    mep.cfg.mep_id = mep_id;
    mep.cfg.direction = cfm::MepDirection::Down;
    mep.cfg.port = 1;
    mep.cfg.ccm_priority = 7;
    mep.cfg.lowest_prio_defect = cfm::Defects::MacRemoteErrorXcon;
    mep.cfg.fng_alarm_time = 250;
    mep.cfg.fng_reset_time = 1000;
  }
  return hierarchy;
}

std::vector<Request> RecordRequests(const cfm_test::PrivateBus& bus,
                                    const cfm::hierarchy& configuration) {
  std::vector<Request> requests;
  Receiver receiver(bus.address(), [&](const Request& request) { requests.push_back(request); });
  const Handle handle = Join(bus.address(), "bench");
  cfm::Client client(handle.get());
  const auto serve_until = [&](const auto& condition) {
    Await("the client", [&] {
      vorx_dispatch(handle.get());
      vorx_dispatch(receiver.handle().get());
      return condition();
    });
  };
  serve_until([&] { return receiver.is_in_step(); });
  client.UpdateConfig(configuration);
  // The last thing of all, told from the configuration by its number.
  client.ClearStatistics(nullptr, nullptr, 0);
  const std::uint8_t last = CFM_MGR_C2S_SIG_STATS_CLEAR->number;
  serve_until([&] { return !requests.empty() && requests.back().number == last; });
  requests.pop_back();
  for (Request& request : requests) {
    request.block = CFM_MGR_C2S_SIGBLOCK;
  }
  return requests;
}

Timing TimeToReceiver(const cfm_test::PrivateBus& bus, const cfm::hierarchy& configuration,
                      std::size_t requests) {
  Rendezvous rendezvous;
  const ChildProcess process([&] {
    std::size_t received = 0;
    Receiver receiver(bus.address(), [&](const Request&) {
      if (++received == requests) {
        rendezvous.End();
      }
    });
    Serve(receiver.handle(), [&] { return receiver.is_in_step(); });
    rendezvous.Ready("");
    Serve(receiver.handle(), [&] { return rendezvous.is_dismissed(); });
    return 0;
  });
  const ChildProcess sender([&] { return Provision(bus.address(), configuration, rendezvous); });
  CpuLog log({bus.pid(), process.pid(), sender.pid()});
  Await("the last request", [&] {
    log.Sample();
    return rendezvous.has_ended();
  });
  rendezvous.Dismiss();
  return TimingOf(log, rendezvous.start(), rendezvous.end());
}

Timing TimeToServer(const cfm_test::PrivateBus& bus, const cfm::hierarchy& configuration,
                    std::size_t requests) {
  const cfm_test::TemporaryDirectory directory;
  const std::string server_log = directory.File("log");
  Rendezvous rendezvous;
  const ChildProcess server({CFM_MGR_PROGRAM, "--bus", bus.address()}, "/dev/null", server_log);
  rendezvous.Ready("");
  const std::int64_t offset =
      std::chrono::nanoseconds(std::chrono::system_clock::now().time_since_epoch()).count() - Now();
  const ChildProcess sender([&] { return Provision(bus.address(), configuration, rendezvous); });
  CpuLog log({bus.pid(), server.pid(), sender.pid()});
  // The server's log is read now and then only, so as not to disturb.
  constexpr std::int64_t kRest = 300'000'000;
  std::int64_t last_read = Now();
  std::string line;
  Await("the server's last request", [&] {
    log.Sample();
    if (Now() - last_read >= kRest) {
      line = LineOfCreate(ReadFile(server_log), requests);
      last_read = Now();
    }
    return !line.empty();
  });
  rendezvous.Dismiss();
  return TimingOf(log, rendezvous.start(), TimeOf(line) - offset);
}

}  // namespace cfm_bench
