/* SPDX-License-Identifier: Apache-2.0 */
// The signals and events by name, and what they carry.
#ifndef CFM_TESTS_LIBRARY_DESCRIPTORS_H
#define CFM_TESTS_LIBRARY_DESCRIPTORS_H

#include <vorx/vorx.h>

#include <string>
#include <vector>

namespace cfm_test {

/// Name of a signal or event without its common prefix, such as MD_CREATE or STATUS_LOCAL_MEP.
/// Descriptors are told apart by address.
std::string NameOf(const vorx_sig_descriptor* signal);
std::string NameOf(const vorx_event_descriptor* event);

/// Name of the message that a signal or event carries; empty when it carries none.
std::string MessageOf(const std::string& name);

/// All twenty client-to-server, five server-to-client signals and fourteen events, by number.
const std::vector<const vorx_sig_descriptor*>& ClientSignals();
const std::vector<const vorx_sig_descriptor*>& ServerSignals();
const std::vector<const vorx_event_descriptor*>& ServerEvents();

}  // namespace cfm_test

#endif
