#!/usr/bin/env bash
# drav composite and tile.
. "$(dirname "$0")/assertions.sh"

expect_format() { expect_equal "$("$magick/identify" -format '%wx%h %[channels]' "$1")" "$2"; }

# The harbour as a PNG, so that both programs see the same pixels.
harbour() { "$drav" convert "$pictures/harbour.jpg" -o harbour.png; }

test_an_image_is_laid_over_another_at_a_place_from_the_top_left() {
  harbour
  run composite "$pictures/marbles.png" harbour.png --at 200,100 -o over.png
  expect_status 0
  "$magick/convert" harbour.png "$pictures/marbles.png" -geometry +200+100 -composite -strip expected.png
  expect_close expected.png over.png 2
}

test_an_image_is_cut_at_every_edge_and_keeps_its_place() {
  harbour
  local at
  for at in -100,-80 600,-50 -150,300 640,380 -299,-299; do
    run composite "$pictures/marbles.png" harbour.png --at "$at" -o over.png
    expect_status 0
    "$magick/convert" harbour.png "$pictures/marbles.png" \
      -geometry "$(echo "+$at" | sed 's/,/+/; s/+-/-/g')" -composite -strip expected.png
    expect_close expected.png over.png 2
  done
}

test_modes_agree_with_another_program() {
  harbour
  "$drav" alpha opaque "$pictures/marbles.png" -o opaque.png
  "$drav" crop harbour.png --rect 0,100,300,300 -o under.png
  local pair
  for pair in multiply:Multiply screen:Screen DARKEN:Darken Lighten:Lighten difference:Difference \
    exclusion:Exclusion Overlay:Overlay hardlight:HardLight plus:Plus; do
    run composite opaque.png under.png --mode "${pair%:*}" -o blended.png
    expect_status 0
    "$magick/convert" under.png opaque.png -compose "${pair#*:}" -composite -strip expected.png
    expect_close expected.png blended.png 1
  done
}

test_porter_duff_modes_agree_with_another_program() {
  "$magick/convert" "$pictures/marbles.png" -rotate 90 under.png
  local pair
  for pair in SrcOver:Over DestOver:DstOver SrcIn:In DestIn:DstIn SrcOut:Out DestOut:DstOut SrcAtop:Atop \
    DestAtop:DstAtop XOR:Xor Clear:Clear CopySrc:Src CopyDest:Dst; do
    run composite "$pictures/marbles.png" under.png --mode "${pair%:*}" -o blended.png
    expect_status 0
    "$magick/convert" under.png "$pictures/marbles.png" -compose "${pair#*:}" -composite -strip expected.png
    # Over black and over white, since straight colours under little alpha are rounded coarsely.
    local ground
    for ground in black white; do
      "$magick/convert" blended.png -background "$ground" -flatten -strip a.png
      "$magick/convert" expected.png -background "$ground" -flatten -strip b.png
      expect_close a.png b.png 3
    done
  done
}

test_a_rectangle_scales_the_source() {
  harbour
  run composite "$pictures/marbles.png" harbour.png --rect 500,250,150,100 --mode copysrc -o scaled.png
  expect_status 0
  "$drav" scale "$pictures/marbles.png" --size 150x100 -o small.png
  run crop scaled.png --rect 500,250,150,100 -o part.png
  "$magick/convert" small.png -background black -flatten -strip a.png
  "$magick/convert" part.png -background black -flatten -strip b.png
  expect_close a.png b.png 2
}

test_a_scaled_source_is_cut_at_the_edge_and_not_squeezed() {
  harbour
  "$drav" composite "$pictures/marbles.png" harbour.png --rect 650,400,150,150 -o cut.png
  "$drav" scale "$pictures/marbles.png" --size 150x150 -o small.png
  run composite small.png harbour.png --at 650,400 -o expected.png
  expect_status 0
  expect_same_pixels expected.png cut.png
}

test_a_part_of_the_source_is_taken_from_the_top_left() {
  harbour
  "$drav" crop "$pictures/marbles.png" --rect 100,40,150,120 -o part.png
  "$drav" composite part.png harbour.png --at 30,60 -o expected.png
  run composite "$pictures/marbles.png" harbour.png --at 30,60 --source-rect 100,40,150,120 -o taken.png
  expect_status 0
  expect_same_pixels expected.png taken.png
}

test_grey_over_grey_stays_grey_and_colour_makes_colour() {
  run composite "$pictures/moon.jpg" "$pictures/moon.jpg" --at 100,100 --mode multiply -o gray.png
  expect_status 0
  expect_format gray.png "400x400 gray"
  "$magick/convert" "$pictures/moon.jpg" "$pictures/moon.jpg" -geometry +100+100 -compose Multiply \
    -composite -strip expected.png
  expect_close expected.png gray.png 1
  run composite "$pictures/marbles.png" "$pictures/moon.jpg" -o color.png
  expect_format color.png "400x400 srgba"
}

