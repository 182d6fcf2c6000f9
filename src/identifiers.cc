// SPDX-License-Identifier: Apache-2.0
#include <cfm/identifiers.h>

#include <cstddef>
#include <cstdint>

namespace {

// Every descriptor of a block or group holds the address of the one string that names it.
constexpr char kServerBlock[] = "bC";
constexpr char kC2sBlock[] = "cC";
constexpr char kS2cBlock[] = "dC";
constexpr char kServerGroup[] = "CFMM";

template <const char* Block, std::uint8_t Number>
constexpr vorx_sig_descriptor kSignal{Block, Number, {}};

template <std::uint32_t Number>
constexpr vorx_event_descriptor kEvent{kServerGroup, Number};

// On a 32-bit target this is the very layout that the middleware reads.
static_assert(sizeof(void*) != 4 ||
              (sizeof(vorx_sig_descriptor) == 8 && offsetof(vorx_sig_descriptor, block) == 0 &&
               offsetof(vorx_sig_descriptor, number) == 4 &&
               offsetof(vorx_sig_descriptor, reserved) == 5));
static_assert(sizeof(void*) != 4 ||
              (sizeof(vorx_event_descriptor) == 8 && offsetof(vorx_event_descriptor, group) == 0 &&
               offsetof(vorx_event_descriptor, number) == 4));

}  // namespace

const char* const CFM_MGR_PROCESS = "cfm-mgr";
const char* const CFM_MGR_SIGBLOCK = kServerBlock;
const char* const CFM_MGR_C2S_SIGBLOCK = kC2sBlock;
const char* const CFM_MGR_S2C_SIGBLOCK = kS2cBlock;
const char* const CFM_MGR_SRV_EVENTGROUP = kServerGroup;

const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_MD_CREATE = &kSignal<kC2sBlock, 1>;
const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_MD_UPDATE = &kSignal<kC2sBlock, 2>;
const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_MD_DELETE = &kSignal<kC2sBlock, 3>;
const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_MA_CREATE = &kSignal<kC2sBlock, 4>;
const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_MA_UPDATE = &kSignal<kC2sBlock, 5>;
const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_MA_DELETE = &kSignal<kC2sBlock, 6>;
const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_MEP_CREATE = &kSignal<kC2sBlock, 7>;
const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_MEP_UPDATE = &kSignal<kC2sBlock, 8>;
const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_MEP_DELETE = &kSignal<kC2sBlock, 9>;
const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_CACHE_GET = &kSignal<kC2sBlock, 10>;
const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_STATS_GET = &kSignal<kC2sBlock, 11>;
const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_STATS_CLEAR = &kSignal<kC2sBlock, 12>;
const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_STATUS_GET_ALL = &kSignal<kC2sBlock, 13>;
const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_LT_TRIGGER = &kSignal<kC2sBlock, 14>;
const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_LB_TRIGGER = &kSignal<kC2sBlock, 15>;
const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_DM_TRIGGER = &kSignal<kC2sBlock, 16>;
const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_DM_PROBE_CREATE = &kSignal<kC2sBlock, 17>;
const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_DM_PROBE_DELETE = &kSignal<kC2sBlock, 18>;
const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_DM_SESSION_CREATE = &kSignal<kC2sBlock, 19>;
const vorx_sig_descriptor* const CFM_MGR_C2S_SIG_DM_SESSION_DELETE = &kSignal<kC2sBlock, 20>;

const vorx_sig_descriptor* const CFM_MGR_S2C_SIG_CACHE_REPLY = &kSignal<kS2cBlock, 1>;
const vorx_sig_descriptor* const CFM_MGR_S2C_SIG_STATS_REPLY = &kSignal<kS2cBlock, 2>;
const vorx_sig_descriptor* const CFM_MGR_S2C_SIG_LT_TRIGGER_ERROR = &kSignal<kS2cBlock, 3>;
const vorx_sig_descriptor* const CFM_MGR_S2C_SIG_LB_TRIGGER_ERROR = &kSignal<kS2cBlock, 4>;
const vorx_sig_descriptor* const CFM_MGR_S2C_SIG_DM_TRIGGER_ERROR = &kSignal<kS2cBlock, 5>;

const vorx_sig_descriptor* const CFM_MGR_SIG_TICK_SCHED = &kSignal<kServerBlock, 1>;

const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP = &kEvent<1>;
const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP = &kEvent<2>;
const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_REMOVED_LOCAL_MEP = &kEvent<3>;
const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_REMOVED_REMOTE_MEP = &kEvent<4>;
const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_LINKTRACE_STARTED = &kEvent<5>;
const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_LINKTRACE_REPLY_RX = &kEvent<6>;
const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_LINKTRACE_ENDED = &kEvent<7>;
const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_LOOPBACK_STARTED = &kEvent<8>;
const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_LOOPBACK_REPLY_RX = &kEvent<9>;
const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_LOOPBACK_ENDED = &kEvent<10>;
const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_STARTED = &kEvent<11>;
const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_REPLY_RX = &kEvent<12>;
const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_ENDED = &kEvent<13>;
const vorx_event_descriptor* const CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_SESSION_ENDED = &kEvent<14>;
