/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * Reads the description of a simulated network.
 */
#ifndef CFM_MGR_NET_SIMULATED_DESCRIPTION_READER_H
#define CFM_MGR_NET_SIMULATED_DESCRIPTION_READER_H

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "core/mistake.h"
#include "net/simulated/description.h"

namespace cfm_mgr::net {

/** The index of a network interface of this machine; 0 when there is none of this name. */
using IndexOfInterface = std::function<engine::PortId(const std::string& name)>;

/** A description, or else at least one mistake. */
struct DescriptionResult {
  std::optional<NetworkDescription> description;
  cfm_agent::Mistakes mistakes;
};

/** Reads the text of a description. Notes every mistake in it, in the order of the file. */
DescriptionResult ReadDescription(std::string_view text,
                                  const IndexOfInterface& index_of_interface);

/**
 * Reads the description in a file, with the interfaces of this machine.
 *
 * @throws std::runtime_error with every mistake on a line of its own, beginning with file and line
 */
NetworkDescription LoadDescription(const std::string& path);

}  // namespace cfm_mgr::net

#endif
