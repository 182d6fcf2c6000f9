#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Writes a manual page from Markdown.
#
# usage: man-page.sh LOWDOWN MARKDOWN PAGE METADATA...
set -eu

lowdown=$1
markdown=$2
page=$3
shift 3
for metadata; do
  set -- "$@" -M "$metadata"
  shift
done

# shellcheck disable=SC2016 # that is no command of the shell
# Elsewhere an underscore inside a word is a plain character; here it has to say so.
sed -E '/^```/,/^```/! { :next; s/([^\\])_/\1\\_/; t next; }' "$markdown" |
  "$lowdown" -s -Tman --out-no-smarty "$@" -o "$page.lowdown"
# It places the text below a term by going back a line, which does not work everywhere on a page. The
# macro .TP of man(7) does.
sed -z -E \
  's/\n\.LP\n([^\n]*)\n\.if n \\\n\.sp -1v\n\.if t \\\n\.sp -0.25v\n\.IP "" 5n\n/\n.TP\n\1\n/g' \
  "$page.lowdown" >"$page"
rm "$page.lowdown"
