#!/usr/bin/env bash
# usage: file_sizes.sh SOURCE_DIR
# A repository stays quick to clone: no file above 400 KB.
set -euo pipefail
cd "$1"
if git rev-parse --is-inside-work-tree >/dev/null 2>&1; then
  list() { git ls-files -z; }
else
  list() { find . -path ./.git -prune -o -path ./build -prune -o -path ./demo -prune -o -type f -print0; }
fi
failed=0
while IFS= read -r -d '' file; do
  [ -f "$file" ] || continue
  bytes=$(stat -c %s -- "$file")
  if [ "$bytes" -gt 400000 ]; then
    echo "$file: $bytes bytes"
    failed=1
  fi
done < <(list)
exit $failed
