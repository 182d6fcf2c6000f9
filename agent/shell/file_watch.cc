// SPDX-License-Identifier: Apache-2.0
#include "shell/file_watch.h"

#include <sys/inotify.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

namespace cfm_agent {
namespace {

constexpr std::uint32_t kEvents = IN_CLOSE_WRITE | IN_MOVED_TO | IN_CREATE | IN_MODIFY | IN_DELETE |
                                  IN_MOVED_FROM | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
constexpr std::uint32_t kFinished = IN_CLOSE_WRITE | IN_MOVED_TO | IN_DELETE | IN_MOVED_FROM;
constexpr std::uint32_t kDirectoryGone = IN_DELETE_SELF | IN_MOVE_SELF | IN_IGNORED;

// A link is complete when it is made; a new file is still to be written.
bool IsComplete(const std::string& path) {
  struct stat status = {};
  return lstat(path.c_str(), &status) == 0 && (S_ISLNK(status.st_mode) || status.st_nlink > 1);
}

}  // namespace

FileWatch::FileWatch(std::string path)
    : path_(std::move(path)), inotify_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
  if (inotify_.get() < 0) {
    throw std::system_error(errno, std::generic_category(), "inotify");
  }
  Renew();
}

void FileWatch::Renew() {
  resolved_ = Resolved();
  const std::array<int, 2> old = {own_.descriptor, target_.descriptor};
  own_ = Watch(path_);
  target_ = Watch(resolved_.empty() ? path_ : resolved_);
  for (const int descriptor : old) {
    if (descriptor >= 0 && !InUse(descriptor)) {
      inotify_rm_watch(inotify_.get(), descriptor);
    }
  }
}

FileWatch::Activity FileWatch::Read() {
  Activity activity = Activity::None;
  bool place_changed = false;
  alignas(inotify_event) std::array<char, 4096> buffer{};
  ssize_t size = 0;
  while ((size = read(inotify_.get(), buffer.data(), buffer.size())) > 0) {
    for (std::size_t at = 0; at < static_cast<std::size_t>(size);) {
      inotify_event event{};
      std::memcpy(&event, buffer.data() + at, sizeof event);
      const char* name = event.len > 0 ? buffer.data() + at + sizeof event : "";
      activity = std::max(activity, Judge(event.wd, event.mask, name));
      place_changed = place_changed || ((event.mask & kDirectoryGone) != 0 && InUse(event.wd));
      at += sizeof event + event.len;
    }
  }
  const std::string before = resolved_;
  if (place_changed || Resolved() != before) {
    Renew();
  }
  // A file that only now comes to be still has to be written.
  const bool led_elsewhere = resolved_ != before && (!before.empty() || IsComplete(path_));
  return place_changed || led_elsewhere ? Activity::Finished : activity;
}

FileWatch::Activity FileWatch::Judge(int descriptor, std::uint32_t mask,
                                     std::string_view name) const {
  if ((mask & IN_Q_OVERFLOW) != 0) {
    return Activity::Finished;
  }
  const auto concerns = [&](const Place& place) {
    return place.descriptor == descriptor && place.name == name;
  };
  if (!concerns(own_) && !concerns(target_)) {
    return Activity::None;
  }
  if ((mask & kFinished) != 0 || ((mask & IN_CREATE) != 0 && IsComplete(path_))) {
    return Activity::Finished;
  }
  return Activity::Busy;
}

// A directory that is watched already keeps its descriptor.
FileWatch::Place FileWatch::Watch(const std::string& path) const {
  const std::filesystem::path as_path(path);
  const std::string directory = as_path.has_parent_path() ? as_path.parent_path().string() : ".";
  return {inotify_add_watch(inotify_.get(), directory.c_str(), kEvents),
          as_path.filename().string()};
}

bool FileWatch::InUse(int descriptor) const {
  return descriptor == own_.descriptor || descriptor == target_.descriptor;
}

std::string FileWatch::Resolved() const {
  std::error_code error;
  const auto resolved = std::filesystem::canonical(path_, error);
  return error ? std::string() : resolved.string();
}

}  // namespace cfm_agent
