// SPDX-License-Identifier: Apache-2.0
// Writes inputs to begin with: what a server sends, once with all fields set, and the
// operations of a first start, of restarts and of changes.
//
// usage: fuzz_write_seeds FOLDER
//   makes FOLDER/receive_bytes, FOLDER/receive_messages and FOLDER/operations
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "callbacks.h"
#include "message_input.h"
#include "sample_reports.h"

namespace {

namespace fs = std::filesystem;

class Folder {
 public:
  explicit Folder(fs::path path) : path_(std::move(path)) { fs::create_directories(path_); }

  void Write(const std::string& name, const std::string& bytes) const {
    std::ofstream file(path_ / name, std::ios::binary);
    if (!file.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush()) {
      throw std::runtime_error((path_ / name).string() + ": cannot be written");
    }
  }

 private:
  fs::path path_;
};

std::size_t CallbackOf(const cfm_test::Report& report) {
  const auto& callbacks = cfm_fuzz::Callbacks();
  const auto found = std::find_if(callbacks.begin(), callbacks.end(), [&](const auto& callback) {
    return callback.signal == report.signal && callback.event == report.event;
  });
  if (found == callbacks.end()) {
    throw std::logic_error(report.name + ": no such callback");
  }
  return static_cast<std::size_t>(found - callbacks.begin());
}

// Each report for each state of the client, and all in turn.
void WriteReports(const fs::path& root) {
  const Folder bytes(root / "receive_bytes");
  const Folder messages(root / "receive_messages");
  for (const cfm_test::Report& report : cfm_test::AllReports()) {
    const std::size_t callback = CallbackOf(report);
    for (std::size_t state = 0; state < 4; ++state) {
      const auto choice = static_cast<char>(callback + state * cfm_fuzz::Callbacks().size());
      const std::string name = report.name + "-" + std::to_string(state);
      bytes.Write(name, choice + report.bytes);
      messages.Write(name, cfm_fuzz::EncodeMessages({static_cast<std::uint8_t>(state),
                                                     {{callback, report.bytes}, {0, ""}}}));
    }
  }
}

// Each kind of edit with each bit of its value in turn, handed in after each of them.
std::string AllEdits(char edit, char hand_in, char kinds) {
  std::string bytes;
  for (char kind = 0; kind < kinds; ++kind) {
    for (unsigned bit = 0; bit < 8; ++bit) {
      bytes += {edit, 0, kind, static_cast<char>(1U << bit), hand_in};
    }
  }
  return bytes;
}

// The numbers are those of the target's operations.
void WriteOperations(const fs::path& root) {
  using Bytes = std::initializer_list<unsigned char>;
  const auto text = [](Bytes bytes) { return std::string(bytes.begin(), bytes.end()); };
  // A domain at level 5, an association with a VID, two endpoints; a probe with a session.
  const std::string build =
      text({0, 0, 3, 5, 0, 0, 4, 17, 0, 0, 7, 9, 0, 16, 8, 7, 3, 0, 4, 1, 3, 0, 5, 1});
  const std::string hand_in = text({5, 6});
  const std::string start = build + hand_in + text({8, 9});
  const std::string change_level = text({0, 0, 3, 2, 5});
  const std::string change_mep = text({0, 0, 8, 2, 0, 0, 7, 2, 5, 3, 0, 0, 0, 6});
  const std::string remove_all = text({0, 0, 0, 0, 5});
  const Folder folder(root / "operations");
  folder.Write("start", start);
  folder.Write("deferred", text({8}) + build + hand_in + text({9}));
  folder.Write("again", start + hand_in);
  folder.Write("change-level", start + change_level);
  folder.Write("change-endpoint", start + change_mep);
  folder.Write("remove", start + remove_all);
  for (unsigned char how = 0; how < 8; ++how) {
    const std::string name = std::to_string(how);
    folder.Write("server-restarts-" + name, start + text({10, how}) + change_level + text({9}));
    folder.Write("application-restarts-" + name, start + change_level + text({11, how}));
  }
  folder.Write("all-edits", start + AllEdits(0, 5, 9));
  folder.Write("all-probe-edits", start + AllEdits(3, 6, 6));
  folder.Write("late-reply", start + text({12, 0}) + change_mep + text({12, 1, 9}));
  folder.Write("spoilt", start + text({4, 0, 0, 4, 5, 4, 0, 0, 3, 5, 10, 0, 4, 1, 5, 9}));
  folder.Write("handlers", start + text({14, 0, 10, 0, 13, 7, 3, 10, 1, 'D', 14, 1}));
  folder.Write("tests", text({15}) + start + text({15}));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: fuzz_write_seeds FOLDER\n");
    return EXIT_FAILURE;
  }
  try {
    WriteReports(argv[1]);
    WriteOperations(argv[1]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return EXIT_FAILURE;
  }
  return EXIT_SUCCESS;
}
