// SPDX-License-Identifier: Apache-2.0
#include "store_file.h"

#include <cfm/client_server.pb.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <optional>
#include <system_error>

#include "convert.h"
#include "fields.h"
#include "render.h"

namespace cfm_mgr {
namespace {

[[noreturn]] void Fail(const std::string& what, const std::string& path) {
  throw std::system_error(errno, std::generic_category(), "cannot " + what + " " + path);
}

/** An open file, closed with this object. */
class File {
 public:
  File(const std::string& path, int flags) : path_(path) {
    constexpr mode_t kMode = 0644;
    descriptor_ = open(path.c_str(), flags | O_CLOEXEC, kMode);
  }
  ~File() {
    if (is_open()) close(descriptor_);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  bool is_open() const { return descriptor_ >= 0; }

  std::string ReadAll() const {
    std::string content;
    std::array<char, 65536> buffer{};
    for (;;) {
      const ssize_t count = read(descriptor_, buffer.data(), buffer.size());
      if (count == 0) return content;
      if (count > 0) {
        content.append(buffer.data(), static_cast<std::size_t>(count));
      } else if (errno != EINTR) {
        Fail("read", path_);
      }
    }
  }

  void WriteAll(const std::string& content) const {
    for (std::size_t written = 0; written < content.size();) {
      const ssize_t count = write(descriptor_, content.data() + written, content.size() - written);
      if (count >= 0) {
        written += static_cast<std::size_t>(count);
      } else if (errno != EINTR) {
        Fail("write", path_);
      }
    }
  }

  void Sync() const {
    if (fsync(descriptor_) != 0) Fail("write", path_);
  }

 private:
  std::string path_;
  int descriptor_ = -1;
};

/** The content of a file, or nothing when there is no such file. */
std::optional<std::string> Read(const std::string& path) {
  const File file(path, O_RDONLY);
  if (file.is_open()) return file.ReadAll();
  if (errno != ENOENT) Fail("read", path);
  return std::nullopt;
}

void WriteToDisk(const std::string& path, const std::string& content) {
  const File file(path, O_WRONLY | O_CREAT | O_TRUNC);
  if (!file.is_open()) Fail("write", path);
  file.WriteAll(content);
  file.Sync();
}

std::string DirectoryOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

/** Brings a rename in this directory to the disk, on file systems that can. */
void SyncDirectory(const std::string& directory) {
  const File file(directory, O_RDONLY | O_DIRECTORY);
  if (!file.is_open()) return;
  try {
    file.Sync();
  } catch (const std::system_error&) {
    // The new content is in place; what may be lost is lost only if the machine fails now.
  }
}

}  // namespace

StoreFile::Loaded StoreFile::Load() const {
  Loaded loaded;
  const std::optional<std::string> content = Read(path_);
  if (!content) {
    loaded.messages.push_back(path_ + ": new, starting empty");
    return loaded;
  }
  client_server::OpCacheSync cache;
  if (cache.ParseFromString(*content)) {
    loaded.messages = loaded.store.Load(cache);
    for (std::string& message : loaded.messages) message.insert(0, path_ + ": left out ");
  } else {
    loaded.messages.push_back(path_ + ": not a store: " + Plural(content->size(), "octet") +
                              " that are no " + cache.GetTypeName());
  }
  loaded.on_disk = loaded.messages.empty();
  if (!loaded.on_disk) loaded.messages.push_back(path_ + ": put aside as " + SetAside());
  loaded.messages.push_back(path_ + ": loaded " + RenderSize(loaded.store.tree()));
  return loaded;
}

void StoreFile::Save(const Tree& tree) const {
  const std::string beside = path_ + ".new";
  try {
    WriteToDisk(beside, ToCacheSync(tree).SerializeAsString());
    if (std::rename(beside.c_str(), path_.c_str()) != 0) Fail("replace", path_);
  } catch (...) {
    unlink(beside.c_str());
    throw;
  }
  SyncDirectory(DirectoryOf(path_));
}

/** Gives the file a name that is still free, and tells it. */
std::string StoreFile::SetAside() const {
  for (int number = 1;; ++number) {
    std::string name = path_ + ".bad-" + std::to_string(number);
    // Unlike a rename, a link never replaces another file.
    if (link(path_.c_str(), name.c_str()) == 0) {
      if (unlink(path_.c_str()) != 0) Fail("put aside", path_);
      return name;
    }
    if (errno != EEXIST) Fail("put aside", path_);
  }
}

}  // namespace cfm_mgr
