#!/usr/bin/env bash
# drav recolor.
. "$(dirname "$0")/assertions.sh"

rules_folder=$2/examples/rules

# pixels WIDTH BYTE...: a PNG of red, green, blue, alpha bytes, made by another program.
pixels() {
  local width=$1
  shift
  printf "$(printf '\\x%02x' "$@")" | "$magick/convert" -size "${width}x1" -depth 8 rgba:- pixels.png
}

# Red, green, blue and alpha of each pixel of a file, as another program reads them, parted by commas.
bytes_of() {
  "$magick/convert" "$1" -depth 8 rgba:- | od -An -v -tu1 -w4 | sed 's/^ *//; s/  */ /g' | paste -sd,
}

# expect_recolored RULES EXPECTED: what the rules make of pixels.png.
expect_recolored() {
  printf '%b\n' "$1" >rules
  run recolor --rules rules pixels.png -o out.png
  expect_status 0
  expect_lines err 0
  expect_equal "$(bytes_of out.png)" "$2"
}

# expect_refused RULES LINE COLUMN WORDS: the message names the place.
expect_refused() {
  printf '%b\n' "$1" >rules
  run recolor --rules rules "$pictures/moon.jpg" -o out.png
  expect_status 1
  expect_lines err 1
  expect_contains err "drav: rules: line $2, column $3: "
  expect_contains err "$4"
  expect_no_file out.png
}

test_blue_becomes_green_and_the_rest_stays() {
  run recolor --rules "$rules_folder/blue-to-green.rules" "$pictures/marbles.png" -o green.png
  expect_status 0
  local place
  for place in 150,120 190,80; do # in the blue marble
    expect_equal "$("$magick/convert" "$pictures/marbles.png" -format "%[fx:p{$place}.b>p{$place}.g]" info:)" 1
    expect_equal "$("$magick/convert" green.png -format "%[fx:p{$place}.g>1.5*p{$place}.b]" info:)" 1
  done
  # The marbles of other colours, with their soft edges, and what is clear around them.
  local part
  for part in 100x130+0+100 90x80+90+190 110x80+190+190 60x40+230+60 300x40+0+0; do
    "$magick/convert" "$pictures/marbles.png" -crop "$part" +repage -strip before.png
    "$magick/convert" green.png -crop "$part" +repage -strip after.png
    expect_same_pixels before.png after.png
  done
  "$magick/convert" "$pictures/marbles.png" -alpha extract -strip before.png
  "$magick/convert" green.png -alpha extract -strip after.png
  expect_same_pixels before.png after.png
}

