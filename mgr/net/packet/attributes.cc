// SPDX-License-Identifier: Apache-2.0
#include "net/packet/attributes.h"

#include <algorithm>

namespace cfm_mgr::net {
namespace {

// Attributes and the parts of a message begin at multiples of four octets.
std::size_t Aligned(std::size_t size) { return (size + 3U) & ~std::size_t{3}; }

}  // namespace

Attributes::Attributes(const void* octets, std::size_t size) {
  const auto* begin = static_cast<const std::uint8_t*>(octets);
  for (std::size_t at = 0; at + sizeof(nlattr) <= size;) {
    nlattr header{};
    std::memcpy(&header, begin + at, sizeof header);
    if (header.nla_len < sizeof header || header.nla_len > size - at) return;
    attributes_.push_back({header.nla_type & static_cast<unsigned int>(NLA_TYPE_MASK),
                           begin + at + sizeof header, header.nla_len - sizeof header});
    at += Aligned(header.nla_len);
  }
}

Attributes::Attributes(const nlmsghdr& message, std::size_t header_size) {
  const std::size_t skipped = sizeof message + Aligned(header_size);
  if (message.nlmsg_len < skipped) return;
  *this = Attributes(reinterpret_cast<const std::uint8_t*>(&message) + skipped,
                     message.nlmsg_len - skipped);
}

std::string Attributes::FindText(unsigned int type) const {
  const Attribute* found = FindAny(type);
  if (found == nullptr) return "";
  const auto* end = std::find(found->octets, found->octets + found->size, std::uint8_t{0});
  return {found->octets, end};
}

Attributes Attributes::FindNested(unsigned int type) const {
  const Attribute* found = FindAny(type);
  return found == nullptr ? Attributes() : Attributes(found->octets, found->size);
}

const Attributes::Attribute* Attributes::FindAny(unsigned int type) const {
  const auto found =
      std::find_if(attributes_.begin(), attributes_.end(),
                   [type](const Attribute& attribute) { return attribute.type == type; });
  return found == attributes_.end() ? nullptr : &*found;
}

NetlinkRequest::NetlinkRequest(std::uint16_t type, std::uint16_t flags) {
  header_.nlmsg_type = type;
  header_.nlmsg_flags = static_cast<std::uint16_t>(flags | NLM_F_REQUEST);
  Append(header_);
}

const std::vector<std::uint8_t>& NetlinkRequest::Finish(std::uint32_t sequence) {
  header_.nlmsg_len = static_cast<std::uint32_t>(octets_.size());
  header_.nlmsg_seq = sequence;
  std::memcpy(octets_.data(), &header_, sizeof header_);
  return octets_;
}

void NetlinkRequest::AppendOctets(const void* octets, std::size_t size) {
  const auto* begin = static_cast<const std::uint8_t*>(octets);
  octets_.insert(octets_.end(), begin, begin + size);
  octets_.resize(Aligned(octets_.size()));
}

}  // namespace cfm_mgr::net
