#!/usr/bin/env bash
# drav gray, invert, alpha and mask.
. "$(dirname "$0")/assertions.sh"

expect_channels() { expect_equal "$("$magick/identify" -format '%[channels]' "$1")" "$2"; }

# pixels WIDTH BYTE...: a PNG of red, green, blue, alpha bytes, made by another program.
pixels() {
  local width=$1
  shift
  printf "$(printf '\\x%02x' "$@")" | "$magick/convert" -size "${width}x1" -depth 8 rgba:- pixels.png
}

# Red, green, blue and alpha of each pixel of a file, as another program reads them.
bytes_of() { "$magick/convert" "$1" -depth 8 rgba:- | od -An -v -tu1 -w4 | sed 's/^ *//; s/  */ /g'; }

test_grey_is_weighted_for_the_eye() {
  pixels 4 255 0 0 255 0 255 0 255 0 0 255 255 200 100 50 255
  run gray pixels.png -o gray.png
  expect_status 0
  expect_channels gray.png gray
  expect_equal "$(bytes_of gray.png | cut -d' ' -f1 | paste -sd' ')" "77 150 28 125"
}

test_grey_in_the_same_format_is_the_mean_and_keeps_alpha() {
  pixels 4 255 0 0 255 30 60 90 128 1 0 0 255 10 20 30 3
  run gray --keep-format pixels.png -o gray.png
  expect_status 0
  expect_equal "$(bytes_of gray.png | paste -sd,)" "85 85 85 255,60 60 60 128,0 0 0 255,20 20 20 3"
}

test_a_grey_image_stays_as_it_is() {
  run gray "$pictures/moon.jpg" -o gray.png
  expect_status 0
  expect_same_pixels "$pictures/moon.jpg" gray.png
  run gray --keep-format "$pictures/moon.jpg" -o gray.png
  expect_status 0
  expect_same_pixels "$pictures/moon.jpg" gray.png
}

test_the_negative_keeps_alpha_exactly() {
  run invert "$pictures/marbles.png" -o negative.png
  expect_status 0
  "$magick/convert" "$pictures/marbles.png" -channel RGB -negate expected.png
  expect_same_pixels expected.png negative.png
  run invert negative.png -o positive.png
  expect_same_pixels "$pictures/marbles.png" positive.png
}

test_the_negative_of_a_grey_image_is_grey() {
  run invert "$pictures/moon.jpg" -o negative.png
  expect_status 0
  expect_channels negative.png gray
  "$magick/convert" "$pictures/moon.jpg" -negate expected.png
  expect_same_pixels expected.png negative.png
}

test_the_opaque_negative_turns_what_was_clear_white() {
  pixels 3 0 0 0 0 255 255 255 255 10 200 30 255
  run invert --opaque pixels.png -o negative.png
  expect_status 0
  expect_equal "$(bytes_of negative.png | paste -sd,)" "255 255 255 255,0 0 0 255,245 55 225 255"
}

test_alpha_is_added_once() {
  run alpha add "$pictures/moon.jpg" -o moon.png
  expect_status 0
  expect_channels moon.png srgba
  expect_equal "$("$magick/convert" moon.png -alpha extract -format '%[fx:minima]' info:)" 1
  run alpha add "$pictures/marbles.png" -o marbles.png
  expect_same_pixels "$pictures/marbles.png" marbles.png
}

test_removing_alpha_shows_the_colours() {
  pixels 4 255 0 0 128 10 20 30 255 200 100 50 0 0 255 0 255
  run alpha remove pixels.png -o opaque.png
  expect_status 0
  expect_channels opaque.png srgb
  expect_lines err 0
  expect_equal "$(bytes_of opaque.png | paste -sd,)" "255 0 0 255,10 20 30 255,0 0 0 255,0 255 0 255"
  run alpha remove "$pictures/harbour.jpg" -o same.png
  run convert "$pictures/harbour.jpg" -o expected.png
  expect_same_pixels expected.png same.png
}

