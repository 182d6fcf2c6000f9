/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * The process-messaging middleware that the host process provides.
 *
 * Processes are known by name and addressed by identifier. A process sends
 * *signals* to one other process and publishes *events* to all that registered
 * for them; it may watch for the presence of a process of a given name. Signals
 * and events carry a block of bytes, which may be empty.
 *
 * The middleware calls back only while the handle is being serviced, on the
 * thread that services it. How a handle is made and serviced is the host's own
 * affair and not part of this header.
 */
#ifndef VORX_VORX_H
#define VORX_VORX_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The client library finds the host's definitions only if they are visible outside. */
#pragma GCC visibility push(default)

/** A process's connection to the middleware. */
typedef struct vorx vorx_t;

/** Identifier of a running process. 0 stands for no process. */
typedef int32_t vorx_pid_t;

/** A watch for the presence of a process: vorx_proc_subscribe(). The middleware owns it. */
typedef struct vorx_subscription vorx_subscription_t;
/** A callback for a signal: vorx_sig_register_sized(). The middleware owns it. */
typedef struct vorx_registration vorx_registration_t;
/** A callback for an event: vorx_event_register_sized(). The middleware owns it. */
typedef struct vorx_eventreg vorx_eventreg_t;

/** The logging category of zlog, as its own header declares it. */
typedef struct zlog_category_s zlog_category_t;

/** Names one signal: a block of related signals and a number within it. */
typedef struct {
  const char* block;   /**< Zero-terminated name of the signal block. */
  uint8_t number;      /**< Number within the block, from 1. */
  uint8_t reserved[3]; /**< Always zero. */
} vorx_sig_descriptor;

/** Names one event: an event group and a number within it. */
typedef struct {
  const char* group; /**< Zero-terminated name of the event group. */
  uint32_t number;   /**< Number within the group, from 1. */
} vorx_event_descriptor;

/** A watched process appeared. @p pid is valid during the call only. */
typedef void (*vorx_proc_found_cb)(vorx_t*, const vorx_pid_t* pid, void* user);

/** A watched process went away. */
typedef void (*vorx_proc_lost_cb)(vorx_t*, void* user);

/**
 * A signal arrived. @p sender and @p data are valid during the call only;
 * @p data may be null when @p length is 0.
 */
typedef void (*vorx_sig_cb)(vorx_t*, void* user, const vorx_pid_t* sender, void* data,
                            unsigned int length);

/**
 * An event was published. @p data is valid during the call only, and may be null
 * when @p length is 0.
 */
typedef void (*vorx_event_cb)(vorx_t*, void* user, void* data, unsigned int length);

/**
 * Watches for the presence of a process.
 *
 * @param process_name  name of the process to watch
 * @param found         called each time such a process appears, and once if it
 *                      is there already
 * @param lost          called each time it goes away, by exit or by crash
 * @param user          handed to both callbacks
 * @return the subscription, or null on failure
 */
vorx_subscription_t* vorx_proc_subscribe(vorx_t*, const char* process_name,
                                         vorx_proc_found_cb found, vorx_proc_lost_cb lost,
                                         void* user);

/** Ends a subscription and sets the pointer to null. A null subscription is left alone. */
void vorx_proc_unsubscribe(vorx_subscription_t** subscription);

/**
 * Sets up logging for this process.
 *
 * @param name  name of the logging category
 * @return the category, owned by the middleware, or null when logging cannot be
 *         set up
 */
zlog_category_t* vorx_trace_init(vorx_t*, const char* name);

/** Has @p callback called for each signal of this descriptor. Null on failure. */
vorx_registration_t* vorx_sig_register_sized(vorx_t*, const vorx_sig_descriptor*,
                                             vorx_sig_cb callback, void* user);

/** Ends a signal registration and sets the pointer to null. */
void vorx_sig_deregister(vorx_registration_t** registration);

/** Has @p callback called for each event of this descriptor. Null on failure. */
vorx_eventreg_t* vorx_event_register_sized(vorx_t*, const vorx_event_descriptor*,
                                           vorx_event_cb callback, void* user);

/** Ends an event registration and sets the pointer to null. */
void vorx_event_deregister(vorx_eventreg_t** registration);

/**
 * Sends one signal to one process. Signals between two processes arrive in the
 * order in which they were sent. May wait, but calls nobody back meanwhile: the
 * client library sends while it walks its own state.
 *
 * @param destination  the process to send to; 0 reaches nobody
 * @param data         the bytes to carry, copied before the call returns; may be
 *                     null when @p length is 0
 * @param length       number of bytes in @p data
 * @return 0, or a negative error number
 */
int vorx_sig_send(vorx_t*, const vorx_pid_t* destination, const vorx_sig_descriptor*,
                  const void* data, unsigned int length);

/** Writes the calling thread's backtrace where the host reports faults. */
void vorx_print_backtrace(void);

/**
 * Reports a fault of this process. Returns to the caller.
 *
 * @param kind      the kind of fault; 1 for a fatal error of the client library
 * @param function  name of the function that raises it
 * @param file      source file of that function
 * @param line      source line
 * @param text      description, zero-terminated, possibly empty
 */
void vorx_gen_fault(int kind, const char* function, const char* file, int line, const char* text);

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif
