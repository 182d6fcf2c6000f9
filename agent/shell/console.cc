#include "shell/console.h"

#include <iostream>

namespace cfm_agent {

void Console::Print(std::string_view line) { std::cout << line << std::endl; }

void Console::Complain(std::string_view line) { std::cerr << line << std::endl; }

}  // namespace cfm_agent
