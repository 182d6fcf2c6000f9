#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# The message library exports its messages and nothing else.
#
# usage: check-message-exports.sh LIBRARY
set -euo pipefail

symbols=$("${NM:-nm}" --dynamic --defined-only --format=posix "$1" | awk '$2 != "A" {print $1}')
grep --quiet OpCacheSync <<<"$symbols"
if strangers=$(grep -v client_server <<<"$symbols" | grep -v client_5fserver); then
  printf 'also exported:\n%s\n' "$strangers" >&2
  exit 1
fi
