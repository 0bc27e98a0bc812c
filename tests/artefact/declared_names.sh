#!/usr/bin/env bash
# usage: declared_names.sh SOURCE_DIR C_COMPILER LIBRARY...
# Every function and every datum that a public header declares is there to be linked.
set -euo pipefail
source=$1 compiler=$2
shift 2
exported=$(nm -D --defined-only "$@" | awk 'NF == 3 { sub(/@.*/, "", $3); print $3 }' | sort -u)
# Declarations with a visibility of their own are the exported ones. Each ends at its semicolon.
declared=$(echo '#include <DravKit/DravKit.h>' |
  "$compiler" -E -P -I "$source/include" -I "$source/platform/include" - | tr '\n' ' ' | tr ';' '\n' |
  grep 'visibility *( *"default" *)' | sed 's/__attribute__ *(([^)]*)*))//g' |
  grep -oE '\b(DRAV|k?C[FG]|kDRAV|_CFRuntime|__CFStringMake)[A-Za-z0-9_]*( *\(|$| *\[)' |
  grep -oE '^[A-Za-z0-9_]+' | sort -u)
[ "$(wc -l <<<"$declared")" -gt 100 ] || { echo "too few declarations found:"; echo "$declared"; exit 1; }
if missing=$(comm -23 <(echo "$declared") <(echo "$exported") | grep .); then
  echo "declared, but in no library:"
  echo "$missing"
  exit 1
fi
