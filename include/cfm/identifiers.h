/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * The names and numbers that client and server agree on. Each is a pointer to a constant that
 * lives as long as the program; a descriptor's name pointer equals the pointer of the block or
 * group it belongs to, so that names may be compared by address.
 *
 * Numbers never change and are never used again.
 */
#ifndef CFM_IDENTIFIERS_H
#define CFM_IDENTIFIERS_H

#include <cfm/export.h>
#include <vorx/vorx.h>

extern "C" {

/** @name Names
 * @{ */
extern CFM_API const char* const CFM_MGR_PROCESS;         ///< Process name of the server.
extern CFM_API const char* const CFM_MGR_SIGBLOCK;        ///< The server's own signals.
extern CFM_API const char* const CFM_MGR_C2S_SIGBLOCK;    ///< Signals from client to server.
extern CFM_API const char* const CFM_MGR_S2C_SIGBLOCK;    ///< Signals from server to client.
extern CFM_API const char* const CFM_MGR_SRV_EVENTGROUP;  ///< Events of the server.
/** @} */

/** @name Client to server
 * Each with its number and the message it carries.
 * @{ */
/** 1: `OpCreateMaintenanceDomain` */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_MD_CREATE;
/** 2: `OpUpdateMaintenanceDomain` */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_MD_UPDATE;
/** 3: `OpDeleteMaintenanceDomain` */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_MD_DELETE;
/** 4: `OpCreateMaintenanceAssociation` */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_MA_CREATE;
/** 5: `OpUpdateMaintenanceAssociation` */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_MA_UPDATE;
/** 6: `OpDeleteMaintenanceAssociation` */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_MA_DELETE;
/** 7: `OpCreateMaintenanceEndpoint` */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_MEP_CREATE;
/** 8: `OpUpdateMaintenanceEndpoint` */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_MEP_UPDATE;
/** 9: `OpDeleteMaintenanceEndpoint` */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_MEP_DELETE;
/** 10: no payload */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_CACHE_GET;
/** 11: no payload */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_STATS_GET;
/** 12: `OpStatsClear` */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_STATS_CLEAR;
/** 13: no payload */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_STATUS_GET_ALL;
/** 14: `OpLinktraceTriggerMsg` */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_LT_TRIGGER;
/** 15: `OpLoopbackTriggerMsg` */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_LB_TRIGGER;
/** 16: `OpDelayMeasurementTriggerMsg` */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_DM_TRIGGER;
/** 17: `OpCreateDelayMeasurementProbe` */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_DM_PROBE_CREATE;
/** 18: `OpDeleteDelayMeasurementProbe` */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_DM_PROBE_DELETE;
/** 19: `OpCreateDelayMeasurementSession` */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_DM_SESSION_CREATE;
/** 20: `OpDeleteDelayMeasurementSession` */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_DM_SESSION_DELETE;
/** @} */

/** @name Server to client
 * Each with its number and the message it carries.
 * @{ */
/** 1: `OpCacheSync` */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_S2C_SIG_CACHE_REPLY;
/** 2: `OpReplyAllStats` */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_S2C_SIG_STATS_REPLY;
/** 3: `OpLinktraceTriggerError` */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_S2C_SIG_LT_TRIGGER_ERROR;
/** 4: `OpLoopbackTriggerError` */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_S2C_SIG_LB_TRIGGER_ERROR;
/** 5: `OpDelayMeasurementTriggerError` */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_S2C_SIG_DM_TRIGGER_ERROR;
/** @} */

/** The server's own scheduling tick, 1 in its own block. Clients neither send nor receive it. */
extern CFM_API const vorx_sig_descriptor* const CFM_MGR_SIG_TICK_SCHED;

/** @name Server events
 * Each with its number and the message it carries.
 * @{ */
/** 1: `StatusLocalMaintenanceEndpoint` */
extern CFM_API const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP;
/** 2: `StatusRemoteMaintenanceEndpoint` */
extern CFM_API const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP;
/** 3: `RemovedLocalMaintenanceEndpoint` */
extern CFM_API const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_REMOVED_LOCAL_MEP;
/** 4: `RemovedRemoteMaintenanceEndpoint` */
extern CFM_API const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_REMOVED_REMOTE_MEP;
/** 5: `OpLinktraceStarted` */
extern CFM_API const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_LINKTRACE_STARTED;
/** 6: `OpLinktraceReplyRx` */
extern CFM_API const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_LINKTRACE_REPLY_RX;
/** 7: `OpLinktraceEnded` */
extern CFM_API const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_LINKTRACE_ENDED;
/** 8: `OpLoopbackStarted` */
extern CFM_API const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_LOOPBACK_STARTED;
/** 9: `OpLoopbackReplyRx` */
extern CFM_API const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_LOOPBACK_REPLY_RX;
/** 10: `OpLoopbackEnded` */
extern CFM_API const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_LOOPBACK_ENDED;
/** 11: `OpDelayMeasurementStarted` */
extern CFM_API const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_STARTED;
/** 12: `OpDelayMeasurementReplyRx` */
extern CFM_API const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_REPLY_RX;
/** 13: `OpDelayMeasurementEnded` */
extern CFM_API const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_ENDED;
/** 14: `OpDelayMeasurementSessionEnded` */
extern CFM_API const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_SESSION_ENDED;
/** @} */

}  // extern "C"

#endif
