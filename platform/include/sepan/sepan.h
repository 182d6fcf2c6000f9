/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * The interface-mapping library that the host process provides.
 *
 * A port is the host's own 32-bit handle of a network interface; an interface
 * index is the number that the CFM server knows the interface by. The client
 * library stores ports, and converts them only when it speaks to the server or
 * prints a configuration. It never looks at the result codes below.
 */
#ifndef SEPAN_SEPAN_H
#define SEPAN_SEPAN_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The client library finds the host's definitions only if they are visible outside. */
#pragma GCC visibility push(default)

/** The host's handle of a network interface. Opaque to the client library. */
typedef uint32_t sepan_port_t;

/** What the host knows about an interface. */
typedef struct {
  sepan_port_t port; /**< The interface's port handle. */
} sepan_interface_t;

/**
 * Finds the interface index of a port.
 *
 * @param port     the port to look up
 * @param ifindex  receives the index; left as it is when the port is unknown
 * @return 0, or a negative error number when the port is unknown
 */
int sepan_to_ifindex(sepan_port_t port, uint32_t* ifindex);

/**
 * Writes the name of a port's interface.
 *
 * @param port    the port to look up
 * @param buffer  receives the zero-terminated name; left as it is when the port
 *                is unknown
 * @param size    size of @p buffer in bytes, the terminating zero included
 * @return 0, or a negative error number when the port is unknown or the name
 *         does not fit
 */
int sepan_to_intfname(sepan_port_t port, char* buffer, size_t size);

/**
 * Finds the interface of an interface index.
 *
 * @param ifindex  the index to look up
 * @return the interface; for an unknown index, whatever the host holds to stand
 *         for one
 */
sepan_interface_t sepan_from_ifindex(uint32_t ifindex);

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif
