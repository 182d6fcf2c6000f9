// SPDX-License-Identifier: Apache-2.0
#include "pdu/maid.h"

#include <charconv>
#include <optional>
#include <vector>

namespace cfm_mgr::pdu {
namespace {

constexpr std::uint8_t kNoMdName = 1;
constexpr std::size_t kMaxMdName = 43;
/** Two formats and two lengths stand before the names, or one length less without an MD name. */
constexpr std::size_t kMaxBothNames = 44;
constexpr std::size_t kMaxMaNameAlone = 45;

using Name = std::optional<std::vector<std::uint8_t>>;

/** All of a text as a number of this base, at most @p max. */
std::optional<std::uint32_t> ParseNumber(std::string_view text, int base, std::uint32_t max) {
  std::uint32_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, base);
  if (error != std::errc() || stop != end || number > max) return std::nullopt;
  return number;
}

Name AsTwoOctets(std::string_view name, std::uint32_t max) {
  const std::optional<std::uint32_t> number = ParseNumber(name, 10, max);
  if (!number) return std::nullopt;
  std::vector<std::uint8_t> octets;
  Writer(octets).U16(static_cast<std::uint16_t>(*number));
  return octets;
}

Name AsText(std::string_view name) {
  const OctetView octets = OctetsOf(name);
  return std::vector<std::uint8_t>(octets.begin(), octets.end());
}

Name AsPaddedText(std::string_view name, std::size_t size) {
  if (name.empty() || name.size() > size) return std::nullopt;
  Name octets = AsText(name);
  octets->resize(size);
  return octets;
}

Name AsVid(std::string_view name) { return AsTwoOctets(name, 4095); }
Name AsUint16(std::string_view name) { return AsTwoOctets(name, 65535); }
Name AsIcc(std::string_view name) { return AsPaddedText(name, 13); }
Name AsIccWithCountry(std::string_view name) { return AsPaddedText(name, 15); }

/** `aa:bb:cc:dd:ee:ff/1234` */
Name AsMacAndNumber(std::string_view name) {
  constexpr std::size_t kMacText = 17;
  if (name.size() <= kMacText || name[kMacText] != '/') return std::nullopt;
  std::vector<std::uint8_t> octets;
  Writer writer(octets);
  for (std::size_t at = 0; at < kMacText; at += 3) {
    if (at > 0 && name[at - 1] != ':') return std::nullopt;
    const auto octet = ParseNumber(name.substr(at, 2), 16, 0xff);
    if (!octet) return std::nullopt;
    writer.U8(static_cast<std::uint8_t>(*octet));
  }
  const auto number = ParseNumber(name.substr(kMacText + 1), 10, 65535);
  if (!number) return std::nullopt;
  writer.U16(static_cast<std::uint16_t>(*number));
  return octets;
}

/** `00163e:0000002a` */
Name AsVpnId(std::string_view name) {
  constexpr std::size_t kOuiText = 6;
  constexpr std::size_t kIndexText = 8;
  if (name.size() != kOuiText + 1 + kIndexText || name[kOuiText] != ':') return std::nullopt;
  const auto oui = ParseNumber(name.substr(0, kOuiText), 16, 0xffffff);
  const auto index = ParseNumber(name.substr(kOuiText + 1), 16, 0xffffffff);
  if (!oui || !index) return std::nullopt;
  std::vector<std::uint8_t> octets;
  Writer writer(octets);
  writer.U8(static_cast<std::uint8_t>(*oui >> 16U));
  writer.U16(static_cast<std::uint16_t>(*oui));
  writer.U32(*index);
  return octets;
}

struct Format {
  std::int32_t code;
  std::size_t size;  ///< Octets of every name; 0: as many as the text has.
  Name (*convert)(std::string_view name);
};

constexpr std::array<Format, 3> kMdFormats{
    {{2, 0, AsText}, {3, 8, AsMacAndNumber}, {4, 0, AsText}}};
constexpr std::array<Format, 6> kMaFormats{{{1, 2, AsVid},
                                            {2, 0, AsText},
                                            {3, 2, AsUint16},
                                            {4, 7, AsVpnId},
                                            {32, 13, AsIcc},
                                            {33, 15, AsIccWithCountry}}};

template <std::size_t Size>
const Format* Find(const std::array<Format, Size>& formats, std::int32_t code) {
  const auto found = std::find_if(formats.begin(), formats.end(),
                                  [code](const Format& format) { return format.code == code; });
  return found == formats.end() ? nullptr : found;
}

template <std::size_t Size>
Name Convert(const std::array<Format, Size>& formats, std::int32_t code, std::string_view name) {
  const Format* const format = Find(formats, code);
  return format == nullptr ? std::nullopt : format->convert(name);
}

template <std::size_t Size>
std::size_t NameOctets(const std::array<Format, Size>& formats, std::int32_t code,
                       std::string_view name) {
  const Format* const format = Find(formats, code);
  return format == nullptr || format->size == 0 ? name.size() : format->size;
}

/** Appends format, length and name. */
void EncodeName(Writer& writer, std::int32_t format, const std::vector<std::uint8_t>& name) {
  writer.U8(static_cast<std::uint8_t>(format));
  writer.U8(static_cast<std::uint8_t>(name.size()));
  writer.Octets(name);
}

}  // namespace

Decoded<Maid> EncodeMaid(std::int32_t md_format, std::string_view md_name, std::int32_t ma_format,
                         std::string_view ma_name) {
  std::vector<std::uint8_t> octets;
  Writer writer(octets);
  std::size_t max_ma_name = kMaxMaNameAlone;
  if (md_format == kNoMdName) {
    writer.U8(kNoMdName);
  } else {
    const Name md = Convert(kMdFormats, md_format, md_name);
    if (!md) return Fault::Value;
    if (md->empty() || md->size() > kMaxMdName) return Fault::Maid;
    EncodeName(writer, md_format, *md);
    max_ma_name = kMaxBothNames - md->size();
  }
  const Name ma = Convert(kMaFormats, ma_format, ma_name);
  if (!ma) return Fault::Value;
  if (ma->empty() || ma->size() > max_ma_name) return Fault::Maid;
  EncodeName(writer, ma_format, *ma);
  Maid maid{};
  std::copy(octets.begin(), octets.end(), maid.begin());
  return maid;
}

std::size_t MdNameOctets(std::int32_t format, std::string_view name) {
  return format == kNoMdName ? 0 : NameOctets(kMdFormats, format, name);
}

std::size_t MaNameOctets(std::int32_t format, std::string_view name) {
  return NameOctets(kMaFormats, format, name);
}

bool IsWellFormed(const Maid& maid) {
  Reader reader{OctetView(maid)};
  if (reader.U8() != kNoMdName) {
    const std::uint8_t md_size = reader.U8();
    if (md_size == 0 || md_size > kMaxMdName) return false;
    reader.Take(md_size);
  }
  reader.U8();
  const std::uint8_t ma_size = reader.U8();
  reader.Take(ma_size);
  return reader.ok() && ma_size > 0;
}

}  // namespace cfm_mgr::pdu
