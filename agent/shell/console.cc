#include "shell/console.h"

#include <iostream>

namespace cfm_agent {

void Console::Write(Stream stream, std::string_view line) {
  (stream == Stream::Output ? std::cout : std::cerr) << line << std::endl;
}

}  // namespace cfm_agent
