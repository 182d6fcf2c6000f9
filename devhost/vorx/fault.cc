// SPDX-License-Identifier: Apache-2.0
#include <unistd.h>
#include <cerrno>
#include <chrono>
#include <ctime>
#include <string>

#include "export.h"
#include "registry.h"

namespace {

/** Universal time to the millisecond, as ISO 8601 writes it. */
std::string Now() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  tm parts{};
  gmtime_r(&now.tv_sec, &parts);
  char date[sizeof "2000-01-01T00:00:00"] = {};
  const std::size_t length = std::strftime(date, sizeof date, "%FT%T", &parts);
  const std::string milliseconds = std::to_string(1000 + now.tv_nsec / 1'000'000).substr(1);
  return std::string(date, length) + '.' + milliseconds + 'Z';
}

/** The program, its process number, and what it is called on the bus. */
std::string ThisProcess() {
  std::string text =
      std::string(program_invocation_short_name) + ", pid " + std::to_string(getpid());
  for (const std::string& handle : devhost::Registry::Instance().Descriptions()) {
    text += ", on the bus as " + handle;
  }
  return text;
}

std::string Field(const std::string& name, const std::string& value) {
  constexpr std::size_t kWidth = 12;
  return "  " + name + ':' + std::string(kWidth - name.size(), ' ') + devhost::Printable(value) +
         '\n';
}

std::string OrNone(const char* text) { return text == nullptr || *text == '\0' ? "(none)" : text; }

}  // namespace

VORX_EXPORT void vorx_gen_fault(int kind, const char* function, const char* file, int line,
                                const char* text) {
  devhost::Guarded(0, [&] {
    devhost::WriteToStderr("vorx fault report\n" +                //
                           Field("time", Now()) +                 //
                           Field("process", ThisProcess()) +      //
                           Field("kind", std::to_string(kind)) +  //
                           Field("function", OrNone(function)) +  //
                           Field("file", OrNone(file)) +          //
                           Field("line", std::to_string(line)) +  //
                           Field("text", OrNone(text)));
    return 0;
  });
}
