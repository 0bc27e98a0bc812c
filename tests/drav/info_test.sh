#!/usr/bin/env bash
# drav info, and what it says as JSON.
. "$(dirname "$0")/assertions.sh"

test_a_photograph_is_described() {
  run info "$pictures/harbour.jpg"
  expect_status 0
  expect_contains out "format      JPEG"
  expect_contains out "size        720 x 450 pixels"
  expect_contains out "colour      RGB"
  expect_contains out "alpha       no"
  expect_contains out "profile     none"
  expect_contains out "resolution  144 x 144 dots per inch"
  expect_contains out "file        $(stat -c %s "$pictures/harbour.jpg") bytes"
}

test_json_says_the_same() {
  run info --json "$pictures/marbles.png"
  expect_status 0
  expect_equal "$(json_of out format)" PNG
  expect_equal "$(json_of out width)" 300
  expect_equal "$(json_of out height)" 300
  expect_equal "$(json_of out bitsPerComponent)" 8
  expect_equal "$(json_of out bitsPerPixel)" 32
  expect_equal "$(json_of out color)" RGB
  expect_equal "$(json_of out alpha)" ON
  expect_equal "$(json_of out profile)" ""
  expect_equal "$(json_of out fileBytes)" "$(stat -c %s "$pictures/marbles.png")"
}

test_several_files_are_one_json_array() {
  run info --json "$pictures/moon.jpg" "$pictures/marbles.png"
  expect_status 0
  expect_equal "$(json_of out 0 color)" gray
  expect_equal "$(json_of out 0 alpha)" OFF
  expect_equal "$(json_of out 1 format)" PNG
}

test_json_escapes_what_a_name_may_hold() {
  local name=$'quote" back\\slash\ttab\x01\xe9.jpg'
  cp "$pictures/moon.jpg" "$name"
  run info --json "$name"
  expect_status 0
  expect_contains out '"file": "quote\" back\\slash\ttab\u0001'
  expect_equal "$(json_of out format)" JPEG
}

test_an_embedded_profile_is_named() {
  # The tool itself embeds the profile of what it writes; with other programs this shows the same.
  run convert "$pictures/harbour.jpg" -o tagged.png
  run info tagged.png
  expect_status 0
  local line
  line=$(grep '^  profile     ' out)
  [ "$line" != "  profile     none" ] || fail "no profile in $(cat out)"
}

test_a_damaged_file_is_found_out_and_the_others_described() {
  head -c 20000 "$pictures/marbles.png" >short.png
  run info short.png "$pictures/moon.jpg"
  expect_status 1
  expect_failure_line short.png
  expect_contains out "format      JPEG"
  run info --json short.png "$pictures/moon.jpg"
  expect_status 1
  expect_equal "$(json_of out 0 format)" JPEG
}

test_standard_input_is_a_dash() {
  run info - <"$pictures/moon.jpg"
  expect_status 0
  expect_contains out "standard input"
  expect_contains out "400 x 400"
}

run_tests
