/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_NET_PACKET_FILE_DESCRIPTOR_H
#define CFM_MGR_NET_PACKET_FILE_DESCRIPTOR_H

#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace cfm_mgr::net {

/** Throws the error of the system call that failed last. */
[[noreturn]] inline void ThrowErrno(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

/** Owns a file descriptor. */
class FileDescriptor {
 public:
  /** @throws std::system_error for a negative one, which is taken for the result of a failed call
   */
  FileDescriptor(int descriptor, const char* what) : descriptor_(descriptor) {
    if (descriptor < 0) ThrowErrno(what);
  }
  FileDescriptor(FileDescriptor&& other) noexcept
      : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor() {
    if (descriptor_ >= 0) close(descriptor_);
  }

  int get() const { return descriptor_; }

 private:
  int descriptor_;
};

}  // namespace cfm_mgr::net

#endif
