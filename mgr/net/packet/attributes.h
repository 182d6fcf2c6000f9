/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_NET_PACKET_ATTRIBUTES_H
#define CFM_MGR_NET_PACKET_ATTRIBUTES_H

#include <linux/netlink.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

namespace cfm_mgr::net {

/** The attributes of a netlink message. They borrow the message. */
class Attributes {
 public:
  Attributes() = default;
  /** Of @p size octets of attributes; what does not fit into them is left out. */
  Attributes(const void* octets, std::size_t size);
  /** Of the message, behind the @p header_size octets that follow its netlink header. */
  Attributes(const nlmsghdr& message, std::size_t header_size);

  /** The value of an attribute that is there and of this size. */
  template <class Number>
  std::optional<Number> Find(unsigned int type) const {
    const Attribute* found = FindAny(type);
    if (found == nullptr || found->size != sizeof(Number)) return std::nullopt;
    Number number{};
    std::memcpy(&number, found->octets, sizeof number);
    return number;
  }

  /** Text up to its terminating zero; empty when there is none. */
  std::string FindText(unsigned int type) const;
  /** The attributes inside of one; none when it is not there. */
  Attributes FindNested(unsigned int type) const;

 private:
  struct Attribute {
    unsigned int type = 0;
    const std::uint8_t* octets = nullptr;
    std::size_t size = 0;
  };

  const Attribute* FindAny(unsigned int type) const;

  std::vector<Attribute> attributes_;
};

/** A netlink request, whose parts are appended one after the other. */
class NetlinkRequest {
 public:
  NetlinkRequest(std::uint16_t type, std::uint16_t flags);

  template <class Part>
  void Append(const Part& part) {
    AppendOctets(&part, sizeof part);
  }
  template <class Value>
  void AppendAttribute(std::uint16_t type, const Value& value) {
    Append(nlattr{static_cast<std::uint16_t>(sizeof(nlattr) + sizeof value), type});
    AppendOctets(&value, sizeof value);
  }

  /** The whole request, with the given sequence number. */
  const std::vector<std::uint8_t>& Finish(std::uint32_t sequence);

 private:
  void AppendOctets(const void* octets, std::size_t size);

  nlmsghdr header_{};
  std::vector<std::uint8_t> octets_;
};

}  // namespace cfm_mgr::net

#endif
