/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CONSUMER_HOST_H
#define CONSUMER_HOST_H

#include <vorx/vorx.h>
#include <zlog.h>

#ifdef __cplusplus
extern "C" {
#endif

struct vorx {
  int unused;
};

/* Plays a server that appears and answers with an empty cache. */
void host_find_server(vorx_t* handle);

/* How many signals of this number were sent. */
unsigned host_sent(unsigned char number);

#ifdef __cplusplus
}
#endif

#endif
