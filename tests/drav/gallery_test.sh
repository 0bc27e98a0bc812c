#!/usr/bin/env bash
# drav gallery.
. "$(dirname "$0")/assertions.sh"

source_picture=$pictures/marbles.png
destination_picture=$pictures/harbour-disc.png

# cell COLUMN ROW FILE: cuts a picture of 300 x 300 out of sheet.png. Row 0 is the heading.
cell() {
  local y=$((25 + $2 * 373))
  [ "$2" -eq 0 ] || y=$((y + 25))
  "$magick/convert" sheet.png -crop "300x300+$((25 + $1 * 325))+$y" +repage "$3"
}

test_every_cell_shows_what_composite_makes() {
  run gallery "$source_picture" "$destination_picture" --cell 300 -o sheet.png
  expect_status 0
  expect_lines out 0
  cell 0 1 ground.png # nothing is left by Clear but the checkerboard
  local index=0 mode
  for mode in Clear CopySrc CopyDest SrcOver DestOver SrcIn DestIn SrcOut DestOut SrcAtop DestAtop XOR Plus \
    Multiply Screen Overlay Darken Lighten ColorDodge ColorBurn HardLight SoftLight Difference Exclusion; do
    cell $((index % 6)) $((index / 6 + 1)) shown.png
    "$drav" composite "$source_picture" "$destination_picture" --mode "$mode" -o blended.png
    "$magick/convert" ground.png blended.png -composite expected.png
    expect_close expected.png shown.png 2
    index=$((index + 1))
  done
}

test_the_two_images_stand_above() {
  run gallery "$source_picture" "$destination_picture" --cell 300 -o sheet.png
  cell 0 1 ground.png
  local column=0 picture
  for picture in "$source_picture" "$destination_picture"; do
    cell "$column" 0 shown.png
    "$magick/convert" ground.png "$picture" -composite expected.png
    expect_close expected.png shown.png 2
    column=$((column + 1))
  done
}

# Ink in the strip below each cell, and none in the margin that parts the columns.
test_every_cell_is_labelled() {
  run gallery "$source_picture" "$destination_picture" --cell 300 -o sheet.png
  local row column x y
  for row in 1 2 3 4; do
    for column in 0 1 2 3 4 5; do
      x=$((25 + column * 325)) y=$((50 + row * 373 + 300))
      expect_equal "$("$magick/convert" sheet.png -crop "300x48+$x+$y" -format '%[fx:maxima>0.5]' info:)" 1
      expect_equal "$("$magick/convert" sheet.png -crop "20x1000+$((x - 25))+400" +repage -format '%k' info:)" 1
    done
  done
}

test_an_image_of_another_shape_is_not_distorted() {
  run gallery "$pictures/moon.jpg" "$pictures/harbour.jpg" --cell 128 -o sheet.png
  expect_status 0
  # 720 x 450 becomes 128 x 80, and the square moon 80 x 80 in the middle of it.
  "$magick/convert" sheet.png -crop 128x80+10+10 +repage shown.png
  "$drav" scale "$pictures/moon.jpg" --size 80x80 -o moon.png
  "$magick/convert" shown.png -crop 80x80+24+0 +repage -strip middle.png
  "$magick/convert" moon.png -colorspace sRGB -strip expected.png
  expect_close expected.png middle.png 2
}

test_sizes_from_tiny_to_large_work() {
  local side
  for side in 32 33 500; do
    run gallery "$source_picture" "$destination_picture" --cell "$side" -o sheet.png
    expect_status 0
    expect_file sheet.png
  done
  "$magick/convert" -size 1x4000 gradient: tall.png
  run gallery tall.png "$source_picture" -o sheet.png
  expect_status 0
  run gallery "$source_picture" tall.png -o sheet.png
  expect_status 0
}

test_misuse_exits_with_two() {
  run gallery "$source_picture" -o sheet.png; expect_status 2
  run gallery "$source_picture" "$source_picture" --cell 5 -o sheet.png; expect_status 2
  run gallery "$source_picture" "$source_picture" --cell 5000 -o sheet.png; expect_status 2
  run gallery - - --to png -o sheet.png; expect_status 2
  expect_no_file sheet.png
}

run_tests