test_every_example_works() {
  local rules count=0
  for rules in "$rules_folder"/*.rules; do
    run recolor --rules "$rules" "$pictures/marbles.png" -o out.png
    expect_status 0
    count=$((count + 1))
  done
  [ "$count" -ge 3 ] || fail "only $count examples"
}

test_what_no_rule_matches_keeps_every_byte() {
  # Straight colours under every alpha, hidden ones included.
  local list=() alpha
  for alpha in $(seq 0 255); do list+=(200 "$((alpha * 7 % 256))" 13 "$alpha"); done
  pixels 256 "${list[@]}"
  run convert pixels.png -o copy.png
  expect_equal "$(bytes_of copy.png)" "$(bytes_of pixels.png)"
  printf 'rule\n red below 0.5\n becomes 0 0 0\n' >rules
  run recolor --rules rules pixels.png -o out.png
  expect_status 0
  cmp -s out.png copy.png || fail "the file differs"
}

test_within_and_outside_measure_from_a_value() {
  pixels 3 51 0 0 255 102 0 0 255 204 0 0 255
  expect_recolored 'rule\n red within 0.4 0.1\n becomes 0 1 0' "51 0 0 255,0 255 0 255,204 0 0 255"
  expect_recolored 'rule\n red outside 0.4 0.1\n becomes 0 1 0' "0 255 0 255,102 0 0 255,0 255 0 255"
}

test_above_and_below_include_their_limit() {
  pixels 3 51 0 0 255 102 0 0 255 204 0 0 255
  expect_recolored 'rule\n red above 0.4\n becomes 0 1 0' "51 0 0 255,0 255 0 255,0 255 0 255"
  expect_recolored 'rule\n red above 0.4 0.2\n becomes 0 1 0' "51 0 0 255,102 0 0 255,0 255 0 255"
  expect_recolored 'rule\n red below 0.4\n becomes 0 1 0' "0 255 0 255,0 255 0 255,204 0 0 255"
}

test_scaled_tests_scale_the_new_component() {
  pixels 2 102 40 80 255 204 0 0 255
  expect_recolored 'rule\n red scaled above 0\n becomes 0.5 0 0' "51 0 0 255,102 0 0 255"
  expect_recolored 'rule\n red scaled within 0.4 0.8\n becomes 1 0 0' "255 0 0 255,128 0 0 255"
  expect_recolored 'rule\n red scaled below 1\n becomes 1 0 0' "153 0 0 255,51 0 0 255"
}

test_all_tests_of_a_rule_must_match() {
  pixels 3 255 0 0 255 255 255 0 255 0 255 0 255
  expect_recolored 'rule\n red above 0.5\n green above 0.5\n becomes 0 0 1' \
    "255 0 0 255,0 0 255 255,0 255 0 255"
}

test_one_test_may_suffice() {
  pixels 3 255 0 0 255 255 255 0 255 0 0 0 255
  expect_recolored 'rule one-suffices ignore-alpha\n red above 0.5\n green above 0.5\n becomes 1 0.2 0' \
    "255 0 0 255,255 51 0 255,0 0 0 255"
}

test_several_matching_rules_give_their_mean() {
  pixels 2 255 255 255 255 255 0 0 255
  local rules='rule\n red above 0.5\n becomes 0 0 1\nrule\n green above 0.5\n becomes 0 1 0'
  expect_recolored "$rules" "0 128 128 255,0 0 255 255"
  expect_recolored "all-rules-must-match\n$rules" "0 128 128 255,255 0 0 255"
}

test_alpha_stays_unless_a_rule_says_otherwise() {
  pixels 3 255 0 0 100 255 0 0 255 255 0 0 0
  expect_recolored 'rule\n becomes 0 1 0' "0 255 0 100,0 255 0 255,0 255 0 0"
  expect_recolored 'rule\n becomes 0 1 0 0.5' "0 255 0 50,0 255 0 128,0 255 0 0"
  expect_recolored 'rule ignore-alpha\n becomes 0 1 0 0.8' "0 255 0 204,0 255 0 204,0 255 0 204"
  expect_recolored 'rule\n alpha within 0 0\n becomes 0 0 1 1' "255 0 0 100,255 0 0 255,0 0 255 255"
}

test_hues_are_tested_in_degrees() {
  pixels 4 255 0 0 255 0 255 0 255 0 0 255 255 128 128 128 255
  # The conversion back takes all from the hue: 0 is black.
  expect_recolored 'rule hsb\n hue within 240 30\n becomes 0 0 0' \
    "255 0 0 255,0 255 0 255,0 0 0 255,128 128 128 255"
  expect_recolored 'rule hsb first-alone\n hue within 240 30\n becomes 0 0 0' \
    "255 0 0 255,0 255 0 255,0 0 0 255,128 128 128 255"
  expect_recolored 'rule hsb\n hue within 1000 1\n becomes 0 0 0\nrule\n hue within 120 9\n becomes 1 1 0' \
    "255 0 0 255,255 255 0 255,0 0 255 255,128 128 128 255"
}

test_replacements_are_kept_between_black_and_full() {
  pixels 1 10 20 30 255
  expect_recolored 'rule\n becomes -5 2 1e30' "0 255 255 255"
  expect_recolored 'rule\n becomes 0.001 0.002 0.9999 7' "0 1 255 255"
}

test_an_opaque_picture_gets_alpha_where_it_becomes_clear() {
  "$magick/convert" -size 20x20 xc:white -fill red -draw "rectangle 5,5 14,14" picture.png
  run recolor --rules "$rules_folder/white-to-clear.rules" picture.png -o clear.png
  expect_status 0
  "$magick/convert" clear.png -crop 2x1+4+9 +repage two.png
  expect_equal "$(bytes_of two.png)" "255 255 255 0,255 0 0 255"
  printf 'rule\n red above 0.5\n becomes 0 0 1\n' >rules
  run recolor --rules rules picture.png -o opaque.png
  expect_equal "$("$magick/identify" -format '%[channels]' opaque.png)" srgb
}

test_a_grey_picture_may_become_coloured() {
  printf 'rule\n red scaled above 0\n becomes 1 0 0\n' >rules
  run recolor --rules rules "$pictures/moon.jpg" -o red.png
  expect_status 0
  "$magick/convert" "$pictures/moon.jpg" -colorspace sRGB -type TrueColor -channel GB -evaluate set 0 -strip expected.png
  expect_same_pixels expected.png red.png
}

test_comments_blank_lines_and_line_ends_of_other_systems_are_read() {
  pixels 1 255 0 0 255
  expect_recolored '# first\r\n\r\n\trule# at once\r\n   red above 0.5 # enough\r\n becomes 0 0 1\r' "0 0 255 255"
  printf 'rule\nbecomes 0 1 0' >rules # no line end at the end
  run recolor --rules rules pixels.png -o out.png
  expect_status 0
}

test_errors_name_line_and_column() {
  expect_refused 'rule\n  red abov 0.5\n becomes 0 0 0' 2 7 '"abov" is not a test'
  expect_refused 'rule\n  red scaled any\n becomes 0 0 0' 2 14 '"any" is not a test'
  expect_refused '# x\n\nrule quickly\n becomes 0 0 0' 3 6 '"quickly" is not an option'
  expect_refused 'rule\n red above\n becomes 0 0 0' 2 6 'a number is missing after "above"'
  expect_refused 'rule\n red within 0.5\n becomes 0 0 0' 2 13 'a range is missing'
  expect_refused 'rule\n red above half\n becomes 0 0 0' 2 12 '"half" is not a number'
  expect_refused 'rule\n red above nan\n becomes 0 0 0' 2 12 'not a number'
  expect_refused 'rule\n red above 1e99\n becomes 0 0 0' 2 12 'not a number'
  expect_refused 'rule\n red above 0.5 0.1 0.2\n becomes 0 0 0' 2 20 'more than belongs here'
  expect_refused 'rule\n purple above 0.5\n becomes 0 0 0' 2 2 '"purple" cannot be tested here'
  expect_refused 'rule\n hue above 0.5\n becomes 0 0 0' 2 2 '"hue" cannot be tested here: red'
  expect_refused 'rule hsb\n hue any\n becomes 0 0 0\nrule\n red any\n becomes 0 0 0' 5 2 'here: hue'
  expect_refused 'rule\n red any\n red any\n becomes 0 0 0' 3 2 'already'
  expect_refused 'rule ignore-alpha\n alpha any\n becomes 0 0 0' 2 2 'not tested'
  expect_refused 'rule first-alone\n green any\n becomes 0 0 0' 2 2 'not tested'
  expect_refused 'rule\n becomes 0 0' 2 12 'a number is missing after "0"'
  expect_refused 'rule\n becomes 0 0 0 1 1' 2 18 'more than belongs here'
  expect_refused 'rule\n becomes 0 0 0\n becomes 0 0 0' 3 2 'a colour already'
  expect_refused 'red above 0.5\nrule\n becomes 0 0 0' 1 1 'before the first rule'
  expect_refused '  rule\n red above 0.5\nrule\n becomes 0 0 0' 1 3 'does not say'
  expect_refused 'rule one-suffices\n red any\n becomes 0 0 0' 1 1 'alpha'
  expect_refused 'rule one-suffices ignore-alpha\n becomes 0 0 0' 1 1 'tests nothing'
  expect_refused 'all-rules-must-match now\nrule\n becomes 0 0 0' 1 22 'more than'
  expect_refused 'rule # gr\xc3\xbcn\n r\xc3\xb6t above 1\n becomes 0 0 0' 2 2 'röt'
  expect_refused 'rule\n red \xc3\xbcber 1\n becomes 0 0 0' 2 6 'über'
  expect_refused 'rule\n \x01\x02 any' 2 2 '\x01\x02'
}

test_files_without_rules_are_refused() {
  echo "# nothing" >rules
  run recolor --rules rules "$pictures/moon.jpg" -o out.png
  expect_status 1
  expect_equal "$(cat err)" "drav: rules: holds no rule"
  run recolor --rules missing "$pictures/moon.jpg" -o out.png
  expect_status 1
  expect_failure_line missing
  head -c 100000 /dev/urandom >noise
  run recolor --rules noise "$pictures/moon.jpg" -o out.png
  expect_status 1
  expect_failure_line noise
  run recolor --rules "$pictures/marbles.png" "$pictures/moon.jpg" -o out.png
  expect_status 1
  expect_no_file out.png
}

test_rules_and_pictures_come_through_pipes_and_in_numbers() {
  "$drav" recolor --rules - "$pictures/marbles.png" --to png -o - <"$rules_folder/evening.rules" >a.png
  "$drav" recolor --rules "$rules_folder/evening.rules" - --to png -o - <"$pictures/marbles.png" >b.png
  cmp -s a.png b.png || fail "they differ"
  run recolor --rules "$rules_folder/evening.rules" "$pictures/marbles.png" "$pictures/harbour.jpg" --to png -o all
  expect_status 0
  expect_equal "$(cat out)" "2 of 2 images recoloured"
  cmp -s all/marbles.png a.png || fail "another picture"
}

test_a_picture_with_many_colours_is_learnt_and_forgotten_rightly() {
  # Four million colours, each once: more than the memory holds.
  printf 'P6\n2048 2048\n255\n' >colors.ppm
  perl -e 'for my $i (0..2048*2048-1) { my $n = ($i * 2654435761) & 0xFFFFFF; print pack("C3", $n >> 16, $n >> 8 & 255, $n & 255) }' >>colors.ppm
  "$magick/convert" colors.ppm colors.png
  printf 'rule\n red scaled above 0\n green scaled above 0\n blue scaled above 0\n becomes 1 1 0\n' >rules
  run recolor --rules rules colors.png -o out.png
  expect_status 0
  "$magick/convert" colors.ppm -channel B -evaluate set 0 expected.png
  expect_same_pixels expected.png out.png
}

test_a_terminal_shows_progress() {
  "$magick/convert" -size 2400x2400 -seed 1 plasma: -depth 8 big.png
  on_terminal "'$drav' recolor --rules '$rules_folder/evening.rules' big.png -o out.png" || return
  expect_file out.png
  grep -q 'recolouring *[0-9]*%' typescript || echo "  too fast to show any"
  run recolor --rules "$rules_folder/evening.rules" big.png -o out.png
  expect_lines err 0
}

test_misuse_exits_with_two() {
  local rules=$rules_folder/evening.rules
  run recolor "$pictures/moon.jpg" -o out.png; expect_status 2
  run recolor --rules "$rules" -o out.png; expect_status 2
  run recolor --rules "$rules" "$pictures/moon.jpg"; expect_status 2
  run recolor --rules - - --to png -o out.png; expect_status 2
  expect_no_file out.png
}

run_tests
