/**
 * @file
 * How a process joins the development host's messaging, and services it.
 *
 * The development host carries vorx over a D-Bus message bus. A handle is one
 * connection to the bus under one process name; its process identifier is the
 * number that the bus gave the connection, so that a restarted process always
 * comes back under a new one.
 *
 * A handle belongs to one thread at a time: open, use, service and close it from
 * there. Callbacks run inside vorx_dispatch() or vorx_run() and nowhere else. A
 * callback may send, publish, register, deregister, subscribe, unsubscribe and
 * stop; it must not close the handle, nor dispatch it again.
 *
 * All functions that return an int return 0 (or the number stated) on success
 * and a negative errno value on failure; vorx_last_error() says it in words.
 */
#ifndef VORX_HOST_H
#define VORX_HOST_H

#include <stddef.h>
#include <stdint.h>
#include <vorx/vorx.h>

#ifdef __cplusplus
extern "C" {
#endif

/** How to open a handle. Zero-initialise it, then set what differs. */
typedef struct {
  /** Name under which other processes find this one; required. Letters, digits, '-' and '_'. */
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
} vorx_options_t;

/**
 * Joins the bus under the options' name.
 *
 * @param options  read during the call only
 * @param handle   receives the handle, or null on failure
 * @return 0; -EINVAL for a missing or unusable name or address; -EEXIST when
 *         another process holds the name; another negative error number when the
 *         bus cannot be reached
 */
int vorx_open(const vorx_options_t* options, vorx_t** handle);

/**
 * Sends what is still queued, leaves the bus and frees the handle. Registrations
 * and subscriptions that are still open end with it. Null is left alone.
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
 * The file descriptor to wait on. Ask for the events and the time-out anew before
 * every wait: both change as messages come and go.
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
 * Reads, writes and delivers whatever is ready, and returns without waiting.
 *
 * @return 0, or a negative error number: -ENOTCONN or -ECONNRESET once the bus has
 *         gone away, after which only vorx_close() makes sense. All watched
 *         processes have been reported lost by then.
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
 * Makes vorx_run() return @p status (0 or positive). May be called from a callback,
 * from a signal handler, and from another thread.
 */
void vorx_stop(vorx_t* handle, int status);

/**
 * Publishes one event to every process that registered for it. Events of one
 * process arrive in the order in which they were published, also relative to its
 * signals.
 *
 * @param data  the bytes to carry, copied before the call returns; may be null when
 *              @p length is 0
 * @return 0, or a negative error number
 */
int vorx_event_publish(vorx_t* handle, const vorx_event_descriptor*, const void* data,
                       unsigned int length);

#ifdef __cplusplus
}
#endif

#endif
