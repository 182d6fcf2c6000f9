# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash
# Sourced by the demos: starts the programs of a system, waits for what they say, checks it, and
# leaves nothing behind.
#
# A system is a directory, $here, with its config.yaml, its bus and what its programs print; they are
# started through the command $within, if it is not empty.

# What is shown: the programs of a build tree, or the system's own with CFM_PROGRAMS=installed.
programs=${CFM_PROGRAMS:-build/release}
cfm_mgr=$programs/mgr/cfm-mgr
cfm_agent=$programs/agent/cfm-agent
if [ "$programs" = installed ]; then
  cfm_mgr=cfm-mgr
  cfm_agent=cfm-agent
fi
limit=30 # seconds to wait for anything
work=$(mktemp -d)
here=$work
within=()
declare -A pids=() # by directory and name

end() {
  local status=$?
  local process
  for process in "${!pids[@]}"; do
    kill_process "$process"
  done
  rm -rf "$work"
  [ "$status" -eq 0 ] || [ "$status" -eq 77 ] || echo "demo: FAILED" >&2
}
trap end EXIT

# As a crash: at once. The wait keeps the shell from reporting it.
kill_process() {
  kill -KILL "${pids[$1]}" 2>/dev/null || true
  wait "${pids[$1]}" 2>/dev/null || true
  unset "pids[$1]"
}

kill_now() { kill_process "$here/$1"; }

# What the programs said, without the library's log and what the demo's own queries cause.
fail() {
  echo "demo: $*" >&2
  {
    grep -v 'cache request' "$here/cfm-mgr.err" | tail -n 12 | sed 's/^/  cfm-mgr: /'
    tail -n 40 "$here/cfm-agent.out" | sed 's/^/  cfm-agent: /'
    grep -F config.yaml "$here/cfm-agent.err" | sed 's/^/  cfm-agent: /'
    sed 's/^/  bus: /' "$here/bus.err"
  } >&2 2>/dev/null || true
  exit 1
}

title() { printf '\n=== %s\n' "$*"; }

# Waits until a command succeeds.
wait_until() {
  local deadline=$((SECONDS + limit))
  until "$@"; do
    [ "$SECONDS" -lt "$deadline" ] || return 1
    sleep 0.05
  done
}

build() {
  title "Setting up and building"
  scripts/setup
  cmake --preset release -DCFM_WARNINGS_AS_ERRORS=ON >"$work/build.log" ||
    { cat "$work/build.log"; fail "cannot configure"; }
  cmake --build --preset release --target cfm-mgr cfm-agent >"$work/build.log" ||
    { cat "$work/build.log"; fail "cannot build"; }
  echo "built cfm-mgr and cfm-agent"
}

# start NAME COMMAND...
start() {
  local name=$1
  shift
  "${within[@]}" "$@" >"$here/$name.out" 2>"$here/$name.err" &
  pids[$here/$name]=$!
}

start_bus() {
  start bus dbus-daemon --session --nofork --nopidfile --address="unix:path=$here/bus"
  wait_until test -S "$here/bus" || fail "the bus does not start"
}

# Takes the server's options.
start_server() {
  start cfm-mgr "$cfm_mgr" --bus "unix:path=$here/bus" "$@"
  echo "cfm-mgr runs as process ${pids[$here/cfm-mgr]}: $*"
}

start_agent() {
  start cfm-agent "$cfm_agent" --bus "unix:path=$here/bus" \
    --config "$here/config.yaml"
  echo "cfm-agent runs as process ${pids[$here/cfm-agent]}"
}

# A second agent, for one command.
run_agent() {
  "${within[@]}" "$cfm_agent" --bus "unix:path=$here/bus" \
    --config "$here/config.yaml" --execute "$*" 2>"$here/command.err" ||
    fail "'$*' ends with status $?"
}

stop() {
  local pid=${pids[$here/$1]}
  kill -TERM "$pid"
  wait "$pid" || fail "$1 ended with status $?"
  unset "pids[$here/$1]"
  echo "$1 ended cleanly"
}

agent_said() { grep -Eq "$1" "$here/cfm-agent.out"; }

# Whether the last that the agent said of an endpoint, such as "MD MA 1" or "MD MA 1 remote 2", fits
# a pattern.
status_fits() { grep -F "MEP $1: " "$here/cfm-agent.out" | tail -n 1 | grep -Eq "$2"; }

expect_status() {
  wait_until status_fits "$1" "$2" ||
    fail "the status of MEP $1 is not '$2': $(grep -F "MEP $1: " "$here/cfm-agent.out" | tail -n 1)"
  grep -F "MEP $1: " "$here/cfm-agent.out" | tail -n 1 | sed 's/^/  /'
}

# A loopback, a linktrace and a delay measurement at the same time, because each waits some seconds
# for late replies: run_tests "MD MA MEP REMOTE-MEP". What the agents say goes into a file each.
run_tests() {
  local commands=("loopback $1 param-a=10 param-b=100" "linktrace $1"
    "delay $1 param-a=10 param-b=20")
  local command running=()
  for command in "${commands[@]}"; do
    run_agent "$command" >"$here/${command%% *}" &
    running+=($!)
  done
  local pid
  for pid in "${running[@]}"; do
    wait "$pid" || exit 1 # it has said why
  done
}

# 10 requests were sent, and this many at least are answered as they have to be.
expect_loopback() {
  sed 's/^/  /' "$here/loopback"
  awk -v least="$1" '
    / complete, / && match($0, /complete, [0-9]+ of 10 expected replies in order/) {
      split(substr($0, RSTART), words, " ")
      good = words[2] >= least && / 0 with a wrong payload$/
    }
    END { exit !good }' "$here/loopback" || fail "the loopback is not answered as it should be"
}

# The hops that replied, in the order of the path.
hops() { grep -E '^  [^ ]+ hop [0-9]+: ' "$here/linktrace" | grep -v 'no reply$'; }

linktrace_reached_the_end() { hops | tail -n 1 | grep -q 'terminal MEP'; }

# Takes the least number of hops. The last one has to be the endpoint.
expect_linktrace() {
  sed 's/^/  /' "$here/linktrace"
  linktrace_reached_the_end || fail "the linktrace does not reach the endpoint"
  [ "$(hops | wc -l)" -ge "$1" ] || fail "the linktrace has fewer than $1 hops"
  grep -Eq "complete, $(hops | wc -l) repl(y|ies)\$" "$here/linktrace" ||
    fail "the linktrace does not end with the number of its hops"
}

# Takes the least number of the 10 replies, and the least delay in microseconds.
expect_delay() {
  sed 's/^/  /' "$here/delay"
  awk -v replies="$1" -v least="$2" '
    $1 == "delay" && NF >= 4 && $2 + 0 > 0 { spread = $2 >= least && $2 <= $3 && $3 <= $4 }
    match($0, /complete, 10 sent, [0-9]+ received/) {
      split(substr($0, RSTART), words, " ")
      good = words[4] >= replies && spread
    }
    END { exit !good }' "$here/delay" || fail "the delay is not measured as it should be"
}
