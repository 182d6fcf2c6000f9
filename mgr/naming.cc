// SPDX-License-Identifier: Apache-2.0
#include "naming.h"

#include "pdu/maid.h"

namespace cfm_mgr {
namespace {

void AddPart(std::string& subject, const char* label, const std::string& value) {
  if (!subject.empty()) subject += ' ';
  subject.append(label).append(" ").append(value);
}

std::string Octets(std::size_t count) { return std::to_string(count) + " octets"; }

/** Adds a reason to those there are. Nothing adds nothing. */
void AddFault(std::string& faults, const std::string& fault) {
  if (!faults.empty() && !fault.empty()) faults += "; ";
  faults += fault;
}

}  // namespace

std::string FaultOfMaid(const std::string& md_name, std::int32_t md_format,
                        const std::string& ma_name, std::int32_t ma_format) {
  const std::size_t both =
      pdu::MdNameOctets(md_format, md_name) + pdu::MaNameOctets(ma_format, ma_name);
  if (md_format == kMdNameFormatNone || both <= kMaxBothNames) return {};
  return "names of domain and association are " + Octets(both) +
         " long together: expected at most " + std::to_string(kMaxBothNames);
}

void Naming::AddName(const char* label, const char* field, bool present, const std::string& name,
                     std::size_t min_size, std::size_t max_size) {
  AddPart(subject, label, present ? Quote(name) : "?");
  if (!present) {
    AddFault(faults, std::string(field) + " is missing");
  } else if (name.size() < min_size || name.size() > max_size) {
    AddFault(faults, std::string(field) + " is " + Octets(name.size()) + " long: expected " +
                         std::to_string(min_size) + " to " + std::to_string(max_size));
  }
}

void Naming::AddId(const char* label, const char* field, bool present, std::uint32_t id,
                   std::uint32_t min, std::uint32_t max) {
  AddPart(subject, label, present ? std::to_string(id) : "?");
  AddFault(faults,
           present ? FaultOf(Field{field, min, max}, id) : std::string(field) + " is missing");
}

std::string Subject(const MepKey& mep) {
  return "md " + Quote(mep.ma.md_name) + " ma " + Quote(mep.ma.ma_name) + " mep " +
         std::to_string(mep.mep_id);
}

}  // namespace cfm_mgr
