// SPDX-License-Identifier: Apache-2.0
#include "core/reserve_entries.h"

#include <google/protobuf/io/coded_stream.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

namespace cfm::core {
namespace {

// Entries by field number. No list has a higher one.
using Counts = std::array<int, 6>;

bool Skip(google::protobuf::io::CodedInputStream& input, unsigned wire_type) {
  std::uint64_t varint = 0;
  std::uint32_t length = 0;
  switch (wire_type) {
    case 0:
      return input.ReadVarint64(&varint);
    case 1:
      return input.Skip(8);
    case 2:
      return input.ReadVarint32(&length) && length <= std::numeric_limits<int>::max() &&
             input.Skip(static_cast<int>(length));
    case 5:
      return input.Skip(4);
    default:
      return false;
  }
}

// As far as the bytes can be followed. What comes after that is not read either; only past a group,
// which the schema does not have, protobuf reads on, and makes room as it goes.
Counts CountEntries(std::string_view bytes) {
  constexpr std::size_t longest = std::numeric_limits<int>::max();
  google::protobuf::io::CodedInputStream input(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                                               static_cast<int>(std::min(bytes.size(), longest)));
  Counts counts{};
  for (std::uint32_t tag = input.ReadTag(); tag != 0; tag = input.ReadTag()) {
    const std::uint32_t number = tag >> 3U;
    const unsigned wire_type = tag & 7U;
    if (wire_type == 2 && number < counts.size()) {
      ++counts[number];  // also of one that is cut off
    }
    if (!Skip(input, wire_type)) {
      break;
    }
  }
  return counts;
}

}  // namespace

void ReserveEntries(client_server::OpCacheSync& message, std::string_view bytes) {
  using Cache = client_server::OpCacheSync;
  const Counts counts = CountEntries(bytes);
  message.mutable_mds()->Reserve(counts[Cache::kMdsFieldNumber]);
  message.mutable_mas()->Reserve(counts[Cache::kMasFieldNumber]);
  message.mutable_meps()->Reserve(counts[Cache::kMepsFieldNumber]);
  message.mutable_probes()->Reserve(counts[Cache::kProbesFieldNumber]);
  message.mutable_sessions()->Reserve(counts[Cache::kSessionsFieldNumber]);
}

void ReserveEntries(client_server::OpReplyAllStats& message, std::string_view bytes) {
  using Stats = client_server::OpReplyAllStats;
  const Counts counts = CountEntries(bytes);
  message.mutable_local_mep_stats()->Reserve(counts[Stats::kLocalMepStatsFieldNumber]);
  message.mutable_remote_mep_stats()->Reserve(counts[Stats::kRemoteMepStatsFieldNumber]);
}

}  // namespace cfm::core
