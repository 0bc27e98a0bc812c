#!/usr/bin/env bash
# drav crop, scale and flip.
. "$(dirname "$0")/assertions.sh"

expect_size() { expect_equal "$("$magick/identify" -format '%wx%h' "$1")" "$2"; }

test_a_crop_counts_from_the_top_left() {
  local picture
  for picture in marbles.png moon.jpg; do
    run crop "$pictures/$picture" --rect 100,40,150,120 -o part.png
    expect_status 0
    "$magick/convert" "$pictures/$picture" -crop 150x120+100+40 +repage expected.png
    expect_size part.png 150x120
    expect_same_pixels expected.png part.png
  done
}

test_a_crop_reaching_beyond_the_image_keeps_what_is_there() {
  run crop "$pictures/marbles.png" --rect -20,-30,100,80 -o corner.png
  expect_status 0
  expect_size corner.png 80x50
  "$magick/convert" "$pictures/marbles.png" -crop 80x50+0+0 +repage expected.png
  expect_same_pixels expected.png corner.png
  run crop "$pictures/marbles.png" --rect 290,295,4000,4000 -o corner.png
  expect_status 0
  expect_size corner.png 10x5
}

test_a_crop_of_everything_changes_nothing() {
  run crop "$pictures/marbles.png" --rect 0,0,300,300 -o whole.png
  expect_status 0
  expect_same_pixels "$pictures/marbles.png" whole.png
}

test_a_crop_outside_the_image_fails_for_that_image_alone() {
  run crop "$pictures/marbles.png" "$pictures/moon.jpg" --rect 310,310,50,50 --to png -o parts
  expect_status 1
  expect_failure_line "$pictures/marbles.png"
  expect_contains err "outside of its 300 x 300 pixels"
  expect_equal "$(cat out)" "1 of 2 images cropped, 1 failed"
  expect_size parts/moon.png 50x50
}

test_a_size_is_given_in_pixels_or_in_percent() {
  run scale "$pictures/marbles.png" --size 120x90 -o scaled.png
  expect_status 0
  expect_size scaled.png 120x90
  run scale "$pictures/harbour.jpg" --size 50% -o scaled.png
  expect_status 0
  expect_size scaled.png 360x225
  run scale "$pictures/moon.jpg" --size 0.1% -o scaled.png
  expect_status 0
  expect_size scaled.png 1x1
  run scale "$pictures/moon.jpg" --size 100% -o scaled.png
  expect_status 0
  expect_same_pixels "$pictures/moon.jpg" scaled.png
}

test_a_reduced_image_looks_as_another_program_makes_it() {
  run scale "$pictures/harbour.jpg" --size 25% -o scaled.png
  expect_status 0
  "$magick/convert" "$pictures/harbour.jpg" -filter Triangle -resize 180x113! expected.png
  local error
  error=$("$magick/compare" -metric RMSE expected.png scaled.png null: 2>&1 | sed 's/.*(\(.*\))/\1/')
  awk -v e="$error" 'BEGIN { exit !(e < 0.02) }' || fail "differs by $error"
}

test_a_size_above_the_limits_is_refused() {
  run scale "$pictures/moon.jpg" --size 65535x65535 -o scaled.png
  expect_status 1
  expect_failure_line "$pictures/moon.jpg"
  run scale "$pictures/moon.jpg" --size 70000x1 -o scaled.png
  expect_status 1
  run scale "$pictures/moon.jpg" --size 999999999% -o scaled.png
  expect_status 1
  expect_no_file scaled.png
}

test_a_flip_exchanges_top_and_bottom_exactly() {
  local picture
  for picture in marbles.png moon.jpg; do
    run flip "$pictures/$picture" -o flipped.png
    expect_status 0
    "$magick/convert" "$pictures/$picture" -flip expected.png
    expect_same_pixels expected.png flipped.png
  done
}

test_flipping_twice_restores_the_file() {
  run convert "$pictures/marbles.png" -o copy.png
  "$drav" flip "$pictures/marbles.png" --to png -o - | "$drav" flip - -o twice.png
  cmp -s copy.png twice.png || fail "another file came out"
}

test_a_damaged_file_is_named_and_leaves_no_output() {
  head -c 3000 "$pictures/marbles.png" >short.png
  local arguments
  for arguments in "crop --rect 0,0,10,10" "scale --size 10x10" flip; do
    # shellcheck disable=SC2086
    run $arguments short.png -o out.png
    expect_status 1
    expect_failure_line short.png
    expect_no_file out.png
  done
}

test_misuse_exits_with_two() {
  local picture=$pictures/moon.jpg text
  for text in 1,2,3 1,2,3,4,5 1,2,0,4 1,2,4,-1 a,b,c,d 1,2,3, "" 99999999999999999999,0,1,1 0x10,0,5,5 nan,0,1,1; do
    run crop "$picture" --rect "$text" -o out.png
    expect_status 2
  done
  for text in 10 10x 0x5 x -5x5 10x10x10 % -5% 0% nan% inf% 1e400% "" 10.5x10; do
    run scale "$picture" --size "$text" -o out.png
    expect_status 2
  done
  run crop "$picture" -o out.png
  expect_status 2
  run scale "$picture" -o out.png
  expect_status 2
  run flip "$picture"
  expect_status 2
  expect_no_file out.png
}

run_tests
