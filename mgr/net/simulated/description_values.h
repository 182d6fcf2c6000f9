/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * Kinds of values that only descriptions of networks have. Each notes a mistake and returns nothing
 * when the value is not what it should be.
 */
#ifndef CFM_MGR_NET_SIMULATED_DESCRIPTION_VALUES_H
#define CFM_MGR_NET_SIMULATED_DESCRIPTION_VALUES_H

#include <optional>
#include <string>

#include "core/value.h"
#include "engine/frame.h"
#include "engine/time.h"
#include "net/simulated/description.h"

namespace cfm_mgr::net {

/** A time such as 250us, 1.5ms or 30s, up to a day. */
std::optional<engine::Time> ReadTime(const cfm_agent::Value& value);

/** A share such as 0.5%, as a number from 0 to 1. */
std::optional<double> ReadShare(const cfm_agent::Value& value);

/** The address of a port: an individual one, such as 02:00:5e:00:00:01. */
std::optional<engine::Mac> ReadMac(const cfm_agent::Value& value);

/** The name of a bridge or port: letters, digits, - and _, at most 15. */
std::optional<std::string> ReadName(const cfm_agent::Value& value);

/** Names such as metro.trunk. */
std::optional<PortName> ReadPortName(const cfm_agent::Value& value);

}  // namespace cfm_mgr::net

#endif
