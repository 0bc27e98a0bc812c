#!/usr/bin/env bash
# The command line itself.
. "$(dirname "$0")/assertions.sh"

expect_misuse() {
  expect_status 2
  expect_lines out 0
  expect_contains err "drav: "
}

test_help_is_everywhere() {
  run --help
  expect_status 0
  expect_contains out "convert"
  expect_contains out "--limits"
  local command
  for command in info convert formats crop scale flip gray invert alpha "alpha add" mask composite tile gallery trace recolor; do
    # shellcheck disable=SC2086
    run $command --help
    expect_status 0
    expect_lines err 0
    [ -s out ] || fail "no help for $command"
  done
  run convert --help
  expect_contains out "--to"
  expect_contains out "made if it does not exist"
}

test_the_version_is_told() {
  run --version
  expect_status 0
  grep -qE '^drav [0-9]+\.[0-9]+\.[0-9]+$' out || fail "$(cat out)"
}

test_misuse_exits_with_two_and_does_nothing() {
  local picture=$pictures/moon.jpg
  run; expect_misuse
  run nonsense; expect_misuse
  run convert; expect_misuse
  run convert "$picture"; expect_misuse
  run convert -o out.png; expect_misuse
  run convert "$picture" -o out.png --nonsense; expect_misuse
  run convert "$picture" -o out.unknown; expect_misuse
  run convert "$picture" -o plain; expect_misuse
  run convert "$picture" -o out.png --to unknown; expect_misuse
  run convert "$picture" -o -; expect_misuse
  run convert "$picture" "$picture" -o folder; expect_misuse
  run convert "$picture" "$picture" --to png -o -; expect_misuse
  run convert --limits pixels=many "$picture" -o out.png; expect_misuse
  run convert --limits nonsense=1 "$picture" -o out.png; expect_misuse
  run convert --limits side=99999999999999999999 "$picture" -o out.png; expect_misuse
  run info; expect_misuse
  expect_no_file out.png
  expect_no_file plain
  expect_no_file folder
}

test_several_inputs_do_not_go_into_a_file() {
  echo "keep me" >file
  run convert "$pictures/moon.jpg" "$pictures/harbour.jpg" --to png -o file
  expect_misuse
  expect_equal "$(cat file)" "keep me"
}

test_an_image_does_not_go_to_a_terminal() {
  on_terminal "'$drav' convert '$pictures/moon.jpg' --to png -o -" || return
  cp typescript err
  expect_status 2
}

test_a_full_standard_output_is_a_failure() {
  "$drav" formats >/dev/full 2>err
  status=$?
  expect_status 1
}

run_tests
