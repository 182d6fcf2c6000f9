# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash
# Sourced by scripts that work on the project's files, in a checkout or in what a source archive holds.

# project_files [PATTERN...]: the files that match any of the patterns, which are folders or stand for
# whole paths as '*.md' does; all without one. What is built is left out, and so is what git ignores.
project_files() {
  if [ -e .git ] && command -v git >/dev/null; then
    git ls-files --cached --others --exclude-standard --deduplicate -- "$@"
    return
  fi
  local file pattern
  [ "$#" -gt 0 ] || set -- '*'
  find . \( -path ./build -o -path ./.git -o -type d -exec test -e {}/CMakeCache.txt \; \) -prune \
    -o \( -type f -o -type l \) -printf '%P\n' |
    LC_ALL=C sort |
    while read -r file; do
      for pattern in "$@"; do
        # shellcheck disable=SC2053 # a pattern it is
        if [[ $file == $pattern || $file == $pattern/* ]]; then
          echo "$file"
          break
        fi
      done
    done
}
