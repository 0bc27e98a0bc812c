#!/usr/bin/env bash
# usage: headers.sh SOURCE_DIR LANGUAGE COMPILER [FLAG...]
# Compiles every public header with nothing before it.
set -euo pipefail
source=$1 language=$2
shift 2
failed=0
checked=0
for root in "$source/include" "$source/platform/include"; do
  while IFS= read -r header; do
    checked=$((checked + 1))
    echo "#include <${header#"$root"/}>" |
      "$@" -x "$language" -fsyntax-only -Wall -Wextra -Wshadow -pedantic -Werror \
        -I "$source/include" -I "$source/platform/include" - || { echo "in $header"; failed=1; }
  done < <(find "$root" -name '*.h' | sort)
done
[ "$checked" -gt 10 ] || { echo "only $checked headers found"; exit 1; }
exit $failed
