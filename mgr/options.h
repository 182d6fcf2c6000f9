/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_OPTIONS_H
#define CFM_MGR_OPTIONS_H

#include <string>
#include <vector>

namespace cfm_mgr {

/** What the command line asks for. Empty texts are not given. */
struct Options {
  std::string bus;                      ///< Address of the message bus.
  std::string log_config;               ///< zlog configuration to log through.
  std::string store;                    ///< File to keep the store in.
  std::string network;                  ///< Description of the network to simulate.
  bool wire = false;                    ///< Send and receive on this machine's interfaces.
  std::vector<std::string> interfaces;  ///< Those to use on the wire; all if there are none.
  bool query = false;  ///< Print the tree of the server that runs, instead of serving.
  double timeout = 5;  ///< Seconds that a query waits.
};

/**
 * Reads the command line. Ends the process with status 0 after --help and --version, with status 2
 * after a mistake, which it reports.
 */
Options ParseOptions(int argc, char** argv);

}  // namespace cfm_mgr

#endif
