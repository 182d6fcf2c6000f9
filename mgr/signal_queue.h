/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_SIGNAL_QUEUE_H
#define CFM_MGR_SIGNAL_QUEUE_H

namespace cfm_mgr {

/**
 * The signals that steer this process, as something to wait on: SIGTERM, SIGINT, SIGHUP, SIGUSR1
 * and SIGUSR2. From construction on they no longer interrupt it.
 */
class SignalQueue {
 public:
  /** @throws std::system_error */
  SignalQueue();
  ~SignalQueue();
  SignalQueue(const SignalQueue&) = delete;
  SignalQueue& operator=(const SignalQueue&) = delete;

  /** Readable while a signal waits. */
  int fd() const { return fd_; }

  /** The number of the next signal, or 0. */
  int Take() const;

 private:
  int fd_;
};

}  // namespace cfm_mgr

#endif
