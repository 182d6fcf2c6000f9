/* SPDX-License-Identifier: Apache-2.0 */
#ifndef DEVHOST_VORX_DIAGNOSTICS_H
#define DEVHOST_VORX_DIAGNOSTICS_H

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace devhost {

/** Writes all of @p text to standard error at once, so that lines of several writers stay whole. */
void WriteToStderr(std::string_view text);

/** @p text on one line: bytes that a terminal would act on are written as \xNN. */
std::string Printable(std::string_view text);

/** The words for a negative error number. */
std::string ErrorText(int error);

/** What goes wrong on one handle, said on standard error under the process's name. */
class Diagnostics {
 public:
  void SetProcess(std::string_view name) { prefix_ = "vorx " + std::string(name) + ": "; }

  void Say(std::string_view text) const;

  /**
   * Says what happens again and again: the 1st, 10th, 100th, ... time of each @p kind, with the
   * number of times so far. Whether it was said this time.
   */
  bool SayCounted(const std::string& kind, std::string_view text);

 private:
  std::string prefix_ = "vorx: ";
  std::map<std::string, std::uint64_t> counts_;
};

}  // namespace devhost

#endif
