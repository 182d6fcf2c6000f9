// SPDX-License-Identifier: Apache-2.0
// An application that has all five handlers: it prints whatever the server tells, has the server
// run one test of each kind and measure a delay by itself, asks for statistics, takes its
// configuration back, and ends.
//
// usage: handlers [INTERFACE]

#include <cfm/client.h>

#include <string>

#include "common/host.h"
#include "handlers/course.h"
#include "handlers/printing_handlers.h"

namespace {

// The order of the members is the point: the client, being last, goes first, and what it borrows
// lives longer.
class Application {
 public:
  Application() {
    client_.RegisterStatusHandler(&status_);
    client_.RegisterStatisticsHandler(&statistics_);
    client_.RegisterLinktraceHandler(&linktrace_);
    client_.RegisterLoopbackHandler(&loopback_);
    client_.RegisterDelayMeasurementHandler(&delay_measurement_);
  }

  int Run(const std::string& interface) {
    course_.Begin(interface);  // before the handle is serviced
    const examples::StopOnSignals stop(handle_);
    return examples::Run(handle_);
  }

 private:
  examples::Handle handle_ = examples::Join("handlers");
  examples::Course course_{handle_, client_};
  examples::StatusHandler status_{course_};
  examples::StatisticsHandler statistics_{course_};
  examples::LinktraceHandler linktrace_{course_};
  examples::LoopbackHandler loopback_{course_};
  examples::DelayMeasurementHandler delay_measurement_{course_};
  cfm::Client client_{handle_.get()};
};

int Program(int argc, char** argv) {
  Application application;
  return application.Run(argc > 1 ? argv[1] : "eth0");
}

}  // namespace

int main(int argc, char** argv) { return examples::Main("handlers", Program, argc, argv); }
