/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * Octets in network order, read and written within bounds.
 */
#ifndef CFM_MGR_PDU_OCTETS_H
#define CFM_MGR_PDU_OCTETS_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace cfm_mgr::pdu {

/** Octets that somebody else owns and that outlive the view. */
class OctetView {
 public:
  constexpr OctetView() = default;
  constexpr OctetView(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
  // A view of a container is meant to be as good as the container.
  // NOLINTNEXTLINE(google-explicit-constructor)
  OctetView(const std::vector<std::uint8_t>& octets) : OctetView(octets.data(), octets.size()) {}
  template <std::size_t Size>
  // NOLINTNEXTLINE(google-explicit-constructor)
  constexpr OctetView(const std::array<std::uint8_t, Size>& octets)
      : OctetView(octets.data(), Size) {}

  constexpr const std::uint8_t* data() const { return data_; }
  constexpr std::size_t size() const { return size_; }
  constexpr bool empty() const { return size_ == 0; }
  constexpr const std::uint8_t* begin() const { return data_; }
  constexpr const std::uint8_t* end() const { return data_ + size_; }
  /** @p index is below size(). */
  constexpr std::uint8_t operator[](std::size_t index) const { return data_[index]; }

  /** At most the first @p count octets. */
  constexpr OctetView First(std::size_t count) const { return {data_, std::min(count, size_)}; }
  /** What follows the first @p count octets, which may be nothing. */
  constexpr OctetView After(std::size_t count) const {
    const std::size_t skipped = std::min(count, size_);
    return {data_ + skipped, size_ - skipped};
  }

 private:
  const std::uint8_t* data_ = nullptr;
  std::size_t size_ = 0;
};

inline bool operator==(OctetView a, OctetView b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end());
}
inline bool operator!=(OctetView a, OctetView b) { return !(a == b); }

/**
 * Reads big-endian numbers one after the other. Reading past the end gives zeros, reads nothing
 * and is remembered: look at ok() once, after the last field.
 */
class Reader {
 public:
  explicit Reader(OctetView octets) : rest_(octets) {}

  std::uint8_t U8() { return static_cast<std::uint8_t>(Number(1)); }
  std::uint16_t U16() { return static_cast<std::uint16_t>(Number(2)); }
  std::uint32_t U32() { return Number(4); }

  /** The next @p count octets, or none of them when there are not so many. */
  OctetView Take(std::size_t count) {
    if (count > rest_.size()) ok_ = false;
    if (!ok_) return {};
    const OctetView taken = rest_.First(count);
    rest_ = rest_.After(count);
    return taken;
  }

  /** The next octets, as many as @p octets has; it stays as it was when there are not so many. */
  template <std::size_t Size>
  void Fill(std::array<std::uint8_t, Size>& octets) {
    const OctetView taken = Take(Size);
    std::copy(taken.begin(), taken.end(), octets.begin());
  }

  OctetView rest() const { return rest_; }
  /** Whether all that was asked for was there. */
  bool ok() const { return ok_; }

 private:
  std::uint32_t Number(std::size_t size) {
    std::uint32_t number = 0;
    for (const std::uint8_t octet : Take(size)) number = (number << 8U) | octet;
    return number;
  }

  OctetView rest_;
  bool ok_ = true;
};

/** Appends big-endian numbers to octets that the caller owns. */
class Writer {
 public:
  explicit Writer(std::vector<std::uint8_t>& octets) : octets_(octets) {}

  void U8(std::uint8_t number) { octets_.push_back(number); }
  void U16(std::uint16_t number) { Number(number, 2); }
  void U32(std::uint32_t number) { Number(number, 4); }
  void Octets(OctetView octets) { octets_.insert(octets_.end(), octets.begin(), octets.end()); }
  void Zeros(std::size_t count) { octets_.insert(octets_.end(), count, 0); }

 private:
  void Number(std::uint32_t number, std::size_t size) {
    while (size > 0) octets_.push_back(static_cast<std::uint8_t>(number >> (8 * --size)));
  }

  std::vector<std::uint8_t>& octets_;
};

/** Overwrites four octets of @p octets, which has them. */
inline void PatchU32(std::vector<std::uint8_t>& octets, std::size_t offset, std::uint32_t number) {
  for (std::size_t i = 0; i < 4; ++i) {
    octets[offset + i] = static_cast<std::uint8_t>(number >> (8 * (3 - i)));
  }
}

/** The octets of a text. */
inline OctetView OctetsOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

}  // namespace cfm_mgr::pdu

#endif