test_alpha_is_extracted_as_grey() {
  run alpha extract "$pictures/marbles.png" -o alpha.png
  expect_status 0
  expect_channels alpha.png gray
  "$magick/convert" "$pictures/marbles.png" -alpha extract -strip expected.png
  expect_same_pixels expected.png alpha.png
  run alpha extract "$pictures/moon.jpg" -o alpha.png
  expect_equal "$("$magick/convert" alpha.png -format '%[fx:minima] %wx%h' info:)" "1 400x400"
}

test_opaque_is_the_image_over_black() {
  run alpha opaque "$pictures/marbles.png" -o opaque.png
  expect_status 0
  "$magick/convert" "$pictures/marbles.png" -background black -flatten expected.png
  expect_close expected.png opaque.png 1
  expect_equal "$("$magick/convert" opaque.png -alpha extract -format '%[fx:minima]' info:)" 1
}

test_a_mask_becomes_the_alpha() {
  run scale "$pictures/harbour.jpg" --size 400x400 -o harbour.png
  run mask harbour.png "$pictures/moon.jpg" -o masked.png
  expect_status 0
  "$magick/convert" masked.png -alpha extract -strip alpha.png
  expect_same_pixels "$pictures/moon.jpg" alpha.png
  "$magick/convert" harbour.png "$pictures/moon.jpg" -compose Multiply -composite -strip expected.png
  "$magick/convert" masked.png -background black -flatten flat.png
  expect_close expected.png flat.png 2
}

test_a_premultiplied_image_is_not_multiplied_again() {
  run alpha opaque "$pictures/marbles.png" -o colours.png
  run alpha extract "$pictures/marbles.png" -o mask.png
  run mask colours.png mask.png --premultiplied -o joined.png
  expect_status 0
  "$magick/convert" joined.png -background black -flatten flat.png
  expect_close colours.png flat.png 1
}

test_a_mask_of_another_size_is_refused() {
  run mask "$pictures/marbles.png" "$pictures/moon.jpg" -o out.png
  expect_status 1
  expect_failure_line "$pictures/marbles.png"
  expect_contains err "300 x 300"
  expect_contains err "400 x 400"
  expect_no_file out.png
}

test_the_mask_file_is_the_one_that_is_named_when_it_is_bad() {
  echo text >bad.png
  run mask "$pictures/marbles.png" bad.png -o out.png
  expect_status 1
  expect_failure_line bad.png
  run mask "$pictures/marbles.png" missing.png -o out.png
  expect_failure_line missing.png
  expect_no_file out.png
}

test_several_images_and_pipes_work() {
  run alpha extract "$pictures/marbles.png" "$pictures/moon.jpg" --to png -o alphas
  expect_status 0
  expect_file alphas/marbles.png
  expect_file alphas/moon.png
  "$drav" invert - --to png -o - <"$pictures/marbles.png" | "$drav" alpha remove - --to jpg -o - >piped.jpg 2>err
  expect_lines err 0
  expect_equal "$("$magick/identify" -format '%m %wx%h' piped.jpg)" "JPEG 300x300"
  run alpha extract "$pictures/marbles.png" -o mask.png
  "$drav" mask "$pictures/marbles.png" - --to png -o - <mask.png >masked.png
  expect_equal "$("$magick/identify" -format '%m %wx%h' masked.png)" "PNG 300x300"
}

test_misuse_exits_with_two() {
  local picture=$pictures/moon.jpg
  run alpha "$picture" -o out.png; expect_status 2
  run alpha nonsense "$picture" -o out.png; expect_status 2
  run alpha add "$picture"; expect_status 2
  run mask "$picture" -o out.png; expect_status 2
  run mask - - -o out.png; expect_status 2
  run mask "$picture" "$picture" "$picture" -o out.png; expect_status 2
  run gray; expect_status 2
  run invert "$picture" -o out.unknown; expect_status 2
  expect_no_file out.png
}

run_tests
