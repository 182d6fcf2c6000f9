// SPDX-License-Identifier: Apache-2.0
// Gives the inputs of a corpus to a fuzz target, without a fuzzer.
//
// usage: TARGET FILE_OR_FOLDER ...
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> Inputs(const fs::path& place) {
  if (!fs::is_directory(place)) {
    return {place};
  }
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(place)) {
    if (entry.is_regular_file()) {
      files.push_back(entry.path());
    }
  }
  return files;
}

// In a block of exactly the input's size, so that a read past it is noticed.
std::vector<std::uint8_t> Read(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    throw std::runtime_error(path.string() + ": cannot be read");
  }
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  return {bytes.begin(), bytes.end()};
}

// Names each input before it runs, so that the last one named is the one that failed.
std::size_t Replay(const fs::path& place) {
  std::size_t count = 0;
  for (const fs::path& path : Inputs(place)) {
    std::printf("%s\n", path.c_str());
    std::fflush(stdout);
    const std::vector<std::uint8_t> input = Read(path);
    LLVMFuzzerTestOneInput(input.data(), input.size());
    ++count;
  }
  return count;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i) {
      count += Replay(argv[i]);
    }
    std::printf("%zu inputs replayed\n", count);
    return count > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return EXIT_FAILURE;
  }
}
