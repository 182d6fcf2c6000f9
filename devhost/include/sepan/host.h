/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * How a process of the development host gets its ports.
 *
 * A port stands for the name of a network interface, whether the kernel has such
 * an interface at the moment or not. A name keeps its port, and a port its name,
 * as long as the process lives; ports mean nothing to other processes. All
 * functions of libsepan may be called from any thread.
 */
#ifndef SEPAN_HOST_H
#define SEPAN_HOST_H

// C programs include this too. NOLINTBEGIN(modernize-deprecated-headers,modernize-use-using)
#include <sepan/sepan.h>

#ifdef __cplusplus
extern "C" {
#endif

/**
 * The port of an interface name, for use in a configuration. The interface need
 * not exist yet: sepan_to_ifindex() looks it up anew at each call.
 *
 * @param name  a name that the kernel would accept for an interface: 1 to 15
 *              bytes, without '/', ':' and white space, not "." or ".."
 * @return the port, the same one for the same name; 0, which is never a port, for
 *         any other name, with errno set to EINVAL or ENAMETOOLONG
 */
sepan_port_t sepan_port_by_name(const char* name);

#ifdef __cplusplus
}
#endif

// NOLINTEND(modernize-deprecated-headers,modernize-use-using)
#endif
