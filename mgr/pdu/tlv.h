/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * TLVs of CFM PDUs, IEEE 802.1Q 21.5: one octet of type, two of length, the value; closed by an End
 * TLV, which is its type alone. What follows the End TLV is padding.
 */
#ifndef CFM_MGR_PDU_TLV_H
#define CFM_MGR_PDU_TLV_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "pdu/header.h"

namespace cfm_mgr::pdu {

enum class TlvType : std::uint8_t {
  End = 0,
  SenderId = 1,
  PortStatus = 2,
  Data = 3,
  InterfaceStatus = 4,
  ReplyIngress = 5,
  ReplyEgress = 6,
  LtmEgressIdentifier = 7,
  LtrEgressIdentifier = 8,
  OrganisationSpecific = 31,
};

/** The TLVs of one PDU. Types that are not listed above, and organisation-specific ones, are left
 * out. */
class TlvSet {
 public:
  /** The value of a TLV of type 1 to 8; none when it is not there. */
  std::optional<OctetView> Find(TlvType type) const {
    const Entry& entry = entries_[static_cast<std::size_t>(type)];
    if (!entry.present) return std::nullopt;
    return entry.value;
  }

  /** Puts a value in; false when there is one of this type already. */
  bool Add(std::uint8_t type, OctetView value);

 private:
  struct Entry {
    bool present = false;
    OctetView value;
  };
  std::array<Entry, 9> entries_;
};

/** One TLV; an End TLV has no value. */
struct Tlv {
  std::uint8_t type = 0;
  OctetView value;
};

/** The next TLV. Look at the reader's ok() whether it is whole. */
Tlv ReadTlv(Reader& reader);

/** Walks the TLVs from the first one to the End TLV, which has to be there. */
Decoded<TlvSet> DecodeTlvs(OctetView tlvs);

/** A PDU taken apart. The views point into the PDU's octets. */
struct Parts {
  Header header;
  OctetView fields;  ///< The fixed fields, all that lies between the header and the first TLV.
  TlvSet tlvs;
};

/**
 * Takes a PDU apart.
 * @param opcode What it has to be.
 * @param fixed_size Octets of fixed fields that this opcode has in version 0; `fields` holds as
 * many at least.
 */
Decoded<Parts> DecodeParts(OctetView pdu, Opcode opcode, std::size_t fixed_size);

/**
 * Whether a TLV's value has a length that goes with @p size octets of fields: just as many in
 * version 0, perhaps more in a later one.
 */
inline bool HasSize(OctetView value, std::size_t size, std::uint8_t version) {
  return version == 0 ? value.size() == size : value.size() >= size;
}

/**
 * The one octet of a Port Status or Interface Status TLV.
 * @param max The greatest code there is; the least is 1.
 * @return No value when there is no such TLV, or a later version uses a code not known here.
 */
Decoded<std::optional<std::uint8_t>> DecodeStatus(const Parts& parts, TlvType type,
                                                  std::uint8_t max);

/** Appends a TLV. @p value has at most 65535 octets. */
void EncodeTlv(Writer& writer, TlvType type, OctetView value);
void EncodeEndTlv(Writer& writer);

/** Octets that a TLV of so long a value takes. */
constexpr std::size_t TlvSize(std::size_t value_size) { return 3 + value_size; }

}  // namespace cfm_mgr::pdu

#endif
