/* SPDX-License-Identifier: Apache-2.0 */
// What happens to an engine, out of a fuzzer's input.
#ifndef CFM_FUZZ_ENGINE_INPUT_H
#define CFM_FUZZ_ENGINE_INPUT_H

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "byte_reader.h"
#include "engine/engine.h"
#include "engine/frame.h"
#include "model.h"

namespace cfm_fuzz {

/// The ports that there may be.
inline constexpr std::array<cfm_mgr::engine::PortId, 2> kPorts = {1, 2};

/// The other port.
constexpr cfm_mgr::engine::PortId Across(cfm_mgr::engine::PortId port) { return port == 1 ? 2 : 1; }

cfm_mgr::engine::Mac MacOfPort(cfm_mgr::engine::PortId port);

/// @name Configuration
/// @{
cfm_mgr::MaKey MakeKey(ByteReader& input);
cfm_mgr::MepKey MakeMepKey(ByteReader& input);
cfm_mgr::DomainSettings MakeDomain(ByteReader& input);
cfm_mgr::Association MakeAssociation(ByteReader& input);
cfm_mgr::Probe MakeProbe(ByteReader& input);
std::uint32_t MakeMepId(ByteReader& input);
/// @}

/// @name What a run begins with: an association between the two ports
/// @{
cfm_mgr::MaKey FirstKey();
cfm_mgr::DomainSettings FirstDomain();
cfm_mgr::Association FirstAssociation();
/// @}

/// A frame around a PDU that is right but for its values; none when it cannot stand on a wire.
std::optional<cfm_mgr::engine::Frame> MakeFrame(ByteReader& input);
/// A frame around any octets.
std::optional<cfm_mgr::engine::Frame> MakeRawFrame(ByteReader& input);
/// A frame as it arrives on the other side of a link; none when it cannot be sent.
std::optional<cfm_mgr::engine::Frame> OverTheWire(const cfm_mgr::engine::Frame& frame);

}  // namespace cfm_fuzz

#endif
