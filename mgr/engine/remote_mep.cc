// SPDX-License-Identifier: Apache-2.0
#include "engine/remote_mep.h"

#include <limits>
#include <tuple>
#include <utility>

#include "engine/ccm_interval.h"

namespace cfm_mgr::engine {
namespace {

constexpr std::uint8_t kInterfaceUp = 1;
constexpr std::uint32_t kPortBlocked = 1;
/** Of the MIB alone: the CCM had no such TLV. */
constexpr std::uint8_t kNoTlv = 0;

/** Senders count from 1 and go from the greatest number to 0 or, as 0 is no number, to 1. */
bool Follows(std::uint32_t sequence, std::uint32_t last) {
  if (last == std::numeric_limits<std::uint32_t>::max()) return sequence <= 1;
  return sequence == last + 1;
}

}  // namespace

RemoteMep::RemoteMep(TimerQueue& timers, RemoteDefects& defects,
                     std::function<void(Time now)> on_lost)
    : timer_(timers, [this](Time now) { Expire(now); }),
      defects_(defects),
      on_lost_(std::move(on_lost)) {
  status_.state = static_cast<std::uint32_t>(RemoteState::Idle);
}

void RemoteMep::Start(Time now, std::uint8_t interval) {
  lifetime_ = IsInterval(interval) ? Lifetime(interval) : Time{};
  Enter(now, RemoteState::Start);
  Count(FindDefects());
  ArmTimer(now);
}

void RemoteMep::Stop(Time now) {
  timer_.Stop();
  ForgetReport();
  status_.mac = {};
  status_.sender_id.clear();
  sender_id_.clear();
  last_sequence_ = 0;
  Enter(now, RemoteState::Idle);
  Count(FindDefects());
}

void RemoteMep::SetInterval(Time now, std::uint8_t interval) {
  const Time lifetime = IsInterval(interval) ? Lifetime(interval) : Time{};
  if (lifetime == lifetime_) return;
  lifetime_ = lifetime;
  if (state() == RemoteState::Start || state() == RemoteState::Ok) ArmTimer(now);
}

RemoteMep::Effect RemoteMep::Receive(Time now, const pdu::Ccm& ccm, const Mac& source) {
  Effect effect;
  effect.sequence_error =
      ccm.sequence != 0 && last_sequence_ != 0 && !Follows(ccm.sequence, last_sequence_);
  last_sequence_ = ccm.sequence;
  ArmTimer(now);

  const auto report = [this] {
    return std::make_tuple(status_.state, status_.mac, status_.rdi, status_.port_status,
                           status_.interface_status);
  };
  const auto before = report();
  Enter(now, RemoteState::Ok);
  status_.mac = source;
  status_.rdi = ccm.rdi;
  status_.port_status = ccm.port_status.value_or(kNoTlv);
  status_.interface_status = ccm.interface_status.value_or(kNoTlv);
  const bool report_changed = report() != before;
  if (report_changed) Count(FindDefects());
  effect.status_changed = TakeSenderId(ccm) || report_changed;
  return effect;
}

RemoteDefects RemoteMep::FindDefects() const {
  const bool interface_defect =
      status_.interface_status != kNoTlv && status_.interface_status != kInterfaceUp;
  RemoteDefects defects;
  defects.rdi = status_.rdi ? 1 : 0;
  defects.lost = state() == RemoteState::Failed ? 1 : 0;
  defects.interface = interface_defect ? 1 : 0;
  defects.port = status_.port_status == kPortBlocked ? 1 : 0;
  return defects;
}

void RemoteMep::Count(const RemoteDefects& defects) {
  defects_.rdi += defects.rdi - counted_.rdi;
  defects_.lost += defects.lost - counted_.lost;
  defects_.interface += defects.interface - counted_.interface;
  defects_.port += defects.port - counted_.port;
  counted_ = defects;
}

void RemoteMep::Enter(Time now, RemoteState state) {
  if (this->state() == state) return;
  status_.state = static_cast<std::uint32_t>(state);
  status_.last_change = now;
}

void RemoteMep::ForgetReport() {
  status_.rdi = false;
  status_.port_status = kNoTlv;
  status_.interface_status = kNoTlv;
}

void RemoteMep::ArmTimer(Time now) {
  if (lifetime_ > Time{}) {
    timer_.Arm(now + lifetime_);
  } else {
    timer_.Stop();
  }
}

void RemoteMep::Expire(Time now) {
  ForgetReport();
  Enter(now, RemoteState::Failed);
  Count(FindDefects());
  on_lost_(now);
}

bool RemoteMep::TakeSenderId(const pdu::Ccm& ccm) {
  const pdu::OctetView value = ccm.sender_id ? ccm.sender_id->value : pdu::OctetView();
  if (value == pdu::OctetView(sender_id_)) return false;
  sender_id_.assign(value.begin(), value.end());
  status_.sender_id = ccm.sender_id ? pdu::ToText(*ccm.sender_id) : std::string();
  return true;
}

}  // namespace cfm_mgr::engine
