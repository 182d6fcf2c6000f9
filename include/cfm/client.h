/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * The client library of the CFM manager: all that an application includes.
 *
 * An application owns the Connectivity Fault Management configuration of a network element
 * (IEEE 802.1ag, ITU-T Y.1731); a server process, "cfm-mgr", runs it. The application
 *
 * 1. implements the handler interfaces it cares about (cfm/handlers.h),
 * 2. makes one cfm::Client from its middleware handle and registers its handlers,
 * 3. hands in its whole configuration with UpdateConfig() and UpdateConfigProbe(),
 *    **before** it first services the handle,
 * 4. services the handle, and hands in the whole configuration again when it changes.
 *
 * Step 3 matters. Once client and server are in step, whatever the server holds and the
 * application has not handed in is deleted from the server. A client that gets in step
 * before it was given a configuration deletes everything.
 *
 * Threads. The library creates no thread and takes no lock. The middleware calls back on the
 * thread that services the handle; the application must not let a call of its own overlap
 * such a callback. Calling from that same thread, also from inside a handler, is safe; only
 * destroying the client from inside a handler is not.
 *
 * Errors. Requests are sent and forgotten: no call reports failure, nothing is retried, and the
 * library throws nothing of its own; only a failed allocation passes through. What the server makes
 * of the configuration shows in the status it reports. A null handle, a host that cannot set up
 * logging, and a linktrace event that cannot be decoded end the process with exit status 1 after a
 * fault report.
 */
#ifndef CFM_CLIENT_H
#define CFM_CLIENT_H

#include <cfm/delay_measurement.h>
#include <cfm/export.h>
#include <cfm/handlers.h>
#include <cfm/hierarchy.h>
#include <cfm/linktrace.h>
#include <cfm/loopback.h>
#include <cfm/mac.h>
#include <cfm/probe.h>
#include <cfm/statistics.h>
#include <cfm/status.h>
#include <vorx/vorx.h>

#include <cstdint>
#include <memory>

namespace cfm {

class ClientImpl;

/**
 * A client of the CFM manager. The order of the virtual operations is part of the binary
 * interface and does not change.
 */
class CFM_API Client {
 public:
  /**
   * Sets up logging, watches for the server and registers for all it sends. Calls no handler.
   *
   * A host that cannot set up logging ends the process with exit status 1. A failed allocation
   * passes through; the host may then still hold the subscription, and must not service the handle
   * any more.
   *
   * @param token  the host's middleware handle. Borrowed: it must outlive the client. Null ends
   *               the process with exit status 1.
   */
  explicit Client(vorx_t* token);

  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  /** @name Handlers
   * Each replaces the handler of its kind; null leaves that kind without one. The handler is
   * borrowed until it is replaced or the client is destroyed.
   * @{ */
  /** Status and removal of MEPs, progress of linktraces, ends of sessions, the server's arrival. */
  virtual void RegisterStatusHandler(ReceivedStatusHandlerIntf* handler);
  /** Statistics. */
  virtual void RegisterStatisticsHandler(ReceivedStatisticsHandlerIntf* handler);
  /** Linktraces. */
  virtual void RegisterLinktraceHandler(ReceivedLinktraceHandlerIntf* handler);
  /** Loopback tests. */
  virtual void RegisterLoopbackHandler(ReceivedLoopbackHandlerIntf* handler);
  /** On-demand delay measurements. */
  virtual void RegisterDelayMeasurementHandler(ReceivedDelayMeasurementHandlerIntf* handler);
  /** @} */

  /** Withdraws from the middleware. Sends nothing: the server keeps its configuration. */
  virtual ~Client();

  /**
   * Hands in the whole configuration of domains, associations and endpoints.
   *
   * Sends the requests that turn what the server is believed to hold into @p config: first all
   * deletes, then all creates, then an update for everything that stays. While the server is
   * absent or not in step, the configuration waits and is sent when it is; of several, the last.
   * The configuration is logged too, as one record that ends at the first zero byte of a name.
   *
   * @param config  copied before the call returns
   */
  virtual void UpdateConfig(const hierarchy& config);

  /**
   * Hands in the whole configuration of delay-measurement probes. As UpdateConfig(), but only
   * what changed is sent, and creates come before deletes.
   *
   * @param config  copied before the call returns
   */
  virtual void UpdateConfigProbe(const probe& config);

  /**
   * Asks for the statistics of all MEPs. They come to the statistics handler. Does nothing while
   * the server is absent.
   */
  virtual void RequestStatistics() const;

  /**
   * Clears statistics in the server. There is no answer; while the server is absent the request
   * is lost.
   *
   * @param md_name  only MEPs of this domain; null for all
   * @param ma_name  only MEPs of associations of this name; null for all
   * @param mep_id   only MEPs of this identifier; 0 for all
   */
  virtual void ClearStatistics(const char* md_name, const char* ma_name,
                               std::uint16_t mep_id) const;

  /** @name On-demand tests
   * Each asks the server to run one test and returns at once; progress, results or a refusal
   * come to the handler of its kind. While the server is absent the request is lost, and
   * nothing comes back.
   * @{ */
  /** Sends one LTM; reports come to the status handler and to the linktrace handler. */
  virtual void LinktraceTrigger(const linktrace_trigger& trigger);
  /** Sends LBMs; reports come to the loopback handler. */
  virtual void LoopbackTrigger(const loopback_trigger& trigger);
  /** Sends DMMs; reports come to the delay-measurement handler. */
  virtual void DelayMeasurementTrigger(const delay_measurement_trigger& trigger);
  /** @} */

 private:
  std::unique_ptr<ClientImpl> impl;
};

}  // namespace cfm

#endif
