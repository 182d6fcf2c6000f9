#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# The comparison with the release notices what it is there for: each of these changes of the public
# headers has to make it fail.
#
# usage: check-abi-notices.sh SOURCE-DIR COMPILER
set -euo pipefail

source_dir=$1
compiler=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# Whether the types of the headers, changed by `sed -i ARGUMENTS...`, are still those of the release.
keeps_abi() {
  rm -rf "$scratch/include"
  cp -r "$source_dir/include" "$scratch/include"
  if [ "$#" -gt 0 ]; then
    (cd "$scratch/include/cfm" && sed -i "$@")
    if diff -r "$source_dir/include" "$scratch/include" >/dev/null; then
      echo "no such line to change: $*" >&2
      exit 2
    fi
  fi
  "$compiler" -std=c++17 -shared -fPIC -fvisibility=hidden -g -femit-class-debug-always \
    -I"$scratch/include" -I"$source_dir/platform/include" \
    "$source_dir/tests/abi/public_types.cc" -o "$scratch/types.so"
  "$source_dir/tests/abi/check-abi.sh" "$source_dir" \
    "$source_dir/packaging/abi/public_types.abi" "$scratch/types.so" >"$scratch/report"
}

must_notice() {
  echo "- $1"
  if keeps_abi "${@:2}"; then
    echo "not noticed: $1" >&2
    exit 1
  fi
}

keeps_abi
must_notice 'a virtual operation in the middle of a handler interface' \
  's/virtual void OnLoopbackStarted/virtual void OnNews() = 0;\n  &/' handlers.h
must_notice 'a virtual operation in the middle of the client' \
  's/virtual void UpdateConfigProbe/virtual void News();\n  &/' client.h
must_notice 'two slots that change places' \
  's/OnRemovedLocalMep/OnSwap/; s/OnStatusLocalMep/OnRemovedLocalMep/; s/OnSwap/OnStatusLocalMep/' \
  handlers.h
must_notice 'a member in the middle of a record' \
  's/^ *std::map<std::uint16_t, hierarchy_mep> meps;/  std::uint64_t news = 0;\n&/' hierarchy.h
must_notice 'a member of another type' \
  's/std::uint16_t interval/std::int16_t interval/' probe.h
must_notice 'an enumerator of another value' 's/Chassis = 2/Chassis = 7/' hierarchy.h
