/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * The interfaces through which the library hands the server's replies and events to the
 * application.
 *
 * The application implements those it cares about and registers one object of each kind
 * with cfm::Client. The library borrows the object: it must stay alive until it is
 * replaced, null is registered in its place, or the client is destroyed.
 *
 * Names and identifiers are those of the endpoint that a report is about: `md_name`, `ma_name` and
 * `mep_id` of the local MEP, `remote_mep_id` of the remote one as the local one sees it. A
 * `request_id` is the one that the application put in the trigger.
 *
 * A report that does not decode is handed on as far as it was read; what is missing is zero, false
 * or empty. MEP identifiers keep their low sixteen bits, and an address that is too short is filled
 * up with zeros. Only a linktrace event that does not decode is different: it ends the process.
 *
 * Every operation is called on the thread that services the middleware's handle. Strings
 * and records are valid during the call only; copy what is to be kept. An operation may
 * call any operation of the cfm::Client, also to register another handler in its own
 * place; it must not destroy the client, and it should not throw: an exception would pass
 * through the middleware.
 *
 * The order of the operations is part of the binary interface and does not change.
 */
#ifndef CFM_HANDLERS_H
#define CFM_HANDLERS_H

#include <cfm/delay_measurement.h>
#include <cfm/export.h>
#include <cfm/linktrace.h>
#include <cfm/mac.h>
#include <cfm/statistics.h>
#include <cfm/status.h>

#include <cstdint>
#include <string>

namespace cfm {

/**
 * Status of MEPs, progress of linktraces, results of probe sessions, and the server's
 * arrival.
 */
class CFM_API ReceivedStatusHandlerIntf {
 public:
  /** The status of a local MEP changed or was asked for. */
  virtual void OnStatusLocalMep(const std::string& md_name, const std::string& ma_name,
                                std::uint16_t mep_id, const local_mep_status& status) = 0;

  /** The status of a remote MEP, as seen by a local one, changed or was asked for. */
  virtual void OnStatusRemoteMep(const std::string& md_name, const std::string& ma_name,
                                 std::uint16_t mep_id, std::uint16_t remote_mep_id,
                                 const remote_mep_status& status) = 0;

  /** A local MEP no longer exists in the server. */
  virtual void OnRemovedLocalMep(const std::string& md_name, const std::string& ma_name,
                                 std::uint16_t mep_id) = 0;

  /** A local MEP no longer tracks this remote MEP. */
  virtual void OnRemovedRemoteMep(const std::string& md_name, const std::string& ma_name,
                                  std::uint16_t mep_id, std::uint16_t remote_mep_id) = 0;

  /** As ReceivedLinktraceHandlerIntf::OnMepLinktraceStarted(); called before that one. */
  virtual void OnMepLinktraceStarted(const std::string& md_name, const std::string& ma_name,
                                     std::uint16_t mep_id, std::uint32_t transaction_id,
                                     st_mac target_mac, std::uint16_t remote_mep_id,
                                     bool has_started_value, std::uint32_t started_value) = 0;

  /** As ReceivedLinktraceHandlerIntf::OnMepLinktraceEnded(); called before that one. */
  virtual void OnMepLinktraceEnded(const std::string& md_name, const std::string& ma_name,
                                   std::uint16_t mep_id, std::uint32_t transaction_id) = 0;

  /** As ReceivedLinktraceHandlerIntf::OnMepLinktraceReplyRx(); called before that one. */
  virtual void OnMepLinktraceReplyRx(const std::string& md_name, const std::string& ma_name,
                                     std::uint16_t mep_id, const LinktraceReplyEntry& reply) = 0;

  /** A delay-measurement session of a probe ended. */
  virtual void OnDelayMeasurementSessionEnded(const DelayMeasurementSessionResult& result) = 0;

  /**
   * The server appeared and was asked for its configuration. Client and server are in step
   * only once its answer has come; until then configuration updates are held back.
   */
  virtual void OnServerFound() = 0;

  virtual ~ReceivedStatusHandlerIntf() = default;
};

/**
 * Statistics. One reply is delivered as one call per local MEP, then one per remote MEP,
 * then OnStatsReply().
 */
class CFM_API ReceivedStatisticsHandlerIntf {
 public:
  /** The statistics of one local MEP. */
  virtual void OnStatsReplyLocalMep(const std::string& md_name, const std::string& ma_name,
                                    std::uint16_t mep_id, const local_mep_stats& stats) = 0;

  /** The statistics of one remote MEP as one local MEP sees it. */
  virtual void OnStatsReplyRemoteMep(const std::string& md_name, const std::string& ma_name,
                                     std::uint16_t mep_id, std::uint16_t remote_mep_id,
                                     const remote_mep_stats& stats) = 0;

  /** The reply is complete. */
  virtual void OnStatsReply() = 0;

