/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * How a process joins the development host's messaging, and services it.
 *
 * The development host carries vorx over a D-Bus message bus. A handle is one
 * connection to the bus under one process name; its process identifier comes from
 * the number that the bus gave the connection, so that a restarted process always
 * comes back under a new one. One process may open several handles under
 * different names.
 *
 * First steps: fill a vorx_options_t, call vorx_open(), register and subscribe,
 * then call vorx_run(); or fit vorx_fd(), vorx_poll_events(), vorx_poll_timeout()
 * and vorx_dispatch() into an event loop of your own.
 *
 * Threads. A handle belongs to one thread at a time: open, use, service and close
 * it from there. Callbacks run inside vorx_dispatch() or vorx_run() and nowhere
 * else. A callback may send, publish, register, deregister, subscribe, unsubscribe
 * and stop; it must not close the handle (which is refused), nor dispatch it again
 * (-EBUSY).
 *
 * Sending. vorx_sig_send() and vorx_event_publish() put the message into the
 * handle's outgoing queue and write as much of it as the bus takes at once; the
 * rest goes out while the handle is serviced. While that queue is full they wait,
 * and read incoming messages ahead meanwhile (up to 64 MiB) without delivering
 * them, so that two processes that flood each other both get ahead. When the queue
 * has not moved for options.send_timeout_ms they give up with -ETIMEDOUT, and
 * until it moves again further calls return -ETIMEDOUT at once. A message that was
 * refused is not sent later. One message carries at most 64 MiB (else -EMSGSIZE);
 * a bus whose max_message_size is less hangs up on a process that exceeds it.
 * vorx_sig_send() returns -ESRCH for a process that does not exist, as far as that
 * is known yet.
 *
 * Loss. What this process cannot deliver is said on standard error: signals that
 * the bus returns (their receiver has gone, or its queue at the bus is full),
 * signals that nothing here is registered for, and messages that were lost on the
 * way here. The latter are noticed when the next signal of that process, or its
 * next event of that descriptor, arrives. The bus makes a fast sender wait for a
 * slow receiver as long as its limit max_incoming_bytes does not exceed its
 * max_outgoing_bytes divided by the number of processes that send to one receiver;
 * with other limits it drops, and this is how one learns of it.
 *
 * All functions that return an int return 0 (or the number stated) on success
 * and a negative errno value on failure; vorx_last_error() says it in words.
 * Messages of this library on standard error begin with "vorx" and the name of
 * the process; those that would repeat come the 1st, 10th, 100th, ... time.
 */
#ifndef VORX_HOST_H
#define VORX_HOST_H

// C programs include this too. NOLINTBEGIN(modernize-deprecated-headers,modernize-use-using)
#include <stddef.h>
#include <stdint.h>
#include <vorx/vorx.h>

#ifdef __cplusplus
extern "C" {
#endif

/** How to open a handle. Zero-initialise it, then set what differs. */
typedef struct {
  /**
   * Name under which other processes find this one; required. Up to 200
   * letters, digits, '-' and '_', the first one no digit.
   */
  const char* name;
  /**
   * Address of the bus, as D-Bus writes addresses. Null takes the environment's
   * VORX_BUS_ADDRESS, and without that DBUS_SESSION_BUS_ADDRESS.
   */
  const char* bus_address;
  /**
   * zlog configuration file that vorx_trace_init() reads. Null takes the
   * environment's VORX_LOG_CONFIG, and without that the file installed with the
   * development host.
   */
  const char* log_config;
  /** How long a send waits for a full outgoing queue to move, in milliseconds. 0 takes 10000. */
  unsigned int send_timeout_ms;
  /**
   * How many bytes the outgoing queue takes. 0 takes 8 MiB. A larger message still
   * passes, alone.
   */
  size_t max_queued_bytes;
} vorx_options_t;

/**
 * Joins the bus under the options' name.
 *
 * @param options  read during the call only
 * @param handle   receives the handle, or null on failure
 * @return 0; -EINVAL for a missing or unusable name or address; -EEXIST when
 *         another process holds the name, and still holds it after three seconds,
 *         which the bus may need to notice that it was killed; another negative error number when
 * the bus cannot be reached
 */
int vorx_open(const vorx_options_t* options, vorx_t** handle);

/**
 * Sends what is still queued, for as long as the bus takes it within
 * options.send_timeout_ms, leaves the bus and frees the handle. Registrations and
 * subscriptions that are still open end with it; to end one of them again later
 * does no harm. Null is left alone.
 */
void vorx_close(vorx_t* handle);

/** The identifier under which other processes reach this one. */
vorx_pid_t vorx_self(const vorx_t* handle);

/** Process name of the handle; lives as long as the handle. */
const char* vorx_name(const vorx_t* handle);

/**
 * The last failure of a call that took no handle or whose handle does not exist
 * yet (vorx_open()), or of this handle, in words. Lives until the next call.
 *
 * @param handle  the handle, or null for vorx_open() on this thread
 */
const char* vorx_last_error(const vorx_t* handle);

/**
 * The file descriptor to wait on. It stays the same, and open, until vorx_close().
 * Ask for the events and the time-out anew before every wait: both change as
 * messages come and go.
 */
int vorx_fd(const vorx_t* handle);

/** The poll(2) events to wait for on vorx_fd(), or a negative error number. */
int vorx_poll_events(vorx_t* handle);

/**
 * How long to wait at most, in milliseconds as poll(2) takes them: -1 for ever, 0
 * when vorx_dispatch() has work already.
 */
int vorx_poll_timeout(vorx_t* handle);

/**
 * Reads, writes and delivers what is ready, and returns without waiting. One call
 * delivers a limited number of messages, so that a busy handle does not keep the
 * event loop from its other work; when more is ready, vorx_fd() or
 * vorx_poll_timeout() says so. What a C++ callback throws passes through.
 *
 * @return 0, or a negative error number: -ENOTCONN once the bus has gone away,
 *         after which only vorx_close() makes sense. All that had arrived has been
 *         delivered and all watched processes have been reported lost by then.
 */
int vorx_dispatch(vorx_t* handle);

/**
 * Waits and dispatches until vorx_stop() is called.
 *
 * @return the status given to vorx_stop(), or a negative error number when the bus
 *         went away
 */
int vorx_run(vorx_t* handle);

/**
 * Makes vorx_run() return @p status (0 or positive): after the callback that is
 * running, or at once when it is called next. What has arrived but is not delivered
 * yet waits. May be called from a callback, from a signal handler, and from another
 * thread.
 */
void vorx_stop(vorx_t* handle, int status);

/**
 * Publishes one event to every process that registered for it. Events of one
 * process arrive in the order in which they were published, also relative to its
 * signals.
 *
 * @param handle  the handle to publish on
 * @param data    the bytes to carry, copied before the call returns; may be null when
 *                @p length is 0
 * @param length  number of bytes in @p data
 * @return 0, or a negative error number; see above for -ETIMEDOUT
 */
int vorx_event_publish(vorx_t* handle, const vorx_event_descriptor*, const void* data,
                       unsigned int length);

#ifdef __cplusplus
}
#endif

// NOLINTEND(modernize-deprecated-headers,modernize-use-using)
#endif
