/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_LOGGER_H
#define CFM_MGR_LOGGER_H

#include <vorx/vorx.h>

#include <string>

namespace cfm_mgr {

/** The server's log: lines with the time on standard error, or records of a zlog category. */
class Logger {
 public:
  /** Null takes standard error. */
  explicit Logger(zlog_category_t* category = nullptr) : category_(category) {}

  void Write(const std::string& line) const;

 private:
  zlog_category_t* category_;
};

}  // namespace cfm_mgr

#endif
