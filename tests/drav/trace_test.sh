#!/usr/bin/env bash
# drav trace.
. "$(dirname "$0")/assertions.sh"

# A square of 6 x 4 with soft corners in a picture of 12 x 9, its top left at 3,2.
make_square() {
  "$magick/convert" -size 12x9 xc:none -fill red -draw "rectangle 3,2 8,5" square.png
}

path_of() { sed -n 's/^d="\(.*\)"\/>$/\1/p' "$1"; }

# expect_outline_of PICTURE THRESHOLD: rendered by another program, the outline differs from the pixels above the
# threshold in nothing but the boundary pixels, those inside that have a neighbour outside.
expect_outline_of() {
  local percent
  run trace "$1" --threshold "$2" -o outline.svg
  expect_status 0
  rsvg-convert outline.svg -o rendered.png || fail "rsvg-convert cannot read it"
  percent=$(awk -v t="$2" 'BEGIN { print 100 * t }')
  "$magick/convert" "$1" -alpha extract -threshold "$percent%" -strip mask.png
  "$magick/convert" rendered.png -alpha extract -threshold 49% -strip filled.png
  # Beyond the picture everything is outside.
  "$magick/convert" mask.png -bordercolor black -border 1 -morphology EdgeIn Square -shave 1x1 boundary.png
  "$magick/convert" mask.png filled.png -compose Difference -composite \
    "(" boundary.png -negate ")" -compose Multiply -composite elsewhere.png
  expect_equal "$("$magick/convert" elsewhere.png -format '%[fx:round(mean*w*h)]' info:)" 0
  expect_equal "$("$magick/convert" filled.png -format '%[fx:maxima]' info:)" 1
}

test_a_square_is_one_path_through_the_centres_of_its_edge() {
  make_square
  run trace square.png -o square.svg
  expect_status 0
  expect_lines out 0
  expect_lines err 0
  expect_contains square.svg 'viewBox="0 0 12 9"'
  expect_contains square.svg 'fill-rule="evenodd"'
  expect_contains square.svg 'translate(0.5 0.5)'
  expect_equal "$(grep -c '<path' square.svg)" 1
  expect_equal "$(path_of square.svg)" "M3 2H8V5H3Z"
}

test_an_outline_rendered_by_another_program_is_the_mask() {
  command -v rsvg-convert >/dev/null || { echo "  no rsvg-convert: not tested"; return; }
  expect_outline_of "$pictures/marbles.png" 0.5
  expect_outline_of "$pictures/marbles.png" 0.05
  expect_outline_of "$pictures/harbour-disc.png" 0.9
}

test_holes_stay_open() {
  command -v rsvg-convert >/dev/null || { echo "  no rsvg-convert: not tested"; return; }
  "$magick/convert" -size 200x200 xc:none -fill blue -draw "circle 100,100 100,10" ring.png
  "$magick/convert" -size 200x200 xc:none -fill blue -draw "circle 110,90 110,50" hole.png
  "$drav" composite hole.png ring.png --mode DestOut -o ring.png
  expect_outline_of ring.png 0.5
  "$drav" composite "$pictures/marbles.png" "$pictures/harbour-disc.png" --mode SrcOut -o crescent.png
  expect_outline_of crescent.png 0.3
}

test_colours_and_width_are_chosen() {
  make_square
  run trace square.png --fill '#1af' --stroke orange --stroke-width 2.5 -o square.svg
  expect_contains square.svg 'fill="#11aaff" stroke="#ffa500" stroke-width="2.5"'
  run trace square.png --fill none --stroke '#010203' -o square.svg
  expect_contains square.svg 'fill="none" stroke="#010203" stroke-width="1"'
}

test_an_overlay_shows_the_line_and_leaves_the_rest() {
  make_square
  run trace square.png --overlay over.png
  expect_status 0
  local place
  for place in 3,2 8,2 8,5 3,5 5,2; do
    expect_equal "$("$magick/convert" over.png -format "%[pixel:p{$place}]" info:)" "srgba(255,0,255,1)"
  done
  expect_equal "$("$magick/convert" over.png -format "%[pixel:p{5,4}]" info:)" "srgba(255,0,0,1)"
  expect_equal "$("$magick/convert" over.png -format "%[pixel:p{1,1}] %[pixel:p{9,6}]" info:)" \
    "srgba(0,0,0,0) srgba(0,0,0,0)"
  run trace square.png --stroke '#00ff00' --stroke-width 3 --overlay over.png
  expect_equal "$("$magick/convert" over.png -format "%[pixel:p{5,1}] %[pixel:p{4,3}]" info:)" \
    "srgba(0,255,0,1) srgba(0,255,0,1)"
}

test_the_narration_is_kept_out_of_the_way() {
  make_square
  run trace square.png -o -
  expect_status 0
  expect_lines err 0
  expect_equal "$(head -c 4 out)" "<svg"
  expect_equal "$(tail -n 1 out)" "</svg>"
  cp out quiet.svg
  run trace --verbose square.png -o -
  expect_status 0
  cmp -s out quiet.svg || fail "standard output differs"
  expect_contains err "starting subpath (3, 2)"
  expect_contains err "adding line (8, 5)"
}

test_both_outputs_come_from_one_call_and_pipes_work() {
  "$drav" trace - -o outline.svg --overlay - <"$pictures/marbles.png" >over.png 2>err
  status=$?
  expect_status 0
  expect_contains outline.svg 'viewBox="0 0 300 300"'
  expect_equal "$("$magick/identify" -format '%m %wx%h' over.png)" "PNG 300x300"
}

test_thresholds_at_the_ends_work() {
  make_square
  run trace square.png --threshold 0 -o square.svg
  expect_status 0
  expect_equal "$(path_of square.svg)" "M3 2H8V5H3Z"
  run trace square.png --threshold 1 -o square.svg
  expect_status 0
  expect_equal "$(path_of square.svg)" ""
}

test_a_picture_without_alpha_says_so() {
  run trace "$pictures/harbour.jpg" -o out.svg
  expect_status 1
  expect_failure_line "$pictures/harbour.jpg"
  expect_contains err "no alpha"
  expect_no_file out.svg
}

test_misuse_exits_with_two() {
  make_square
  run trace square.png; expect_status 2
  run trace -o out.svg; expect_status 2
  run trace square.png -o - --overlay -; expect_status 2
  run trace square.png -o out.svg --overlay out.unknown; expect_status 2
  run trace square.png --overlay out.png --stroke none; expect_status 2
  local text
  for text in -0.1 1.1 nan many; do
    run trace square.png --threshold "$text" -o out.svg
    expect_status 2
  done
  for text in '#12' '#1234567' '#xyz' '#-12' reddish '" onload="' ''; do
    run trace square.png --fill "$text" -o out.svg
    expect_status 2
  done
  for text in 0 -1 nan 1000; do
    run trace square.png --stroke-width "$text" -o out.svg
    expect_status 2
  done
  expect_no_file out.svg
  expect_no_file out.png
}

run_tests
