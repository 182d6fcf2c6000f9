// SPDX-License-Identifier: Apache-2.0
#include "core/words.h"

#include <cfm/hierarchy.h>

namespace cfm_agent {
namespace {

template <typename Enum>
constexpr Word Named(std::string_view text, Enum value) {
  return {text, static_cast<std::int32_t>(value)};
}

// An association may also leave the choice to its domain.
WordList WithDefer(WordList list, Word defer) {
  list.words.push_back(defer);
  return list;
}

}  // namespace

const WordList kMdNameFormats = {
    "a domain name format",
    {Named("none", cfm::MdNameFormat::None), Named("dns-like", cfm::MdNameFormat::DnsLike),
     Named("mac-and-uint", cfm::MdNameFormat::MacAndUint),
     Named("char-string", cfm::MdNameFormat::CharString)}};

const WordList kMaNameFormats = {
    "an association name format",
    {Named("primary-vid", cfm::MaNameFormat::PrimaryVid),
     Named("char-string", cfm::MaNameFormat::CharString),
     Named("uint16", cfm::MaNameFormat::Uint16),
     Named("rfc2685-vpn-id", cfm::MaNameFormat::Rfc2685VpnId),
     Named("icc-based", cfm::MaNameFormat::IccBased),
     Named("icc-and-country-code", cfm::MaNameFormat::IccAndCountryCode)}};

const WordList kMdSenderIds = {"a sender id",
                               {Named("none", cfm::SenderIdTlvContent::None),
                                Named("chassis", cfm::SenderIdTlvContent::Chassis),
                                Named("manage", cfm::SenderIdTlvContent::Manage),
                                Named("chassis-manage", cfm::SenderIdTlvContent::ChassisManage)}};

const WordList kMaSenderIds =
    WithDefer(kMdSenderIds, Named("defer", cfm::SenderIdTlvContent::Defer));

const WordList kMdMhfCreations = {
    "an MHF creation mode",
    {Named("none", cfm::MhfCreationMode::None), Named("default", cfm::MhfCreationMode::Default),
     Named("explicit", cfm::MhfCreationMode::Explicit)}};

const WordList kMaMhfCreations =
    WithDefer(kMdMhfCreations, Named("defer", cfm::MhfCreationMode::Defer));

const WordList kCcmIntervals = {
    "a CCM interval",
    {Named("3.33ms", cfm::CcmInterval::Interval300Hz),
     Named("10ms", cfm::CcmInterval::Interval10ms), Named("100ms", cfm::CcmInterval::Interval100ms),
     Named("1s", cfm::CcmInterval::Interval1s), Named("10s", cfm::CcmInterval::Interval10s),
     Named("1min", cfm::CcmInterval::Interval1min),
     Named("10min", cfm::CcmInterval::Interval10min)}};

const WordList kDirections = {
    "a direction", {Named("down", cfm::MepDirection::Down), Named("up", cfm::MepDirection::Up)}};

const WordList kLowestAlarmPriorities = {
    "a lowest alarm priority",
    {Named("all", cfm::Defects::All),
     Named("mac-remote-error-xcon", cfm::Defects::MacRemoteErrorXcon),
     Named("remote-error-xcon", cfm::Defects::RemoteErrorXcon),
     Named("error-xcon", cfm::Defects::ErrorXcon), Named("xcon", cfm::Defects::Xcon),
     Named("none", cfm::Defects::None)}};

const WordList kFaultActions = {
    "a fault action",
    {Named("none", cfm::FaultAction::None), Named("block", cfm::FaultAction::Block),
     Named("shutdown", cfm::FaultAction::Shutdown)}};

std::string WordFor(const WordList& list, std::int64_t number) {
  for (const Word& word : list.words) {
    if (word.number == number) {
      return std::string(word.text);
    }
  }
  return std::to_string(number);
}

}  // namespace cfm_agent
