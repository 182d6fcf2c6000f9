#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# The client library exports its public API and nothing else.
#
# usage: check-exports.sh LIBRARY EXPECTED-SYMBOLS
set -euo pipefail

"${NM:-nm}" --dynamic --defined-only --format=posix "$1" | awk '$2 != "A" {print $1}' | sed 's/@.*//' |
  c++filt | LC_ALL=C sort -u | diff --unified "$2" -
