#!/usr/bin/env bash
# Pictures that draw: what drav info says of them, and drawing them at another size.
. "$(dirname "$0")/assertions.sh"

# bytes HEX...: these bytes.
bytes() {
  local hex
  for hex in $*; do printf "\\x$hex"; done
}

# A version 1 picture, 40 wide and 20 high: an oval over its left half, a line of one pixel down its right.
make_drawing() {
  bytes 00 00  00 00 00 00 00 14 00 28  11 01 \
    51  00 00 00 00 00 14 00 14 \
    20  00 00 00 1E 00 13 00 1E \
    FF
}

# A version 2 picture of 30 x 20 at 10,5, at 144 dots an inch, with two opcodes and padding.
make_extended() {
  bytes 00 00  00 05 00 0A 00 0F 00 19  00 11 02 FF \
    0C 00  FF FE 00 00 00 90 00 00 00 90 00 00 00 05 00 0A 00 19 00 28 00 00 00 00 \
    00 03 00 04  00 31 00 05 00 0A 00 0F 00 19  00 FF
}

pixel() { "$magick/convert" "$1" -format "%[pixel:p{$2}]" info:; }

test_a_picture_tells_its_version_frame_and_opcodes() {
  make_drawing >drawing.pict
  run info drawing.pict
  expect_status 0
  expect_contains out "format      PICT"
  expect_contains out "size        40 x 20 pixels"
  expect_contains out "resolution  72 x 72 dots per inch"
  grep -qE '^  version +1$' out || fail "$(cat out)"
  grep -qE '^  frame +40 x 20 at 0,0$' out || fail "$(cat out)"
  grep -qE '^  opcodes +2$' out || fail "$(cat out)"
  if grep -q paintOval out; then fail "opcodes are listed unasked"; fi
}

test_opcodes_are_listed_in_order_when_asked_for() {
  make_drawing >drawing.pict
  run info --opcodes drawing.pict
  expect_status 0
  expect_equal "$(grep -A2 '^  opcodes' out | tail -2)" "    0051  paintOval        8 bytes
    0020  line             8 bytes"
}

test_an_extended_picture_tells_what_it_draws_and_how_finely() {
  make_extended >extended.pict
  run info extended.pict
  expect_status 0
  grep -qE '^  version +2, extended$' out || fail "$(cat out)"
  grep -qE '^  frame +15 x 10 at 10,5$' out || fail "$(cat out)"
  grep -qE '^  drawing +30 x 20 at 10,5$' out || fail "$(cat out)"
  expect_contains out "resolution  144 x 144 dots per inch"
  expect_contains out "size        30 x 20 pixels"
}

test_json_says_the_same() {
  make_extended >extended.pict
  run info --json extended.pict
  expect_status 0
  expect_equal "$(json_of out picture version)" 2
  expect_equal "$(json_of out picture extended)" ON
  expect_equal "$(json_of out picture frame width)" 15
  expect_equal "$(json_of out picture drawing x)" 10
  expect_equal "$(json_of out picture opcodes)" 3
  if grep -q '"list"' out; then fail "opcodes are listed unasked"; fi
  run info --json --opcodes extended.pict "$pictures/moon.jpg"
  expect_status 0
  expect_equal "$(json_of out 0 picture list 2 name)" paintRect
  expect_equal "$(json_of out 0 picture list 2 code)" 49
  expect_equal "$(json_of out 0 picture list 2 bytes)" 8
  if [ "$(grep -c '"picture"' out)" != 1 ]; then fail "a photograph is no picture of opcodes"; fi
}

test_a_damaged_picture_is_one_line_and_lists_nothing() {
  make_drawing | head -c 18 >short.pict
  run info --opcodes short.pict
  expect_status 1
  expect_failure_line short.pict
  expect_lines out 0
}

test_a_drawing_that_grows_is_drawn_anew() {
  make_drawing >drawing.pict
  run convert drawing.pict --scale 400% -o drawn.png
  expect_status 0
  expect_equal "$("$magick/identify" -format '%wx%h' drawn.png)" 160x80
  expect_equal "$("$magick/identify" -format '%k' drawn.png)" 2
  # Enlarging its pixels would leave steps of four pixels; an oval that is drawn there has none at its top.
  run convert drawing.pict -o small.png
  "$magick/convert" small.png -scale 400% -strip enlarged.png
  local differing
  differing=$("$magick/compare" -metric AE drawn.png enlarged.png null: 2>&1)
  [ "$differing" -gt 50 ] || fail "only $differing pixels are finer than enlarged ones"
  [ "$differing" -lt 800 ] || fail "$differing pixels differ from enlarged ones"
  # The line is as thick as its four pixels, and stands where they do.
  expect_equal "$(pixel drawn.png 119,40)" "srgb(255,255,255)"
  expect_equal "$(pixel drawn.png 120,40)" "srgb(0,0,0)"
  expect_equal "$(pixel drawn.png 123,40)" "srgb(0,0,0)"
  expect_equal "$(pixel drawn.png 124,40)" "srgb(255,255,255)"
}

