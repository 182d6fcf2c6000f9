// SPDX-License-Identifier: Apache-2.0
#include <exception>
#include <iostream>

#include "bus.h"
#include "options.h"
#include "process.h"
#include "query.h"

int main(int argc, char** argv) {
  const cfm_mgr::Options options = cfm_mgr::ParseOptions(argc, argv);
  try {
    if (options.query) {
      std::cout << cfm_mgr::Query(options) << std::flush;
      if (!std::cout) throw cfm_mgr::Failure("cannot write to standard output");
    } else {
      cfm_mgr::Process(options).Run();
    }
  } catch (const std::exception& error) {
    std::cerr << std::string("cfm-mgr: ") + error.what() + "\n";
    return 1;
  }
  return 0;
}
