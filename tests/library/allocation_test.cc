// SPDX-License-Identifier: Apache-2.0
// What the callbacks allocate and free: which reports are parsed at all, which are rendered. A
// program of its own, because it replaces the allocation functions.
#include <cfm/identifiers.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <new>

#include "recording_handlers.h"
#include "sample_reports.h"

namespace {

constexpr std::size_t kLarge = 10000;

// Must not allocate itself.
struct Watch {
  bool on = false;
  std::size_t largest = 0;
  std::size_t large = 0;  // how many blocks of at least kLarge octets
  std::size_t frees = 0;
  std::array<const void*, 4096> freed{};
} watch;

}  // namespace

void* operator new(std::size_t size) {
  if (watch.on) {
    watch.largest = std::max(watch.largest, size);
    watch.large += size >= kLarge ? 1U : 0U;
  }
  if (void* const block = std::malloc(size); block != nullptr) {
    return block;
  }
  throw std::bad_alloc();
}

void operator delete(void* block) noexcept {
  if (watch.on && watch.frees < watch.freed.size()) {
    watch.freed[watch.frees++] = block;
  }
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept { operator delete(block); }

namespace cfm_test {
namespace {

void StartWatch() { watch = {true, 0, 0, 0, {}}; }

void StopWatch() { watch.on = false; }

// When a block was freed first; past all that were when it was not.
std::ptrdiff_t Freed(const void* block) {
  const auto end = watch.freed.begin() + watch.frees;
  return std::find(watch.freed.begin(), end, block) - watch.freed.begin();
}

class LinktraceReplyAllocation : public ClientTest {
 protected:
  // Largest block allocated while a reply is delivered to nobody.
  std::size_t LargestBlock() {
    const std::string bytes = LinktraceReply().SerializeAsString();
    host.Take();
    StartWatch();
    host.Event(CFM_MGR_SRV_EVENT_LINKTRACE_REPLY_RX, bytes);
    StopWatch();
    return watch.largest;
  }
};

TEST_F(LinktraceReplyAllocation, NothingIsRenderedWhenDumpsAreNotLogged) {
  LargestBlock();
  const std::vector<std::string> record = host.Take();
  ASSERT_EQ(record.size(), 1U);
  const std::size_t rendering = record[0].size() - record[0].find("Transaction ID");
  EXPECT_GE(LargestBlock(), rendering);
  host.dump_level_enabled = false;
  EXPECT_LT(LargestBlock(), rendering);
}

// Notes where the parts of an entry are, and watches from then on.
class PartsHandler : public LinktraceRecorder {
 public:
  using LinktraceRecorder::LinktraceRecorder;

  void OnMepLinktraceReplyRx(const std::string&, const std::string&, std::uint16_t,
                             const cfm::LinktraceReplyEntry& reply) override {
    parts = {reply.egress_id.get(), reply.reply_ingress.get(), reply.reply_egress.get()};
    StartWatch();
  }

  std::array<const void*, 3> parts{};
};

TEST_F(LinktraceReplyAllocation, AnEntryEndsWithItsCallbackItsPartsInTheirOrder) {
  PartsHandler handler(host, "linktrace");
  client->RegisterLinktraceHandler(&handler);
  host.Event(CFM_MGR_SRV_EVENT_LINKTRACE_REPLY_RX, LinktraceReply().SerializeAsString());
  StopWatch();
  EXPECT_LT(Freed(handler.parts[0]), Freed(handler.parts[1]));
  EXPECT_LT(Freed(handler.parts[1]), Freed(handler.parts[2]));
  EXPECT_LT(Freed(handler.parts[2]), static_cast<std::ptrdiff_t>(watch.frees));
}

class ParsingWithoutHandlers : public ClientTest {
 protected:
  // Large blocks while a report with a large field that nobody knows is delivered.
  std::size_t LargeBlocks(const Report& report) {
    std::string payload = report.bytes + "\xc2\x3e\x90\x4e";  // field 1000, 10000 octets
    payload.append(kLarge, 'x');
    StartWatch();
    report.Deliver(host, payload);
    StopWatch();
    return watch.large;
  }
};

// The host copies the payload, and the library does so only to parse it.
TEST_F(ParsingWithoutHandlers, HappensOnlyForReportsThatAreLoggedOrActedUponAnyway) {
  for (const Report& report : AllReports()) {
    const std::string& name = report.name;
    const bool unparsed = name == "STATS_REPLY" || name == "LT_TRIGGER_ERROR" ||
                          name.find("STATUS_") == 0 || name.find("REMOVED_") == 0;
    constexpr std::size_t host_copies = 2;
    const std::size_t blocks = LargeBlocks(report);
    EXPECT_EQ(blocks == host_copies, unparsed) << name << ": " << blocks;
    EXPECT_GE(blocks, host_copies) << name;
  }
}

}  // namespace
}  // namespace cfm_test
