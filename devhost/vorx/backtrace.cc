// SPDX-License-Identifier: Apache-2.0
#include <cxxabi.h>
#include <elfutils/libdw.h>
#include <elfutils/libdwfl.h>
#include <execinfo.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "export.h"

namespace {

constexpr int kMaxFrames = 128;
using Frames = std::array<void*, kMaxFrames>;

struct DwflEnd {
  void operator()(Dwfl* dwfl) const { dwfl_end(dwfl); }
};
struct Free {
  void operator()(char* text) const { std::free(text); }  // NOLINT(cppcoreguidelines-no-malloc)
};

/**
 * Only what the loaded files hold themselves: a search for separate debug files may ask the
 * network, and a process that is about to end must not wait for that.
 */
int FindNoSeparateDebugFile(Dwfl_Module*, void**, const char*, Dwarf_Addr, const char*, const char*,
                            GElf_Word, char**) {
  return -1;
}

/** The symbols of all files that are mapped into this process. Null when they cannot be read. */
std::unique_ptr<Dwfl, DwflEnd> OpenSymbols() {
  static const Dwfl_Callbacks callbacks = {dwfl_linux_proc_find_elf, FindNoSeparateDebugFile,
                                           nullptr, nullptr};
  std::unique_ptr<Dwfl, DwflEnd> dwfl(dwfl_begin(&callbacks));
  if (dwfl == nullptr || dwfl_linux_proc_report(dwfl.get(), getpid()) != 0 ||
      dwfl_report_end(dwfl.get(), nullptr, nullptr) != 0) {
    return nullptr;
  }
  return dwfl;
}

std::string Demangled(const char* symbol) {
  int status = 0;
  const std::unique_ptr<char, Free> name(abi::__cxa_demangle(symbol, nullptr, nullptr, &status));
  return status == 0 ? name.get() : symbol;
}

std::string Hex(std::uintptr_t value) {
  std::string digits;
  for (; value != 0; value >>= 4U) {
    digits.insert(digits.begin(), "0123456789abcdef"[value & 0xfU]);
  }
  return "0x" + digits;
}

/**
 * " at file:line"; empty when it is not known. Looks through all compilation units: the index of
 * addresses that a quicker search needs is not written by every compiler.
 */
std::string SourcePlace(Dwfl_Module* module, Dwarf_Addr address) {
  Dwarf_Addr bias = 0;
  Dwarf_Die* unit = nullptr;
  while ((unit = dwfl_module_nextcu(module, unit, &bias)) != nullptr) {
    if (dwarf_haspc(unit, address - bias) != 1) {
      continue;
    }
    Dwarf_Line* const source = dwarf_getsrc_die(unit, address - bias);
    const char* const file = dwarf_linesrc(source, nullptr, nullptr);
    int line = 0;
    if (file != nullptr && dwarf_lineno(source, &line) == 0) {
      return std::string(" at ") + file + ':' + std::to_string(line);
    }
  }
  return {};
}

/** "function at file:line" as far as it is known, else the file that holds the address. */
std::string Describe(Dwfl* dwfl, std::uintptr_t address) {
  Dwfl_Module* const module = dwfl_addrmodule(dwfl, address);
  if (module == nullptr) {
    return "??";
  }
  const char* const symbol = dwfl_module_addrname(module, address);
  std::string text = symbol == nullptr ? "??" : Demangled(symbol);
  if (const std::string place = SourcePlace(module, address); !place.empty()) {
    return text + place;
  }
  const char* const object =
      dwfl_module_info(module, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
  return object == nullptr ? text : text + " in " + object;
}

/** The place of the frame that returns to @p caller; 0 when there is none. */
int FindFrame(const Frames& frames, int count, const void* caller) {
  const auto* const end = frames.begin() + count;
  const auto* const found = std::find(frames.begin(), end, caller);
  return found == end ? 0 : static_cast<int>(found - frames.begin());
}

}  // namespace

VORX_EXPORT void vorx_print_backtrace(void) {
  Frames frames{};
  const int count = backtrace(frames.data(), kMaxFrames);
  const int first = FindFrame(frames, count, __builtin_return_address(0));
  devhost::Guarded(0, [&] {
    const auto symbols = OpenSymbols();
    if (symbols == nullptr) {
      devhost::WriteToStderr("vorx backtrace\n");
      backtrace_symbols_fd(frames.data(), count, STDERR_FILENO);
      return 0;
    }
    std::string text = "vorx backtrace\n";
    for (int i = first; i < count; ++i) {
      const auto address = reinterpret_cast<std::uintptr_t>(frames.at(static_cast<std::size_t>(i)));
      // A return address may already belong to the next line or function; the call is before it.
      text += "  #" + std::to_string(i - first) + "  " + Hex(address) + "  " +
              devhost::Printable(Describe(symbols.get(), address - 1)) + '\n';
    }
    devhost::WriteToStderr(text);
    return 0;
  });
}
