#ifndef CFM_MGR_INTERFACES_H
#define CFM_MGR_INTERFACES_H

#include <cstdint>

#include "environment.h"

namespace cfm_mgr {

/** The kernel's network interfaces, as the network namespace of this process has them. */
class KernelInterfaces {
 public:
  KernelInterfaces();
  ~KernelInterfaces();
  KernelInterfaces(const KernelInterfaces&) = delete;
  KernelInterfaces& operator=(const KernelInterfaces&) = delete;

  /** The interface of this index; one that is not present if there is none. */
  Interface Find(std::uint32_t ifindex) const;

 private:
  int socket_;  ///< Takes the requests to the kernel; negative when there is none to be had.
};

}  // namespace cfm_mgr

#endif
