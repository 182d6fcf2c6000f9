// SPDX-License-Identifier: Apache-2.0
#include "core/names.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "core/text.h"

namespace cfm_agent {
namespace {

// Octets of the MAID field that names may fill.
constexpr std::size_t kMdNameMax = 43;
constexpr std::size_t kLoneMaNameMax = 45;
constexpr std::size_t kBothNamesMax = 44;
constexpr std::size_t kInterfaceNameMax = 15;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsUpper(char c) { return c >= 'A' && c <= 'Z'; }
bool IsLower(char c) { return c >= 'a' && c <= 'z'; }
bool IsHex(char c) { return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }
bool IsControl(char c) { return static_cast<std::uint8_t>(c) < 0x20 || c == 0x7F; }

// Whether `text` follows `pattern`, in which x stands for a hexadecimal digit.
bool Follows(std::string_view text, std::string_view pattern) {
  return text.size() == pattern.size() &&
         std::equal(text.begin(), text.end(), pattern.begin(),
                    [](char c, char wanted) { return wanted == 'x' ? IsHex(c) : c == wanted; });
}

// A decimal number without leading zeros, so that one number has one name.
bool IsNumber(std::string_view text, std::uint32_t min, std::uint32_t max) {
  if (text.empty() || text.size() > 5 || !std::all_of(text.begin(), text.end(), IsDigit) ||
      (text.size() > 1 && text.front() == '0')) {
    return false;
  }
  std::uint32_t number = 0;
  for (const char c : text) {
    number = number * 10 + static_cast<std::uint32_t>(c - '0');
  }
  return number >= min && number <= max;
}

bool IsCharString(std::string_view text) {
  return !text.empty() && std::none_of(text.begin(), text.end(), IsControl);
}

bool IsDnsLike(std::string_view text) {
  bool label_begins = true;
  for (const char c : text) {
    const bool inside = c == '-' && !label_begins;
    if (c == '.' ? label_begins : !(IsDigit(c) || IsLower(c) || IsUpper(c) || inside)) {
      return false;
    }
    label_begins = c == '.';
  }
  return !label_begins && text.back() != '-';
}

bool IsMacAndUint(std::string_view text) {
  constexpr std::string_view kMac = "xx:xx:xx:xx:xx:xx/";
  return text.size() > kMac.size() && Follows(text.substr(0, kMac.size()), kMac) &&
         IsNumber(text.substr(kMac.size()), 0, 65535);
}

bool IsCarrierCode(std::string_view text) {
  return !text.empty() &&
         std::all_of(text.begin(), text.end(), [](char c) { return IsUpper(c) || IsDigit(c); });
}

bool IsCountryAndCarrierCode(std::string_view text) {
  return text.size() > 2 && IsUpper(text[0]) && IsUpper(text[1]) && IsCarrierCode(text.substr(2));
}

// How names of one format look, and how many octets of the MAID they take.
template <typename Format>
struct NameRule {
  Format format{};
  bool (*is_right)(std::string_view) = nullptr;
  std::size_t max_size = 0;
  std::size_t fixed_octets = 0;  // 0: as many as the text has
  std::string_view right;
};

constexpr std::array kMdRules = {
    // Such a domain is called by its name here, but no CCM carries it.
    NameRule<cfm::MdNameFormat>{cfm::MdNameFormat::None, IsCharString, kMdNameMax, 0,
                                "1 to 43 octets without control characters"},
    NameRule<cfm::MdNameFormat>{cfm::MdNameFormat::DnsLike, IsDnsLike, kMdNameMax, 0,
                                "a domain name of 1 to 43 octets such as access.example.net"},
    NameRule<cfm::MdNameFormat>{cfm::MdNameFormat::MacAndUint, IsMacAndUint, kMdNameMax, 8,
                                "a MAC address and a number up to 65535, such as "
                                "02:00:5e:00:00:01/7"},
    NameRule<cfm::MdNameFormat>{cfm::MdNameFormat::CharString, IsCharString, kMdNameMax, 0,
                                "1 to 43 octets without control characters"},
};

constexpr std::array kMaRules = {
    NameRule<cfm::MaNameFormat>{cfm::MaNameFormat::PrimaryVid,
                                [](std::string_view text) { return IsNumber(text, 1, 4094); }, 4, 2,
                                "a VID from 1 to 4094"},
    NameRule<cfm::MaNameFormat>{cfm::MaNameFormat::CharString, IsCharString, kLoneMaNameMax, 0,
                                "1 to 45 octets without control characters"},
    NameRule<cfm::MaNameFormat>{cfm::MaNameFormat::Uint16,
                                [](std::string_view text) { return IsNumber(text, 0, 65535); }, 5,
                                2, "a whole number from 0 to 65535"},
    NameRule<cfm::MaNameFormat>{
        cfm::MaNameFormat::Rfc2685VpnId,
        [](std::string_view text) { return Follows(text, "xxxxxx:xxxxxxxx"); }, 15, 7,
        "an OUI and a VPN index in hexadecimal, such as 00005e:00000001"},
    NameRule<cfm::MaNameFormat>{cfm::MaNameFormat::IccBased, IsCarrierCode, 13, 13,
                                "1 to 13 capital letters and digits"},
    NameRule<cfm::MaNameFormat>{cfm::MaNameFormat::IccAndCountryCode, IsCountryAndCarrierCode, 15,
                                15,
                                "a country code of two capital letters and up to 13 capital "
                                "letters and digits"},
};

template <typename Format, std::size_t N>
const NameRule<Format>* FindRule(const std::array<NameRule<Format>, N>& rules, Format format) {
  const auto found = std::find_if(rules.begin(), rules.end(),
                                  [format](const auto& rule) { return rule.format == format; });
  return found == rules.end() ? nullptr : &*found;
}

template <typename Format, std::size_t N>
std::optional<std::string> Check(const std::array<NameRule<Format>, N>& rules,
                                 std::string_view name, Format format) {
  const NameRule<Format>* rule = FindRule(rules, format);
  if (rule == nullptr || (name.size() <= rule->max_size && rule->is_right(name))) {
    return std::nullopt;
  }
  std::string text = Quoted(name);
  text += name.size() > rule->max_size ? " has " + Count(name.size(), "octet")
                                       : " does not fit its name format";
  return text + "; use " + std::string(rule->right);
}

template <typename Format, std::size_t N>
std::size_t Octets(const std::array<NameRule<Format>, N>& rules, std::string_view name,
                   Format format) {
  const NameRule<Format>* rule = FindRule(rules, format);
  return rule == nullptr || rule->fixed_octets == 0 ? name.size() : rule->fixed_octets;
}

}  // namespace

std::optional<std::string> CheckMdName(std::string_view name, cfm::MdNameFormat format) {
  return Check(kMdRules, name, format);
}

std::optional<std::string> CheckMaName(std::string_view name, cfm::MaNameFormat format) {
  return Check(kMaRules, name, format);
}

std::optional<std::string> CheckMaid(std::string_view md_name, cfm::MdNameFormat md_format,
                                     std::string_view ma_name, cfm::MaNameFormat ma_format) {
  if (md_format == cfm::MdNameFormat::None) {
    return std::nullopt;
  }
  const std::size_t md_octets = Octets(kMdRules, md_name, md_format);
  const std::size_t ma_octets = Octets(kMaRules, ma_name, ma_format);
  if (md_octets + ma_octets <= kBothNamesMax) {
    return std::nullopt;
  }
  return Quoted(ma_name) + " takes " + Count(ma_octets, "octet") + " and the domain's name " +
         std::to_string(md_octets) + "; use names of at most " + std::to_string(kBothNamesMax) +
         " octets together";
}

std::optional<std::string> CheckInterfaceName(std::string_view name) {
  const auto forbidden = [](char c) { return c == '/' || c == ':' || c == ' ' || IsControl(c); };
  if (!name.empty() && name.size() <= kInterfaceNameMax && name != "." && name != ".." &&
      std::none_of(name.begin(), name.end(), forbidden)) {
    return std::nullopt;
  }
  return Quoted(name) +
         " cannot be a network interface; use a name such as eth0, of at most 15 octets without "
         "blanks, / and :";
}

}  // namespace cfm_agent
