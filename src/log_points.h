/* SPDX-License-Identifier: Apache-2.0 */
// Every log record and fault of the library at a glance: function, line, level, text. Operators
// search for these, so they are an interface: a line number names its log point and is never
// given to another one.
#ifndef CFM_SRC_LOG_POINTS_H
#define CFM_SRC_LOG_POINTS_H

#include "log.h"

// clang-format off

namespace cfm::log_point {

// Lifecycle and presence
inline constexpr LogPoint kInitialized{"ClientImpl", 31, kProgressLevel, "CFM Manager client was initialized"};
inline constexpr LogPoint kFinished{"~ClientImpl", 44, kProgressLevel, "CFM Manager client was finished"};
inline constexpr LogPoint kServerFound{"ServerFound", 75, kProgressLevel, "CFM manager server found"};
inline constexpr LogPoint kServerLost{"ServerLost", 86, kProgressLevel, "CFM manager server lost"};

// Configuration
inline constexpr LogPoint kConfigDeferred{"UpdateConfig", 100, kProgressLevel, "Server unavailable, request will be handled later: pid %d sync %d"};
inline constexpr LogPoint kProbesDeferred{"UpdateConfigProbe", 113, kProgressLevel, "Server unavailable, request will be handled later: pid %d sync %d"};
inline constexpr LogPoint kApplyingConfig{"Apply", 340, kProgressLevel, "Applying CFM config..."};
inline constexpr LogPoint kConfigDump{"Apply", 341, kProgressLevel, "%s"};
inline constexpr LogPoint kApplyingProbes{"ApplyDelayMeasurementProbe", 620, kProgressLevel, "Applying CFM Delay Measurement Probes config..."};
inline constexpr LogPoint kProbesDump{"ApplyDelayMeasurementProbe", 621, kProgressLevel, "%s"};

// Cache synchronisation
inline constexpr LogPoint kCacheReply{"ReqCacheReply", 710, kProgressLevel, "Cache reply received"};
inline constexpr LogPoint kCacheApply{"ReqCacheReply", 719, kProgressLevel, "Cache sync apply: pending requests will be processed, if any"};
inline constexpr LogPoint kConfigBothEmpty{"ReqCacheReplyHierarchy", 790, kProgressLevel, "Client and server caches are empty, nothing to do"};
inline constexpr LogPoint kConfigAppDied{"ReqCacheReplyHierarchy", 794, kProgressLevel, "App died, will use last cached status from server"};
inline constexpr LogPoint kConfigServerDied{"ReqCacheReplyHierarchy", 799, kProgressLevel, "Server died, will re-apply using last cached status of client"};
inline constexpr LogPoint kConfigBothExist{"ReqCacheReplyHierarchy", 812, kProgressLevel, "App and server have an existing configuration, assume that from the server"};
inline constexpr LogPoint kProbesBothEmpty{"ReqCacheReplyProbe", 860, kProgressLevel, "Client and server caches are empty, nothing to do"};
inline constexpr LogPoint kProbesAppDied{"ReqCacheReplyProbe", 864, kProgressLevel, "App died, will use last cached status from server"};
inline constexpr LogPoint kProbesBothExist{"ReqCacheReplyProbe", 869, kProgressLevel, "App and server have an existing configuration, assume that from the server"};

// Statistics
inline constexpr LogPoint kStatisticsRequested{"RequestStatistics", 124, kProgressLevel, "Statistics for local and remote MEPs were requested to server"};
inline constexpr LogPoint kLocalMepStats{"ReqStatsReply", 930, kDumpLevel,
    "\nLocal MEP statistics: MD %s MA %s LMEP %d\n"
    "   CCM RX sequence number errors: %llu\n"
    "   CCM TX total count: %llu\n"
    "   CCM TX current sequence number: %d\n"};
inline constexpr LogPoint kRemoteMepStats{"ReqStatsReply", 947, kDumpLevel,
    "\nRemote MEP statistics: MD %s MA %s LMEP %d RMEP %d\n"
    "   Last CCM sequence number: %d\n"};

// Status and removal
inline constexpr LogPoint kStatusLocalMep{"HandleStatusLocalMep", 1050, kDumpLevel,
    "\nLOCAL MEP status:\n"
    "   MD %s MA %s LMEP %d\n"
    "   MAC %02X:%02X:%02X:%02X:%02X:%02X\n"
    "   Local RDI %d Local PortState %d Local IntfStatus %d\n"
    "   Local BlockState %d Local ShutdownState %d\n"
    "   Highest defect prio present: %d\n"
    "   Defects:\n"
    "     MAC status:       %d\n"
    "     Missing CCMs:     %d\n"
    "     CCM with errors:  %d\n"
    "     Cross-connection: %d\n"
    "     RDI:              %d\n"
    "     AIS:              %d\n"};
inline constexpr LogPoint kStatusRemoteMep{"HandleStatusRemoteMep", 1086, kDumpLevel,
    "\nRemote MEP status:\n"
    "   MD %s MA %s LMEP %d RMEP %d\n"
    "   MAC %02X:%02X:%02X:%02X:%02X:%02X\n"
    "   FSM state %d\n"
    "   RDI %d PortState %d\n"
    "   IntfStatus %d Sender ID %s Last Change Uptime: %llu\n"};
inline constexpr LogPoint kRemovedLocalMep{"HandleRemovedLocalMep", 1104, kDumpLevel, "\nLocal MEP removed: MD %s MA %s LMEP %d\n"};
inline constexpr LogPoint kRemovedRemoteMep{"HandleRemovedRemoteMep", 1122, kDumpLevel, "\nRemote MEP removed: MD %s MA %s LMEP %d RMEP %d\n"};

// Linktrace
inline constexpr LogPoint kLinktracePreparing{"LinktraceTrigger", 147, kProgressLevel, "LinktraceTrigger implementation. Lets prepare the protobuf msg."};
inline constexpr LogPoint kLinktraceSerializing{"LinktraceTrigger", 159, kProgressLevel, "Serializing to string."};
inline constexpr LogPoint kLinktraceSending{"LinktraceTrigger", 161, kProgressLevel, "Sending signal to server."};
inline constexpr LogPoint kLinktraceSent{"LinktraceTrigger", 164, kProgressLevel, "Signal sent."};
inline constexpr LogPoint kLinktraceStarted{"HandleMepLinktraceStarted", 1148, kDumpLevel, "\nStarted linktrace transaction %u: MD %s MA %s LMEP %d Remote MAC %s RMEP %d"};
inline constexpr LogPoint kLinktraceEnded{"HandleMepLinktraceEnded", 1172, kDumpLevel, "\nEnded linktrace transaction %u: MD %s MA %s LMEP %d"};
inline constexpr LogPoint kLinktraceReply{"HandleMepLinktraceReplyRx", 1199, kDumpLevel, "\nLinktrace reply for MD %s MA %s LMEP %d: %s"};
inline constexpr LogPoint kLinktraceTriggerError{"HandleLinktraceTriggerError", 1216, kProgressLevel, "Linktrace trigger error received"};

// Loopback
inline constexpr LogPoint kLoopbackSerializing{"LoopbackTrigger", 178, kProgressLevel, "Serializing to string."};
inline constexpr LogPoint kLoopbackSending{"LoopbackTrigger", 180, kProgressLevel, "Sending signal to server."};
inline constexpr LogPoint kLoopbackSent{"LoopbackTrigger", 183, kProgressLevel, "Signal sent."};
inline constexpr LogPoint kLoopbackTriggerError{"HandleLoopbackTriggerError", 1246, kProgressLevel, "Loopback trigger error received: %u"};
inline constexpr LogPoint kLoopbackStarted{"HandleLoopbackStarted", 1268, kProgressLevel, "Loopback started: target MAC is %s."};
inline constexpr LogPoint kLoopbackReply{"HandleLoopbackReplyRx", 1287, kProgressLevel, "Loopback reply received: transaction %u, MAC %s"};
inline constexpr LogPoint kLoopbackEnded{"HandleLoopbackEnded", 1304, kProgressLevel, "Loopback ended received: expected %llu replies. Received: %llu in-order, %llu out-of-order, %llu with wrong payload."};

// Delay measurement
inline constexpr LogPoint kDelaySerializing{"DelayMeasurementTrigger", 199, kProgressLevel, "Serializing to string."};
inline constexpr LogPoint kDelaySending{"DelayMeasurementTrigger", 201, kProgressLevel, "Sending signal to server."};
inline constexpr LogPoint kDelaySent{"DelayMeasurementTrigger", 204, kProgressLevel, "Signal sent."};
inline constexpr LogPoint kDelayTriggerError{"HandleDelayMeasurementTriggerError", 1321, kProgressLevel, "Delay Measurement trigger error received: %u"};
inline constexpr LogPoint kDelayStarted{"HandleDelayMeasurementStarted", 1343, kProgressLevel, "Delay Measurement started: target MAC is %s."};
inline constexpr LogPoint kDelayReply{"HandleDelayMeasurementReplyRx", 1362, kProgressLevel, "Delay Measurement reply received: MAC %s"};
inline constexpr LogPoint kDelayEnded{"HandleDelayMeasurementEnded", 1377, kProgressLevel, "Delay Measurement ended: rx: %llu, tx: %llu."};

}  // namespace cfm::log_point

namespace cfm::fault_point {

inline constexpr FaultPoint kInvalidToken{"ClientImpl", 25, "CFM manager client: invalid vorx token"};
inline constexpr FaultPoint kNoLogCategory{"ClientImpl", 30, ""};
inline constexpr FaultPoint kLinktraceStarted{"HandleMepLinktraceStarted", 1138, "Can't deserialize OpLinktraceStarted message"};
inline constexpr FaultPoint kLinktraceEnded{"HandleMepLinktraceEnded", 1167, "Can't deserialize OpLinktraceEnded message"};
inline constexpr FaultPoint kLinktraceReply{"HandleMepLinktraceReplyRx", 1190, "Can't deserialize OpLinktraceReplyRx message"};

}  // namespace cfm::fault_point

// clang-format on

#endif