test_both_commands_draw_anew_and_any_format_can_be_written() {
  make_drawing >drawing.pict
  run convert drawing.pict --scale 120x60 -o a.png
  expect_status 0
  run scale drawing.pict --size 300% -o b.tiff
  expect_status 0
  expect_same_pixels a.png b.tiff
  expect_equal "$("$magick/identify" -format '%wx%h' b.tiff)" 120x60
}

test_a_drawing_that_grows_keeps_its_size_in_print() {
  make_extended >extended.pict
  run convert extended.pict --scale 200% -o out.pict
  run info out.pict
  expect_contains out "resolution  288 x 288 dots per inch"
  run convert extended.pict --scale 50% -o out.png
  expect_status 0
  expect_equal "$("$magick/identify" -format '%wx%h' out.png)" 15x10
}

test_a_drawing_that_shrinks_is_reduced_so_that_thin_lines_stay() {
  make_drawing >drawing.pict
  run convert drawing.pict --scale 50% -o small.png
  expect_status 0
  expect_equal "$("$magick/identify" -format '%wx%h' small.png)" 20x10
  [ "$("$magick/identify" -format '%k' small.png)" -gt 2 ] || fail "the line is gone or as thick as before"
}

test_pixels_are_scaled_as_pixels() {
  run convert "$pictures/moon.jpg" --scale 50% -o a.png
  expect_status 0
  run scale "$pictures/moon.jpg" --size 200x200 -o b.png
  expect_status 0
  expect_same_pixels a.png b.png
  expect_equal "$("$magick/identify" -format '%wx%h' a.png)" 200x200
}

test_a_scale_that_makes_no_sense_is_misuse() {
  local scale
  make_drawing >drawing.pict
  for scale in 0% -50% big 10x 0x5 5; do
    run convert drawing.pict --scale="$scale" -o out.png
    expect_status 2
    expect_no_file out.png
  done
}

test_a_scale_beyond_the_limits_is_refused() {
  make_drawing >drawing.pict
  local input
  for input in drawing.pict "$pictures/moon.jpg"; do
    run convert "$input" --scale 70000x2 -o out.png
    expect_status 1
    expect_failure_line "$input"
    expect_contains err "too large"
    run convert "$input" --scale 60000x60000 -o out.png
    expect_status 1
    expect_failure_line "$input"
  done
  make_drawing | head -c 18 >short.pict
  run convert short.pict --scale 200% -o out.png
  expect_status 1
  expect_failure_line short.pict
  expect_no_file out.png
}

test_shapes_and_text_are_drawn_where_they_belong_at_any_size() {
  run info "$pictures/boat.pict"
  expect_contains out "opcodes     40"
  run convert "$pictures/boat.pict" --scale 500% -o boat.png
  expect_status 0
  expect_equal "$("$magick/identify" -format '%wx%h' boat.png)" 600x450
  expect_equal "$(pixel boat.png 5,5)" "srgb(191,227,245)"
  expect_equal "$(pixel boat.png 490,100)" "srgb(255,210,60)"
  expect_equal "$(pixel boat.png 330,200)" "srgb(217,72,59)"
  expect_equal "$(pixel boat.png 300,320)" "srgb(122,74,38)"
  local letters
  letters=$("$magick/convert" boat.png -crop 260x50+320+360 +repage -fill black +opaque white -format '%[fx:mean*w*h]' info:)
  awk -v n="$letters" 'BEGIN { exit !(n > 500) }' || fail "only $letters pixels of text"
}

test_samples_are_drawn_larger_with_sharper_edges() {
  local folder=${DRAV_SAMPLES:-}/pict
  [ -n "${DRAV_SAMPLES:-}" ] && [ -d "$folder" ] || { echo "  DRAV_SAMPLES is not set: not tested"; return; }
  run convert "$folder/8.pict" --scale 200% -o squares.png
  expect_status 0
  expect_equal "$("$magick/identify" -format '%wx%h %k' squares.png)" "600x600 2"
  run convert "$folder/cow.pict" --scale 300% -o cow.png
  expect_status 0
  run convert "$folder/cow.pict" -o small.png
  expect_equal "$("$magick/identify" -format '%k' cow.png)" "$("$magick/identify" -format '%k' small.png)"
  run info --opcodes "$folder/demo.pict"
  expect_status 0
  expect_equal "$(grep -cE '^    [0-9A-F]{4}  ' out)" "$(awk '$1 == "opcodes" { print $2 }' out)"
}

run_tests
