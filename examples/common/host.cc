// SPDX-License-Identifier: Apache-2.0
#include "common/host.h"

#include <csignal>
#include <exception>
#include <iostream>

namespace examples {
namespace {

// A signal handler can reach nothing else.
vorx_t* handle_to_stop = nullptr;

}  // namespace

Handle Join(const std::string& name) {
  vorx_options_t options{};
  options.name = name.c_str();
  vorx_t* handle = nullptr;
  if (vorx_open(&options, &handle) < 0) throw std::runtime_error(vorx_last_error(nullptr));
  return Handle(handle);
}

StopOnSignals::StopOnSignals(const Handle& handle) {
  handle_to_stop = handle.get();
  for (const int signal : {SIGINT, SIGTERM}) {
    // vorx_stop() is one of the few functions that a signal handler may call.
    static_cast<void>(std::signal(signal, [](int) { vorx_stop(handle_to_stop, 0); }));
  }
}

StopOnSignals::~StopOnSignals() {
  for (const int signal : {SIGINT, SIGTERM}) static_cast<void>(std::signal(signal, SIG_DFL));
  handle_to_stop = nullptr;
}

int Run(const Handle& handle) {
  const int status = vorx_run(handle.get());
  if (status < 0) throw Failure("the bus has gone", handle.get());
  return status;
}

void Say(const std::string& line) { std::cout << line << std::endl; }

int Main(const std::string& name, int (*program)(int argc, char** argv), int argc, char** argv) {
  try {
    return program(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << name << ": " << error.what() << '\n';
    return 1;
  }
}

}  // namespace examples
