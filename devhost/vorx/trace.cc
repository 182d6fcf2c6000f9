// SPDX-License-Identifier: Apache-2.0
#include "trace.h"

#include <dlfcn.h>
#include <unistd.h>
#include <zlog.h>

#include <cerrno>
#include <mutex>

namespace devhost {
namespace {

constexpr const char* kConfigName = "vorx-zlog.conf";

/** What zlog was set up from in this process; guarded by the mutex. */
struct Setup {
  std::mutex mutex;
  std::string config;
};

Setup& TheSetup() {
  static auto* const setup = new Setup;
  return *setup;
}

bool IsReadable(const std::string& path) { return access(path.c_str(), R_OK) == 0; }

/** The directory that this library was loaded from, with a slash behind it. */
std::string LibraryDirectory() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&LibraryDirectory), &info) == 0 ||
      info.dli_fname == nullptr) {
    return {};
  }
  const std::string path = info.dli_fname;
  return path.substr(0, path.rfind('/') + 1);
}

/** In the build tree the file is beside the library; else it is where it was installed. */
std::string ShippedConfig() {
  const std::string directory = LibraryDirectory();
  const std::string beside = directory + kConfigName;
  return IsReadable(beside) ? beside : directory + VORX_LOG_CONFIG_FROM_LIBRARY;
}

bool SetUp(const std::string& config, std::string& why) {
  if (!IsReadable(config)) {
    why = "the configuration file '" + config + "': " + ErrorText(-errno);
    return false;
  }
  // zlog is set up already when the program did that itself, and then stays as it is.
  constexpr const char* kAnyCategory = "vorx";
  if (zlog_init(config.c_str()) != 0 && zlog_get_category(kAnyCategory) == nullptr) {
    why = "zlog does not accept the configuration file '" + config +
          "' (run with ZLOG_PROFILE_ERROR=/dev/stderr to see its reasons)";
    return false;
  }
  return true;
}

}  // namespace

zlog_category_t* InitTrace(const std::string& config, const std::string& category,
                           const Diagnostics& diagnostics, std::string& why) {
  Setup& setup = TheSetup();
  const std::lock_guard<std::mutex> lock(setup.mutex);
  const std::string wanted = config.empty() ? ShippedConfig() : config;
  if (category.empty()) {
    why = "a category needs a name";
    return nullptr;
  }
  if (setup.config.empty()) {
    if (!SetUp(wanted, why)) {
      return nullptr;
    }
    setup.config = wanted;
  } else if (setup.config != wanted) {
    diagnostics.Say("logging stays as '" + setup.config + "' has set it up; '" + wanted +
                    "' is not read");
  }
  zlog_category_t* const found = zlog_get_category(category.c_str());
  if (found == nullptr) {
    why = "zlog has no category '" + category + "'";
  }
  return found;
}

}  // namespace devhost
