#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# What scripts/docs checks, without building the site: no link of a page leads nowhere, and Doxygen has
# nothing to complain about, be it a public symbol without documentation or a reference to nothing.
#
# usage: check-site.sh SOURCE-DIR SCRATCH-DIR
set -euo pipefail

scratch=$2
cd "$1"
# shellcheck source=scripts/files.sh
. scripts/files.sh

rm -rf "$scratch"
mkdir -p "$scratch"
mapfile -t pages < <(project_files '*.md')
[ "${#pages[@]}" -ge 20 ]
docs/site/pages.py "$scratch" "${pages[@]}"

if ! command -v doxygen >/dev/null; then
  echo "no doxygen: the public symbols are not looked at"
  exit 77
fi
# The same but for where it goes, and what is written there is of no use.
sed "s#build/docs#$scratch#" docs/Doxyfile - >"$scratch/Doxyfile" <<END
GENERATE_HTML = NO
GENERATE_XML = YES
XML_PROGRAMLISTING = NO
END
doxygen "$scratch/Doxyfile"
grep -q 'UpdateConfig' "$scratch"/xml/*.xml
