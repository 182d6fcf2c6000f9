#include <cstdio>
#include <exception>

#include "options.h"
#include "process.h"
#include "query.h"

int main(int argc, char** argv) {
  const cfm_mgr::Options options = cfm_mgr::ParseOptions(argc, argv);
  try {
    if (options.query) {
      std::fputs(cfm_mgr::Query(options).c_str(), stdout);
    } else {
      cfm_mgr::Process(options).Run();
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "cfm-mgr: %s\n", error.what());
    return 1;
  }
  return 0;
}
