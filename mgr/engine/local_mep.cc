// SPDX-License-Identifier: Apache-2.0
#include "engine/local_mep.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "pdu/ais.h"

namespace cfm_mgr::engine {
namespace {

constexpr std::uint8_t kInterfaceNotPresent = 6;
constexpr std::uint8_t kPortUp = 2;

/** What a period code of AIS stands for. */
Time AisPeriod(std::uint8_t code) {
  return code == pdu::kAisOneMinute ? Time(std::chrono::minutes(1)) : std::chrono::seconds(1);
}

/** A status as a TLV has it: none when it is not one of 1 to @p max. */
std::optional<std::uint8_t> InTlv(std::uint8_t status, std::uint8_t max) {
  if (status < 1 || status > max) return std::nullopt;
  return status;
}

}  // namespace

LocalMep::LocalMep(Context& context, MepSettings settings)
    : context_(context),
      settings_(std::move(settings)),
      ccm_sender_(context),
      error_ccm_(context.timers, [this](Time now) { Reevaluate(now); }),
      xcon_ccm_(context.timers, [this](Time now) { Reevaluate(now); }),
      ais_(context.timers, [this](Time now) { Reevaluate(now); }),
      fault_notifier_(
          context.timers,
          [this](unsigned priority) {
            context_.notifications.OnFaultAlarm(settings_.key, priority);
          },
          [this](Time now) { Reevaluate(now); }),
      ais_sender_(context, [this](Time now) { SendAis(now); }) {
  status_.interface_status = kInterfaceNotPresent;
  for (const std::uint16_t mep_id : settings_.remotes) AddRemote(mep_id);
}

void LocalMep::Configure(Time now, MepSettings settings) {
  settings_ = std::move(settings);
  Refresh(now);
}

void LocalMep::SetPort(Time now, const PortInfo* port) {
  port_.reset();
  if (port != nullptr) port_ = *port;
  Refresh(now);
}

void LocalMep::Shut(Time now) {
  if (running_) StopRunning(now);
}

void LocalMep::Refresh(Time now) {
  const bool runs = settings_.active && port_ && settings_.maid;
  if (running_ && !runs) StopRunning(now);
  ConfigureRemotes(now);
  if (!running_ && runs) StartRunning(now);
  if (running_) ConfigureCcms(now);
  Reevaluate(now);
}

void LocalMep::StartRunning(Time now) {
  running_ = true;
  for (auto& [mep_id, remote] : remotes_) {
    remote.Start(now, settings_.ccm_interval);
    context_.notifications.OnRemoteMepChanged(settings_.key, mep_id);
  }
}

void LocalMep::StopRunning(Time now) {
  running_ = false;
  ccm_sender_.Stop();
  error_ccm_.Clear();
  xcon_ccm_.Clear();
  ais_.Clear();
  fault_notifier_.Reset();
  for (auto& [mep_id, remote] : remotes_) {
    remote.Stop(now);
    context_.notifications.OnRemoteMepChanged(settings_.key, mep_id);
  }
  context_.on_mep_stopped(now, *this);
}

void LocalMep::ConfigureRemotes(Time now) {
  const std::vector<std::uint16_t>& wanted = settings_.remotes;
  for (auto it = remotes_.begin(); it != remotes_.end();) {
    const bool stays = std::binary_search(wanted.begin(), wanted.end(), it->first);
    it = stays ? std::next(it) : remotes_.erase(it);
  }
  for (auto& [mep_id, remote] : remotes_) remote.SetInterval(now, settings_.ccm_interval);
  for (const std::uint16_t mep_id : wanted) {
    if (remotes_.count(mep_id) > 0) continue;
    RemoteMep& remote = AddRemote(mep_id);
    if (!running_) continue;
    remote.Start(now, settings_.ccm_interval);
    context_.notifications.OnRemoteMepChanged(settings_.key, mep_id);
  }
}

RemoteMep& LocalMep::AddRemote(std::uint16_t mep_id) {
  const auto on_lost = [this, mep_id](Time now) {
    context_.notifications.OnRemoteMepChanged(settings_.key, mep_id);
    Reevaluate(now);
  };
  return remotes_.try_emplace(mep_id, context_.timers, remote_defects_, on_lost).first->second;
}

void LocalMep::ConfigureCcms(Time now) {
  pdu::Ccm ccm;
  ccm.level = settings_.level;
  ccm.rdi = status_.rdi;
  ccm.interval = settings_.ccm_interval;
  ccm.mep_id = static_cast<std::uint16_t>(settings_.key.mep_id);
  ccm.maid = *settings_.maid;
  ccm.port_status = InTlv(port_->port_status, pdu::kMaxPortStatus);
  ccm.interface_status = InTlv(port_->interface_status, pdu::kMaxInterfaceStatus);
  ccm.sender_id = sender_id();
  ccm_sender_.SetFrame(
      settings_.port, settings_.side,
      MakeFrame(CcmGroupAddress(settings_.level), pdu::Encode(ccm), settings_.priority));
  if (settings_.ccm_enabled && settings_.ccm_interval != 0) {
    ccm_sender_.Start(now, settings_.ccm_interval);
  } else {
    ccm_sender_.Stop();
  }
}

void LocalMep::ReceiveCcm(Time now, const Frame& frame) {
  if (!IsAddressed(frame)) return;
  const pdu::Decoded<pdu::Ccm> ccm = pdu::DecodeCcm(frame.pdu);
  if (!ccm) {
    context_.drops.CountMalformed(ccm.fault());
    return;
  }
  if (ccm->maid != settings_.maid) {
    return HoldDefect(now, xcon_ccm_, Lifetime(ccm->interval));
  }
  const auto remote = remotes_.find(ccm->mep_id);
  if (remote == remotes_.end() || ccm->interval != settings_.ccm_interval) {
    return HoldDefect(now, error_ccm_, Lifetime(ccm->interval));
  }
  const RemoteMep::Effect effect = remote->second.Receive(now, *ccm, frame.source);
  if (effect.sequence_error) ++sequence_errors_;
  if (!effect.status_changed) return;
  context_.notifications.OnRemoteMepChanged(settings_.key, ccm->mep_id);
  Reevaluate(now);
}

void LocalMep::ReceiveLowerCcm(Time now, const Frame& frame) {
  if (!IsAddressed(frame)) return;
  const pdu::Decoded<pdu::Ccm> ccm = pdu::DecodeCcm(frame.pdu);
  if (!ccm) {
    context_.drops.CountMalformed(ccm.fault());
    return;
  }
  HoldDefect(now, xcon_ccm_, Lifetime(ccm->interval));
}

void LocalMep::ReceiveAis(Time now, const Frame& frame) {
  if (!IsAddressed(frame)) return;
  const pdu::Decoded<pdu::Ais> ais = pdu::DecodeAis(frame.pdu);
  if (!ais) {
    context_.drops.CountMalformed(ais.fault());
    return;
  }
  // ITU-T Y.1731 goes by the period of the last frame alone, unlike 802.1Q with CCMs in error.
  const bool was_present = ais_.present();
  ais_.EndAt(now + AisPeriod(ais->period) * 7 / 2);
  if (!was_present) Reevaluate(now);
}

bool LocalMep::IsAddressed(const Frame& frame) {
  if (IsCcmGroupAddress(frame.destination) || frame.destination == mac()) return true;
  ++context_.drops.here().unexpected;
  return false;
}

void LocalMep::HoldDefect(Time now, HeldDefect& defect, Time duration) {
  const bool was_present = defect.present();
  defect.HoldUntil(now + duration);
  if (!was_present) Reevaluate(now);
}

Frame LocalMep::MakeFrame(const Mac& destination, std::vector<std::uint8_t> pdu,
                          std::uint8_t pcp) const {
  return {destination, mac(), TagsOf(settings_.service, pcp), std::move(pdu)};
}

void LocalMep::Transmit(const Frame& frame) const {
  context_.surroundings.Transmit(settings_.port, settings_.side, frame);
}

std::optional<pdu::SenderId> LocalMep::sender_id() const {
  if (!port_) return std::nullopt;
  return SenderIdOf(settings_.sender_id, port_->mac);
}

LocalMepCounters LocalMep::counters() const {
  LocalMepCounters counters;
  counters.ccm_sequence_errors = sequence_errors_;
  counters.ccm_sequence_number = ccm_sender_.last_sequence();
  counters.ccms_sent = ccm_sender_.sent();
  return counters;
}

void LocalMep::ClearCounters() {
  sequence_errors_ = 0;
  ccm_sender_.ClearSent();
}

const RemoteMep* LocalMep::FindRemote(std::uint32_t mep_id) const {
  if (mep_id > pdu::kMaxMepId) return nullptr;
  const auto found = remotes_.find(static_cast<std::uint16_t>(mep_id));
  return found == remotes_.end() ? nullptr : &found->second;
}

bool LocalMep::IsPortPassing() const {
  // Frames of an Up MEP have to come through the port's filter, those of a Down MEP do not.
  return settings_.side == Side::Wire || port_->port_status == kPortUp;
}

Defects LocalMep::FindDefects() const {
  Defects defects;
  if (!running_) return defects;
  const bool all_ports = !remotes_.empty() && remote_defects_.port == remotes_.size();
  defects.rdi = remote_defects_.rdi > 0;
  defects.mac_status = remote_defects_.interface > 0 || all_ports;
  defects.remote_ccm = remote_defects_.lost > 0 && IsPortPassing();
  defects.error_ccm = error_ccm_.present();
  defects.xcon_ccm = xcon_ccm_.present();
  defects.ais = ais_.present();
  return defects;
}

void LocalMep::Reevaluate(Time now) {
  const Defects defects = FindDefects();
  fault_notifier_.Configure(settings_.alarms);
  if (running_) {
    Defects alarming = defects;
    if (defects.ais && settings_.ais.suppresses_loss) alarming.remote_ccm = false;
    fault_notifier_.Update(now, HighestPriority(alarming));
  }
  const bool signal_fails =
      defects.remote_ccm || defects.error_ccm || defects.xcon_ccm || defects.ais;
  ais_sender_.Update(now, settings_.ais.enabled && signal_fails, AisPeriod(settings_.ais.period));

  const LocalMepStatus status = MakeStatus(defects);
  if (status == status_) return;
  if (running_ && status.rdi != status_.rdi) ccm_sender_.SetRdi(status.rdi);
  status_ = status;
  context_.notifications.OnLocalMepChanged(settings_.key);
}

LocalMepStatus LocalMep::MakeStatus(const Defects& defects) const {
  LocalMepStatus status;
  status.mac = mac();
  status.interface_status = port_ ? port_->interface_status : kInterfaceNotPresent;
  status.port_status = port_ ? port_->port_status : 0;
  status.highest_defect_priority = HighestPriority(defects);
  const bool acts = fault_notifier_.HasReported();
  status.blocked = acts && settings_.fault_action == FaultAction::Block;
  status.shut_down = acts && settings_.fault_action == FaultAction::ShutDown;
  // What the remote MEPs say of the other direction is not said back to them.
  Defects told = defects;
  told.rdi = false;
  status.rdi = HighestPriority(told) >= settings_.alarms.lowest_priority;
  status.defect_rdi = defects.rdi;
  status.defect_mac_status = defects.mac_status;
  status.defect_remote_ccm = defects.remote_ccm;
  status.defect_error_ccm = defects.error_ccm;
  status.defect_xcon_ccm = defects.xcon_ccm;
  status.defect_ais = defects.ais;
  return status;
}

void LocalMep::SendAis(Time now) {
  const std::vector<std::uint8_t> pdu =
      pdu::Encode(pdu::Ais{settings_.ais.level, settings_.ais.period});
  for (const ServiceTags service : settings_.ais.services) {
    Frame frame = MakeFrame(CcmGroupAddress(settings_.ais.level), pdu, settings_.ais.priority);
    frame.tags = TagsOf(service, settings_.ais.priority);
    context_.send_behind(now, *this, frame);
  }
}

}  // namespace cfm_mgr::engine
