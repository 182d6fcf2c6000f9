/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_BENCH_BUS_BARE_H
#define CFM_BENCH_BUS_BARE_H

#include <cstdint>
#include <string>
#include <vector>

#include "private_bus.h"
#include "rendezvous.h"

namespace cfm_bench {

/** One request as it went over the bus. */
struct Request {
  std::string block;
  std::uint8_t number = 0;
  std::string payload;
};

/** Times two bare sd-bus programs that pass these on. */
Timing TimeBare(const cfm_test::PrivateBus& bus, const std::vector<Request>& requests);

}  // namespace cfm_bench

#endif
