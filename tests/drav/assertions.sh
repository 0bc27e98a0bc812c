# Read by every script here, with the script's own arguments: DRAV SOURCE_DIR CMAKE.
# A test is a function whose name starts with "test_"; each runs in a folder of its own.
set -uo pipefail
drav=$1
pictures=$2/docs/pictures
cmake=$3
magick=/usr/bin

export LC_ALL=C.UTF-8
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
  echo "  FAILED: $*"
  failed=1
}

# run ARGUMENT...: the tool, with its streams in the files out and err, and its status in $status.
run() {
  "$drav" "$@" >out 2>err
  status=$?
}

expect_status() {
  [ "$status" -eq "$1" ] || fail "exit status $status, not $1; standard error: $(cat err)"
}

expect_equal() {
  [ "$1" = "$2" ] || fail "'$1' is not '$2'"
}

expect_contains() {
  grep -qF -- "$2" "$1" || fail "$1 does not contain '$2' but: $(cat "$1")"
}

# expect_lines FILE COUNT
expect_lines() {
  local lines
  lines=$(wc -l <"$1")
  [ "$lines" -eq "$2" ] || fail "$1 has $lines lines, not $2: $(cat "$1")"
}

# One line, for that name, with a reason.
expect_failure_line() {
  expect_lines err 1
  grep -q "^drav: $1: ." err || fail "no line for $1 but: $(cat err)"
}

expect_file() { [ -s "$1" ] || fail "$1 is missing or empty"; }
expect_no_file() { [ ! -e "$1" ] || fail "$1 is there"; }

# No temporary file was left behind anywhere below the test's folder.
expect_nothing_left_over() {
  local left
  left=$(find . -name '.drav-*')
  [ -z "$left" ] || fail "left over: $left"
}

# expect_same_pixels FILE FILE: as another program sees them, where neither is fully transparent.
expect_same_pixels() {
  local differing
  differing=$("$magick/compare" -metric AE "$1" "$2" null: 2>&1)
  [ "$differing" = 0 ] || fail "$1 and $2: $differing pixels differ"
}

# on_terminal COMMAND: runs it with all streams on a terminal, whose output is the file typescript.
# Leaves the test where the machine has no terminals to give, as some containers do.
on_terminal() {
  if ! script -qec true /dev/null </dev/null >/dev/null 2>&1; then
    echo "  no terminal to be had: not tested"
    return 1
  fi
  script -qec "$1" typescript </dev/null >/dev/null
  status=$?
}

# expect_close FILE FILE DIFFERENCE: no component differs by more than that many of 255.
expect_close() {
  local error
  error=$("$magick/compare" -metric PAE "$1" "$2" null: 2>&1 | sed 's/ .*//')
  awk -v e="$error" -v most="$3" 'BEGIN { exit !(e <= most * 257) }' || fail "$1 and $2 differ by $error of 65535"
}

# json_of FILE KEY...: the value behind the keys, read by a JSON parser that is not ours.
json_of() {
  cat >read.cmake <<'CMAKE'
file(READ ${FILE} text)
string(JSON value GET "${text}" ${KEYS})
execute_process(COMMAND ${CMAKE_COMMAND} -E echo "${value}")
CMAKE
  local file=$1 keys
  shift
  keys=$(IFS=';'; echo "$*")
  "$cmake" "-DFILE=$file" "-DKEYS=$keys" -P read.cmake
}

# Runs every test of the script that read this file.
run_tests() {
  local total=0 name bad=0
  if [ ! -x "$magick/compare" ] || [ ! -x "$magick/convert" ]; then
    echo "ImageMagick is not installed: skipped"
    exit 77
  fi
  for name in $(declare -F | awk '$3 ~ /^test_/ { print $3 }'); do
    mkdir "$work/$name"
    cd "$work/$name" || exit 1
    failed=0
    "$name"
    total=$((total + 1))
    if [ "$failed" -eq 0 ]; then
      echo "ok      ${name#test_}"
    else
      echo "FAILED  ${name#test_}"
      bad=$((bad + 1))
    fi
    cd / && rm -rf "${work:?}/$name"
  done
  echo "$total tests, $bad failed"
  [ "$bad" -eq 0 ] && [ "$total" -gt 0 ]
}
