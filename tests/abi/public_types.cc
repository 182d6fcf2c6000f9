// SPDX-License-Identifier: Apache-2.0
// Every type of the public headers, whole: the client library itself holds only what its own code
// needs of them, and of the handler interfaces not more than their names. Nothing calls these
// functions; a library of them is what the types of release 1.0 are compared with.
#include <cfm/client.h>
#include <cfm/identifiers.h>
#include <sepan/sepan.h>
#include <vorx/vorx.h>

extern "C" {

CFM_API void HandlerInterfaces(cfm::Client&, cfm::ReceivedStatusHandlerIntf&,
                               cfm::ReceivedStatisticsHandlerIntf&,
                               cfm::ReceivedLinktraceHandlerIntf&,
                               cfm::ReceivedLoopbackHandlerIntf&,
                               cfm::ReceivedDelayMeasurementHandlerIntf&) {}

CFM_API void HierarchyRecords(cfm::hierarchy&, cfm::hierarchy_md&, cfm::hierarchy_ma&,
                              cfm::hierarchy_mep&, cfm::st_maintenance_domain_cfg&,
                              cfm::st_maintenance_association_cfg&,
                              cfm::st_maintenance_endpoint_cfg&, cfm::st_ais_cfg&) {}

CFM_API void HierarchyEnumerations(cfm::MdNameFormat, cfm::MaNameFormat, cfm::SenderIdTlvContent,
                                   cfm::MhfCreationMode, cfm::CcmInterval, cfm::MepDirection,
                                   cfm::Defects, cfm::FaultAction) {}

CFM_API void ProbeRecords(cfm::probe&, cfm::probe_cfg&, cfm::session_cfg&,
                          cfm::DelayMeasurementSessionResult&) {}

CFM_API void TestRecords(cfm::linktrace_trigger&, cfm::linktrace_trigger_error&,
                         cfm::LinktraceReplyEntry&, cfm::LtrEgressIdentifier&, cfm::LtrReplyPort&,
                         cfm::loopback_trigger&, cfm::delay_measurement_trigger&) {}

CFM_API void ReportRecords(cfm::local_mep_status&, cfm::remote_mep_status&, cfm::local_mep_stats&,
                           cfm::remote_mep_stats&, cfm::st_mac&) {}

CFM_API void Messaging(decltype(&vorx_proc_subscribe), decltype(&vorx_proc_unsubscribe),
                       decltype(&vorx_trace_init), decltype(&vorx_sig_register_sized),
                       decltype(&vorx_sig_deregister), decltype(&vorx_event_register_sized),
                       decltype(&vorx_event_deregister), decltype(&vorx_sig_send),
                       decltype(&vorx_print_backtrace), decltype(&vorx_gen_fault)) {}

CFM_API void Interfaces(decltype(&sepan_to_ifindex), decltype(&sepan_to_intfname),
                        decltype(&sepan_from_ifindex)) {}

}  // extern "C"
