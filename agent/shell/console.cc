// SPDX-License-Identifier: Apache-2.0
#include "shell/console.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "shell/tty.h"

namespace cfm_agent {
namespace {

// Writes all of it; otherwise gives the error.
int WriteAll(int fd, std::string_view text) {
  while (!text.empty()) {
    const ssize_t size = write(fd, text.data(), text.size());
    if (size >= 0) {
      text.remove_prefix(static_cast<std::size_t>(size));
    } else if (errno == EAGAIN) {
      pollfd writable = {fd, POLLOUT, 0};
      static_cast<void>(poll(&writable, 1, -1));
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

}  // namespace

void Console::Tell(const Record& record) {
  if (volume_ == Volume::Quiet && IsNews(record)) {
    return;
  }
  std::string lines;
  for (const std::string& line : renderer_.Render(record, std::chrono::system_clock::now())) {
    lines += line + '\n';
  }
  if (!lines.empty()) {
    Write(renderer_.StreamOf(record), lines);
  }
}

void Console::ShowProgress(const std::string& line) {
  if (shows_progress() && line != progress_line_) {
    progress_line_ = line;
    DrawProgress();
  }
}

void Console::Write(Stream stream, std::string_view lines) {
  if (!progress_line_.empty()) {
    Put(Stream::Output, kClearLine);
  }
  Put(stream, lines);
  if (!progress_line_.empty()) {
    DrawProgress();
  }
}

// One cell stays free, where the cursor can be.
void Console::DrawProgress() {
  Put(Stream::Output, kClearLine + progress_line_.substr(0, OutputColumns() - 1));
}

void Console::Put(Stream stream, std::string_view text) {
  const int error = WriteAll(stream == Stream::Output ? STDOUT_FILENO : STDERR_FILENO, text);
  if (error != 0 && stream == Stream::Output && !failed_) {
    failed_ = true;
    Put(Stream::Error,
        "standard output: " + std::generic_category().message(error) + "; lines are lost\n");
  }
}

}  // namespace cfm_agent