  virtual ~ReceivedStatisticsHandlerIntf() = default;
};

/** Progress, results and refusals of linktraces. */
class CFM_API ReceivedLinktraceHandlerIntf {
 public:
  /**
   * The server sent an LTM.
   *
   * @param md_name            maintenance domain of the local MEP
   * @param ma_name            maintenance association of the local MEP
   * @param mep_id             local MEP that sent the LTM
   * @param transaction_id     the LTM's transaction identifier; the replies and the end of
   *                           this linktrace carry it
   * @param target_mac         address of the remote MEP, as the server resolved it
   * @param remote_mep_id      remote MEP that the LTM is for
   * @param has_started_value  whether the server sent @p started_value
   * @param started_value      the server's meaning; 0 when it sent none
   */
  virtual void OnMepLinktraceStarted(const std::string& md_name, const std::string& ma_name,
                                     std::uint16_t mep_id, std::uint32_t transaction_id,
                                     st_mac target_mac, std::uint16_t remote_mep_id,
                                     bool has_started_value, std::uint32_t started_value) = 0;

  /** The server awaits no more replies to this linktrace. */
  virtual void OnMepLinktraceEnded(const std::string& md_name, const std::string& ma_name,
                                   std::uint16_t mep_id, std::uint32_t transaction_id) = 0;

  /** An LTR was received. @p reply lives until the call returns and cannot be copied. */
  virtual void OnMepLinktraceReplyRx(const std::string& md_name, const std::string& ma_name,
                                     std::uint16_t mep_id, const LinktraceReplyEntry& reply) = 0;

  /** The server refused a linktrace. */
  virtual void OnLinktraceTriggerError(const linktrace_trigger_error& error) = 0;

  virtual ~ReceivedLinktraceHandlerIntf() = default;
};

/** Progress, results and refusals of loopback tests. */
class CFM_API ReceivedLoopbackHandlerIntf {
 public:
  /** The server refused a test. @p error_code is in the server's own numbering. */
  virtual void OnLoopbackTriggerError(std::uint32_t request_id, std::uint32_t error_code,
                                      const std::string& md_name, const std::string& ma_name,
                                      std::uint16_t mep_id, std::uint16_t remote_mep_id) = 0;

  /** A test began. @p target_mac is the remote MEP's address as the server resolved it. */
  virtual void OnLoopbackStarted(std::uint32_t request_id, const st_mac& target_mac) = 0;

  /** An LBR was received from @p mac. */
  virtual void OnLoopbackReplyRx(std::uint32_t request_id, std::uint32_t transaction_id,
                                 const st_mac& mac) = 0;

  /**
   * A test ended; the counts are the server's final ones.
   *
   * @param request_id             that of the trigger
   * @param expected_replies       LBMs that were to be answered
   * @param in_order_replies       LBRs received in sequence
   * @param out_of_order_replies   LBRs received out of sequence
   * @param wrong_payload_replies  LBRs whose content differs from the LBM's
   */
  virtual void OnLoopbackEnded(std::uint32_t request_id, std::uint64_t expected_replies,
                               std::uint64_t in_order_replies, std::uint64_t out_of_order_replies,
                               std::uint64_t wrong_payload_replies) = 0;

  virtual ~ReceivedLoopbackHandlerIntf() = default;
};

/** Progress, results and refusals of on-demand delay measurements. */
class CFM_API ReceivedDelayMeasurementHandlerIntf {
 public:
  /** The server refused a measurement. @p error_code is in the server's own numbering. */
  virtual void OnDelayMeasurementTriggerError(std::uint32_t request_id, std::uint32_t error_code,
                                              const std::string& md_name,
                                              const std::string& ma_name, std::uint16_t mep_id,
                                              std::uint16_t remote_mep_id) = 0;

  /** A measurement began. @p target_mac is the remote MEP's address. */
  virtual void OnDelayMeasurementStarted(std::uint32_t request_id, const st_mac& target_mac) = 0;

  /** A DMR was received from @p mac. */
  virtual void OnDelayMeasurementReplyRx(std::uint32_t request_id, const st_mac& mac) = 0;

  /**
   * A measurement ended.
   *
   * @param request_id   that of the trigger
   * @param rx_count     DMRs received
   * @param tx_count     DMMs sent
   * @param result_1     the first of six results, whose meaning and units are the server's
   * @param result_2     the second one
   * @param result_3     the third one
   * @param result_4     the fourth one
   * @param result_5     the fifth one
   * @param result_6     the sixth one
   * @param extra_count  a further count of the server's meaning
   */
  virtual void OnDelayMeasurementEnded(std::uint32_t request_id, std::uint64_t rx_count,
                                       std::uint64_t tx_count, double result_1, double result_2,
                                       double result_3, double result_4, double result_5,
                                       double result_6, std::uint64_t extra_count) = 0;

  virtual ~ReceivedDelayMeasurementHandlerIntf() = default;
};

}  // namespace cfm

#endif
