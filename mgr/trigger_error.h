/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_TRIGGER_ERROR_H
#define CFM_MGR_TRIGGER_ERROR_H

#include <cstdint>

namespace cfm_mgr {

/**
 * Why the server refuses a test: the `error_code` of the three trigger errors. The numbers are
 * part of what clients rely on; 0 is never sent.
 */
enum class TriggerError : std::uint32_t {
  UnknownMep = 1,        ///< The server holds no such local MEP.
  UnknownRemoteMep = 2,  ///< The association's MEP list holds no such other MEP.
  NotSupported = 3,      ///< The server does not run this test; this one runs all of them.
  UnknownAddress = 4,    ///< No CCM has told the address of the remote MEP yet.
  NotActive = 5,         ///< The local MEP is not active, or its interface is not there.
  TooMany = 6,           ///< The endpoint runs as many tests as it can already.
  BadParameter = 7,      ///< A parameter of the test is out of its range.
};

}  // namespace cfm_mgr

#endif