test_a_source_outside_of_the_destination_fails() {
  run composite "$pictures/marbles.png" "$pictures/moon.jpg" --at 400,0 -o out.png
  expect_status 1
  expect_failure_line "$pictures/marbles.png"
  expect_contains err "400 x 400"
  run composite "$pictures/marbles.png" "$pictures/moon.jpg" --source-rect 300,0,5,5 -o out.png
  expect_status 1
  expect_no_file out.png
}

test_a_destination_may_be_its_own_output() {
  harbour
  cp harbour.png same.png
  run composite "$pictures/marbles.png" same.png -o same.png
  expect_status 0
  run composite "$pictures/marbles.png" harbour.png -o other.png
  expect_same_pixels other.png same.png
}

test_tiles_cover_the_rectangle_and_nothing_else() {
  harbour
  "$drav" crop "$pictures/moon.jpg" --rect 100,100,64,48 -o tile.png
  local case corner gravity area
  for case in top-left:NorthWest bottom-right:SouthEast top-right:NorthEast bottom-left:SouthWest; do
    corner=${case%:*}
    gravity=${case#*:}
    run tile tile.png harbour.png --rect 50,60,300,200 --corner "$corner" -o tiled.png
    expect_status 0
    "$magick/convert" -size 640x480 tile:tile.png -gravity "$gravity" -crop 300x200+0+0 +repage sheet.png
    "$magick/convert" harbour.png sheet.png -geometry +50+60 -composite -strip expected.png
    expect_same_pixels expected.png tiled.png
  done
}

test_tiles_beyond_the_image_are_cut_and_keep_their_places() {
  harbour
  "$drav" crop "$pictures/moon.jpg" --rect 100,100,64,48 -o tile.png
  run tile tile.png harbour.png --rect -30,-20,2000,1000 -o tiled.png
  expect_status 0
  "$magick/convert" -size 832x576 tile:tile.png -crop 720x450+30+20 +repage expected.png
  expect_same_pixels expected.png tiled.png
  run tile tile.png harbour.png -o tiled.png
  "$magick/convert" -size 768x480 tile:tile.png -crop 720x450+0+0 +repage expected.png
  expect_same_pixels expected.png tiled.png
}

test_a_tile_larger_than_the_rectangle_is_cut() {
  run tile "$pictures/moon.jpg" "$pictures/moon.jpg" --rect 10,20,30,40 --corner bottom-right -o tiled.png
  expect_status 0
  "$magick/convert" "$pictures/moon.jpg" "(" "$pictures/moon.jpg" -gravity SouthEast -crop 30x40+0+0 +repage \
    -gravity NorthWest ")" -gravity NorthWest -geometry +10+20 -composite -strip expected.png
  expect_same_pixels expected.png tiled.png
  expect_format tiled.png "400x400 gray"
}

test_tiles_of_a_part_blend_by_the_mode() {
  run tile "$pictures/moon.jpg" "$pictures/moon.jpg" --source-rect 0,0,100,80 --mode difference -o tiled.png
  expect_status 0
  "$magick/convert" "$pictures/moon.jpg" -crop 100x80+0+0 +repage tile.png
  "$magick/convert" "$pictures/moon.jpg" "(" -size 400x400 tile:tile.png ")" -compose Difference -composite \
    expected.png
  expect_close expected.png tiled.png 1
}

test_opaque_tiles_over_an_opaque_image_stay_opaque() {
  harbour
  run tile "$pictures/moon.jpg" harbour.png --mode xor -o tiled.png
  expect_status 0
  expect_equal "$("$magick/convert" tiled.png -format '%[channels] %[fx:minima]' info:)" "srgb 1"
}

test_misuse_exits_with_two() {
  local picture=$pictures/moon.jpg
  run composite "$picture" -o out.png; expect_status 2
  run composite "$picture" "$picture" --mode nonsense -o out.png; expect_status 2
  expect_contains err "SoftLight"
  run composite "$picture" "$picture" --at 1 -o out.png; expect_status 2
  run composite "$picture" "$picture" --at 1,2 --rect 0,0,5,5 -o out.png; expect_status 2
  run composite "$picture" "$picture" --rect 0,0,0,5 -o out.png; expect_status 2
  run composite - - --to png -o out.png; expect_status 2
  run tile "$picture" "$picture" --corner middle -o out.png; expect_status 2
  run tile "$picture" "$picture" --rect 1,2,3 -o out.png; expect_status 2
  expect_no_file out.png
}

run_tests
