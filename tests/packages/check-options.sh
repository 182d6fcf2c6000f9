#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Holds what a program says with --help against its manual page and its completions: the options, and
# the commands and exit statuses of a program that has them.
#
# usage: check-options.sh PROGRAM PAGE COMPLETIONS-DIR
set -euo pipefail

program=$1
page=$2
completions=$3
name=$(basename "$program")
help=$("$program" --help)

status=0
# compare WHAT WHERE EXPECTED FOUND, of one word a line each
compare() {
  if ! diff <(sort -u <<<"$3") <(sort -u <<<"$4") >"$scratch/difference"; then
    echo "$name: the $1 of --help (<) and of $2 (>) differ:" >&2
    grep '^[<>]' "$scratch/difference" >&2
    status=1
  fi
}
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

section_of_help() { sed -n "/^$1:\$/,/^\$/p" <<<"$help"; }
section_of_page() { sed -n "/^# $1\$/,/^# /p" "$page"; }
# The terms of a section's definitions, each followed by its text.
terms() { section_of_page "$1" | grep -B 1 '^: ' | grep '^\*\*'; }

options=$(section_of_help Options | grep -oE '^  -[-,a-z]+' | tr -s ' ,' '\n' | grep .)
[ "$(wc -l <<<"$options")" -ge 5 ] || {
  echo "$name --help tells hardly any options" >&2
  exit 1
}
long_options=$(grep '^--' <<<"$options")

compare options "$page" "$options" \
  "$(terms OPTIONS | grep -oE '\*\*-[-a-z]+\*\*' | tr -d '*')"

# What a spec of _arguments begins with: options that exclude it, then itself.
compare options "_$name" "$options" \
  "$(sed -nE "s/^ +'(\([^)]*\))?\*?'?//p" "$completions/_$name" | sed 's/\[.*//' |
    sed 's#[{,]#\n#g' | grep -oE '^-[-a-z]+')"

# shellcheck source=/dev/null
. "$completions/$name.bash"
function=_${name//-/_}
# What bash offers for the last of these words.
offers() {
  COMP_WORDS=("$name" "$@")
  COMP_CWORD=$#
  COMPREPLY=()
  "$function"
  printf '%s\n' "${COMPREPLY[@]}"
}
compare "long options" "$name.bash" "$long_options" "$(offers --)"

# Behind an option that takes a value come values of its kind, behind another one options.
cd "$scratch"
touch 'a file'
while IFS=: read -r names kind choices; do
  for option in ${names//,/ }; do
    expected='' found=$(offers "$option" --)
    if [ -n "$choices" ]; then
      expected=${choices//,/$'\n'} found=$(offers "$option" '')
    elif [ "$kind" = FILE ]; then
      expected='a file' found=$(offers "$option" a)
    elif [ -z "$kind" ]; then
      expected=--help found=$(offers "$option" --h)
    fi
    [ "$expected" = "$found" ] || {
      echo "$name.bash offers '$found' behind $option, not '$expected'" >&2
      status=1
    }
  done
done < <(section_of_help Options | grep -vE '^  -h,|^  --version' |
  sed -nE 's/^  (-[-,a-z]+) +([A-Z][A-Z]+\b)?(:\{([a-z,]+)\})?.*/\1:\2:\4/p')

if grep -q '^Commands:$' <<<"$help"; then
  commands=$(section_of_help Commands | grep -oE '^  [a-z]+')
  commands=${commands// /}
  compare commands "$page" "$commands" \
    "$(terms COMMANDS | grep -oE '^\*\*[a-z]+\*\*' | tr -d '*')"
  for option in -x --execute; do
    compare commands "$name.bash behind $option" "$commands" "$(offers "$option" '')"
  done
  compare commands "_$name" "$commands" \
    "$(sed -nE 's/.*:command:\(([a-z ]*)\).*/\1/p' "$completions/_$name" | tr ' ' '\n')"
  while IFS= read -r command; do
    # The same arguments, in the same order, too.
    said=$(section_of_help Commands | sed -n "s/^  \($command\b\)/\1/p")
    written=$(terms COMMANDS | grep -E "^\*\*$command\*\*" | tr -d '*')
    compare arguments "$page" "$said" "$written"
  done <<<"$commands"
  compare "exit statuses" "$page" "$(section_of_help 'Exit status' | grep -oE '^  [0-9]' | tr -d ' ')" \
    "$(terms 'EXIT STATUS' | tr -d '*')"
fi
exit "$status"
