#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Builds the examples against what this build installs, and runs them.
#
# usage: check-installed.sh SOURCE-DIR BUILD-DIR SCRATCH-DIR
set -euo pipefail

source_dir=$1
build_dir=$2
scratch=$3

rm -rf "$scratch"
mkdir -p "$scratch"
cmake --install "$build_dir" --prefix "$scratch/prefix" >"$scratch/install.log"
"$source_dir/tests/examples/check-examples.sh" "$source_dir/examples" "$source_dir" "$scratch" \
  "$scratch/prefix"
