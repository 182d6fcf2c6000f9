// SPDX-License-Identifier: Apache-2.0
// The configuration's records and enumerations are binary interface, and the numbers of the
// enumerations go over the wire.
#include <cfm/hierarchy.h>
#include <cfm/mac.h>
#include <cfm/probe.h>

#include "record_layout.h"

namespace cfm_test {
namespace {

using std::string;

TEST(ConfigurationLayout, Domain) {
  using C = cfm::st_maintenance_domain_cfg;
  ExpectLayout<C, cfm::MdNameFormat, U8, cfm::SenderIdTlvContent, cfm::MhfCreationMode>(
      &C::format, &C::level, &C::sender_id, &C::mhf_creation);
  using M = cfm::hierarchy_md;
  ExpectLayout<M, C, std::map<string, cfm::hierarchy_ma>>(&M::cfg, &M::mas);
  using H = cfm::hierarchy;
  ExpectLayout<H, std::map<string, M>>(&H::mds);
  EXPECT_EQ(sizeof(H), sizeof(H::mds));
}

TEST(ConfigurationLayout, Association) {
  using A = cfm::st_ais_cfg;
  ExpectLayout<A, bool, U8, U32, std::set<U16>, U8, bool>(&A::enabled, &A::octet_a, &A::word_b,
                                                          &A::id_set, &A::octet_c, &A::flag_d);
  using C = cfm::st_maintenance_association_cfg;
  ExpectLayout<C, cfm::MaNameFormat, std::vector<U16>, cfm::CcmInterval, std::set<U16>,
               cfm::SenderIdTlvContent, cfm::MhfCreationMode, A>(
      &C::format, &C::vids, &C::ccm_interval, &C::mep_ids, &C::sender_id, &C::mhf_creation,
      &C::ais);
  using M = cfm::hierarchy_ma;
  ExpectLayout<M, string, C, std::map<U16, cfm::hierarchy_mep>>(&M::md_name, &M::cfg, &M::meps);
}

TEST(ConfigurationLayout, Endpoint) {
  using C = cfm::st_maintenance_endpoint_cfg;
  ExpectLayout<C, U16, cfm::MepDirection, sepan_port_t, U16, U16, bool, bool, U8, cfm::Defects, U16,
               U16, cfm::FaultAction, bool>(
      &C::mep_id, &C::direction, &C::port, &C::primary_vid, &C::inner_vid, &C::admin_state,
      &C::ccm_enabled, &C::ccm_priority, &C::lowest_prio_defect, &C::fng_alarm_time,
      &C::fng_reset_time, &C::fault_action, &C::aux_flag);
  using M = cfm::hierarchy_mep;
  ExpectLayout<M, string, string, C>(&M::md_name, &M::ma_name, &M::cfg);
}

TEST(ConfigurationLayout, Probe) {
  using S = cfm::session_cfg;
  ExpectLayout<S, U16, U16, U16, U8>(&S::count, &S::interval, &S::size, &S::pcp);
  EXPECT_EQ(alignof(S), 2U);
  using P = cfm::probe_cfg;
  ExpectLayout<P, U16, U16, string, string, U16, U16, std::map<U16, S>>(
      &P::id, &P::interval, &P::md, &P::ma, &P::lmep, &P::rmep, &P::sessions);
  using A = cfm::probe;
  ExpectLayout<A, std::map<U16, P>>(&A::probes);
}

TEST(ConfigurationLayout, MacIsItsSixOctets) {
  EXPECT_EQ(sizeof(cfm::st_mac), 6U);
  EXPECT_EQ(cfm::st_mac().octets, (std::array<U8, 6>{}));
}

template <typename Enum>
void ExpectNumbers(std::initializer_list<std::pair<Enum, int>> expected) {
  for (const auto& [enumerator, number] : expected) {
    EXPECT_EQ(static_cast<int>(enumerator), number);
  }
}

TEST(Enumerations, CarryTheNumbersOfTheMib) {
  using Md = cfm::MdNameFormat;
  ExpectNumbers<Md>({{Md::None, 1}, {Md::DnsLike, 2}, {Md::MacAndUint, 3}, {Md::CharString, 4}});
  using Ma = cfm::MaNameFormat;
  ExpectNumbers<Ma>({{Ma::PrimaryVid, 1},
                     {Ma::CharString, 2},
                     {Ma::Uint16, 3},
                     {Ma::Rfc2685VpnId, 4},
                     {Ma::IccBased, 32},
                     {Ma::IccAndCountryCode, 33}});
  using Id = cfm::SenderIdTlvContent;
  ExpectNumbers<Id>(
      {{Id::None, 1}, {Id::Chassis, 2}, {Id::Manage, 3}, {Id::ChassisManage, 4}, {Id::Defer, 5}});
  using Mhf = cfm::MhfCreationMode;
  ExpectNumbers<Mhf>({{Mhf::None, 1}, {Mhf::Default, 2}, {Mhf::Explicit, 3}, {Mhf::Defer, 4}});
  using Ccm = cfm::CcmInterval;
  ExpectNumbers<Ccm>({{Ccm::Invalid, 0},
                      {Ccm::Interval300Hz, 1},
                      {Ccm::Interval10ms, 2},
                      {Ccm::Interval100ms, 3},
                      {Ccm::Interval1s, 4},
                      {Ccm::Interval10s, 5},
                      {Ccm::Interval1min, 6},
                      {Ccm::Interval10min, 7}});
  using Direction = cfm::MepDirection;
  ExpectNumbers<Direction>({{Direction::Down, 1}, {Direction::Up, 2}});
  using Alarm = cfm::Defects;
  ExpectNumbers<Alarm>({{Alarm::All, 1},
                        {Alarm::MacRemoteErrorXcon, 2},
                        {Alarm::RemoteErrorXcon, 3},
                        {Alarm::ErrorXcon, 4},
                        {Alarm::Xcon, 5},
                        {Alarm::None, 6}});
}

TEST(Enumerations, FaultActionsAreNumberedFromNone) {
  using Action = cfm::FaultAction;
  ExpectNumbers<Action>({{Action::None, 0}, {Action::Block, 1}, {Action::Shutdown, 2}});
}

}  // namespace
}  // namespace cfm_test
