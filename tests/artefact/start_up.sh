#!/usr/bin/env bash
# usage: start_up.sh LIBRARY
# The library has no constructor of its own: .init_array holds one entry, the compiler's frame_dummy,
# and nothing is left over from static initialisers of C++.
set -euo pipefail
size=$(readelf -SW "$1" | sed 's/^ *\[ *[0-9]*\] *//' | awk '$1 == ".init_array" { print $5 }')
bytes=$((16#${size:-0}))
if [ "$bytes" -gt 8 ]; then
  echo "$1: .init_array has $((bytes / 8)) entries"
  nm -C "$1" | grep -iE '_GLOBAL__sub_I|__static_initialization' || true
  exit 1
fi
