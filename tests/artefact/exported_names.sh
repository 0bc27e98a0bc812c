#!/usr/bin/env bash
# usage: exported_names.sh LIBRARY PATTERN
# Every symbol that leaves the library matches the pattern (an extended regular expression over
# NAME@@VERSION); the version nodes themselves are no symbols.
set -euo pipefail
names=$(nm -D --defined-only --with-symbol-versions "$1" | awk '$2 != "A" { print $3 }')
[ -n "$names" ] || { echo "$1 exports nothing"; exit 1; }
if strangers=$(grep -vE "$2" <<<"$names"); then
  echo "$1 exports what is not its interface:"
  echo "$strangers"
  exit 1
fi
