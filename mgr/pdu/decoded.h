/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_PDU_DECODED_H
#define CFM_MGR_PDU_DECODED_H

#include <cstddef>
#include <utility>
#include <variant>

namespace cfm_mgr::pdu {

/** Why octets are not the PDU that they should be. */
enum class Fault {
  Truncated,       ///< Fields or TLVs go on past the end.
  TooLong,         ///< More octets than any link carries in one frame.
  Opcode,          ///< Another PDU.
  FirstTlvOffset,  ///< Fewer fixed fields than the opcode has.
  NoEndTlv,        ///< The TLVs are not closed.
  TlvLength,       ///< A TLV shorter than its fields, or longer than its version allows.
  DuplicateTlv,    ///< A TLV that may be there once is there twice.
  MissingTlv,      ///< A TLV that has to be there is not.
  Maid,            ///< Lengths of names that a MAID cannot have.
  Value,           ///< A field holds a value that is reserved or out of its range.
};

inline constexpr std::size_t kFaults = static_cast<std::size_t>(Fault::Value) + 1;

/** The fault in a few words, for people. */
const char* Describe(Fault fault);

/** What octets mean, or why they mean nothing. */
template <class Value>
class Decoded {
 public:
  // Decoders return either as it is.
  Decoded(Value value) : result_(std::move(value)) {}  // NOLINT(google-explicit-constructor)
  Decoded(Fault fault) : result_(fault) {}             // NOLINT(google-explicit-constructor)

  explicit operator bool() const { return result_.index() == 0; }
  /** @name Of a success
   * @{ */
  const Value& operator*() const { return *std::get_if<0>(&result_); }
  const Value* operator->() const { return std::get_if<0>(&result_); }
  /** @} */
  /** Of a failure. */
  Fault fault() const { return *std::get_if<1>(&result_); }

 private:
  std::variant<Value, Fault> result_;
};

}  // namespace cfm_mgr::pdu

#endif
