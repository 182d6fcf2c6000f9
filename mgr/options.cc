// SPDX-License-Identifier: Apache-2.0
#include "options.h"

#include <CLI/CLI.hpp>
#include <cstdlib>

namespace cfm_mgr {

Options ParseOptions(int argc, char** argv) {
  Options options;
  CLI::App app(
      "CFM Manager: runs the CFM configuration that clients send.\n"
      "Without --network or --wire it keeps it, and sends and receives no frames.\n"
      "SIGUSR1 prints it on standard output, SIGUSR2 logs which frames were dropped, SIGTERM, "
      "SIGINT\n"
      "and SIGHUP end the server.");
  app.set_version_flag("--version", CFM_MGR_VERSION);
  app.add_option(
         "--bus", options.bus,
         "Address of the message bus; otherwise VORX_BUS_ADDRESS or DBUS_SESSION_BUS_ADDRESS")
      ->type_name("ADDRESS");
  app.add_option("--log-config", options.log_config,
                 "Log as this zlog configuration says, not to standard error")
      ->type_name("FILE")
      ->check(CLI::ExistingFile);
  auto* store = app.add_option("--store", options.store, "Keep the configuration in this file too")
                    ->type_name("FILE")
                    ->check([](const std::string& path) {
                      return path.empty() ? std::string("names no file") : std::string();
                    });
  auto* network = app.add_option("--network", options.network,
                                 "Run in the simulated network that this file describes")
                      ->type_name("FILE")
                      ->check(CLI::ExistingFile);
  auto* wire = app.add_flag("--wire", options.wire,
                            "Run on the interfaces of this machine; takes CAP_NET_RAW")
                   ->excludes(network);
  app.add_option("--interface", options.interfaces,
                 "Use this interface on the wire; may be given several times; otherwise all")
      ->type_name("NAME")
      ->allow_extra_args(false)
      ->needs(wire);
  auto* query = app.add_flag("--query", options.query,
                             "Print the configuration of the server that runs, and exit");
  app.add_option("--timeout", options.timeout, "How long a query waits for the server")
      ->type_name("SECONDS")
      ->check(CLI::PositiveNumber)
      ->capture_default_str()
      ->needs(query);
  for (auto* other : {store, network, wire}) other->excludes(query);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    constexpr int kUsageError = 2;
    std::exit(app.exit(error) == 0 ? 0 : kUsageError);  // NOLINT(concurrency-mt-unsafe)
  }
  return options;
}

}  // namespace cfm_mgr
