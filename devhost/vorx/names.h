/* SPDX-License-Identifier: Apache-2.0 */
#ifndef DEVHOST_VORX_NAMES_H
#define DEVHOST_VORX_NAMES_H

#include <vorx/vorx.h>

#include <string>
#include <string_view>

namespace devhost {

/**
 * The bus numbers its connections from 0 and never uses a number again; a process identifier is
 * that number plus 1, because 0 stands for no process.
 */
std::string UniqueNameOf(vorx_pid_t pid);

/** 0 when @p unique_name is none, or its number is out of range. */
vorx_pid_t PidOf(std::string_view unique_name);

/** Letters, digits, '-' and '_', not beginning with a digit, at most 200 of them. */
bool IsProcessName(std::string_view name);

/** The well-known bus name of the process of this name. */
std::string BusNameOf(std::string_view process_name);

/** The process name in a well-known bus name; empty when it is none of ours. */
std::string_view ProcessNameOf(std::string_view bus_name);

/** The namespace of all well-known bus names of processes. */
inline constexpr std::string_view kBusNamespace = "vorx";

/** @p value as a D-Bus match rule wants it quoted. */
std::string QuoteForMatch(std::string_view value);

}  // namespace devhost

#endif
