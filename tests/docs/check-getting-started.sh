#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Runs what the first guide has its readers type after the demo, as it stands there but for the places:
# a server on a bus, the agent, the installation, and the program of the guide, built as the guide says
# with pkg-config and with CMake.
#
# usage: check-getting-started.sh SOURCE-DIR BUILD-DIR SCRATCH-DIR
set -euo pipefail

source_dir=$1
build_dir=$2
scratch=$3
# shellcheck source=tests/packages/background.sh
. "$source_dir/tests/packages/background.sh"

rm -rf "$scratch"
mkdir -p "$scratch"
cd "$scratch"
start_bus bus.log
limit=120 # a compiler runs, too

# block LANGUAGE TEXT: the fenced block of the guide in this language that has the text, with the places
# of this check. No such block, or another one, is a failure.
block() {
  awk -v language="$1" -v text="$2" '
    /^```/ && !inside { inside = 1; block = ""; wanted = $0 == "```" language; next }
    /^```/ { inside = 0; if (wanted && index(block, text)) { found++; printf "%s", block } }
    inside { block = block $0 "\n" }
    END { if (found != 1) print "the guide has " found + 0 " blocks with " text > "/dev/stderr"
          exit found != 1 }' "$source_dir/docs/guides/getting-started.md" |
    sed -E -e "s#/tmp/cfm( |\\)|\$)#$scratch/prefix\1#g" -e "s#unix:path=/tmp/cfm-bus#$VORX_BUS_ADDRESS#g" \
      -e "s#/tmp/line.yaml#$scratch/line.yaml#g" -e "s#(^| )build/release#\1$build_dir#g" \
      -e "s# mgr/examples# $source_dir/mgr/examples#g"
}
fail() {
  echo "check-getting-started: $*" >&2
  tail -n 20 ./*.log ./*.out >&2
  exit 1
}

block sh "mgr/cfm-mgr --bus" >server.sh
: >server.log
bash -e server.sh 2>server.log &
pids+=($!)
await grep -q 'serving as' server.log || fail "the server does not start"

# The agent with a prompt takes commands from a pipe as well.
block sh "cfm-agent --bus" >agent.sh
answered() {
  bash -e agent.sh >agent.out 2>agent.log <<<$'show\nloopback example line-1 1 2\nhelp'
}
# The first CCM of the other end may take a second.
await answered || fail "the agent's commands fail"
grep -q 'complete, 1 of 1 ' agent.out || fail "no reply to the loopback"

block sh "cmake --install" >install.sh
bash -e install.sh >install.log

block cpp "int main" >watch.cc
block "" "there is a server" >expected
[ "$(wc -l <expected)" -eq 3 ] || fail "the guide does not show three lines"


says_all() { diff <(sort expected) <(grep -Fxf expected watch.out | sort -u) >/dev/null; }

says_all_or_ended() { says_all || ! kill -0 "$1" 2>/dev/null; }

# run BLOCK: builds the program as a block of the guide says and runs it, which that does last.
run() {
  sed -E '$s#[^ ]*watch$#exec &#' "$1" >run.sh
  bash -e run.sh >watch.out 2>watch.log &
  pids+=($!)
  await says_all_or_ended "${pids[-1]}"
  says_all || fail "the program of $1 does not print what the guide shows"
  kill "${pids[-1]}"
  wait "${pids[-1]}" || true # it knows no signals
  echo "the program of $1 prints what the guide shows"
}
block sh "pkg-config --cflags" >with-pkg-config
run with-pkg-config
block cmake "find_package" >CMakeLists.txt
block sh "cmake -S ." >with-cmake
run with-cmake
