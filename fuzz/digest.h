/* SPDX-License-Identifier: Apache-2.0 */
// A running hash of all that the library hands out: two runs that end with the same one did the
// same, and computing it reads every byte.
#ifndef CFM_FUZZ_DIGEST_H
#define CFM_FUZZ_DIGEST_H

#include <cfm/handlers.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <type_traits>

namespace cfm_fuzz {

class Digest {
 public:
  std::uint64_t value() const { return value_; }

  template <typename... Values>
  void AddAll(const Values&... values) {
    (Add(values), ...);
  }

  template <typename Number>
  std::enable_if_t<std::is_arithmetic_v<Number>> Add(Number number) {
    Octets(&number, sizeof number);
  }
  void Add(std::string_view text) {
    Add(text.size());
    Octets(text.data(), text.size());
  }
  void Add(const cfm::st_mac& mac) { Octets(mac.octets.data(), mac.octets.size()); }
  void Add(const cfm::local_mep_status& status);
  void Add(const cfm::remote_mep_status& status);
  void Add(const cfm::local_mep_stats& stats);
  void Add(const cfm::remote_mep_stats& stats);
  void Add(const cfm::linktrace_trigger_error& error);
  void Add(const cfm::LtrEgressIdentifier& egress);
  void Add(const cfm::LtrReplyPort& port);
  void Add(const cfm::LinktraceReplyEntry& reply);
  void Add(const cfm::DelayMeasurementSessionResult& result);

 private:
  template <typename Part>
  void AddPart(const std::unique_ptr<Part>& part);
  void Octets(const void* data, std::size_t size);

  std::uint64_t value_ = 14695981039346656037U;
};

}  // namespace cfm_fuzz

#endif
