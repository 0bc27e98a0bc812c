#!/usr/bin/env bash
# drav convert with several files in one call.
. "$(dirname "$0")/assertions.sh"

# Makes 200 photographs photo-000.jpg to photo-199.jpg, three of them damaged each in its own way.
make_photographs() {
  local i list=()
  for i in $(seq 0 199); do list+=("(" -size 96x72 -seed "$i" "plasma:" ")"); done
  "$magick/convert" "${list[@]}" -quality 88 photo-%03d.jpg
  head -c 900 photo-050.jpg >short && mv short photo-050.jpg
  echo "this is text" >photo-100.jpg
  : >photo-150.jpg
}

test_two_hundred_photographs_convert_past_three_damaged_ones() {
  make_photographs
  run convert photo-*.jpg --to png -o converted
  expect_status 1
  expect_equal "$(cat out)" "197 of 200 images converted, 3 failed"
  expect_lines err 3
  expect_contains err "drav: photo-050.jpg: "
  expect_contains err "drav: photo-100.jpg: "
  expect_contains err "drav: photo-150.jpg: is empty"
  if grep -q $'[\r\x1b]' err; then fail "progress was drawn into a file"; fi
  expect_equal "$(find converted -type f | wc -l)" 197
  expect_equal "$("$magick/identify" -format '%m %wx%h\n' converted/*.png | sort -u)" "PNG 96x72"
  expect_no_file converted/photo-050.png
  expect_nothing_left_over
}

test_a_terminal_shows_progress_and_names_the_bad_file_on_a_line_of_its_own() {
  cp "$pictures/moon.jpg" a.jpg
  cp "$pictures/harbour.jpg" b.jpg
  echo "this is text" >c.jpg
  on_terminal "'$drav' convert a.jpg b.jpg c.jpg --to png -o converted" || return
  : >err
  expect_status 1
  tr '\r' '\n' <typescript | sed 's/\x1b\[K//g' >lines
  grep -q '^\[\.*\] 0/3 a.jpg' lines || fail "no progress in: $(cat lines)"
  grep -q '^drav: c.jpg: ' lines || fail "no line for c.jpg in: $(cat lines)"
  grep -q '^2 of 3 images converted, 1 failed' lines || fail "no closing line in: $(cat lines)"
}

test_one_file_shows_no_progress_even_on_a_terminal() {
  on_terminal "'$drav' convert '$pictures/moon.jpg' -o moon.png" || return
  expect_file moon.png
  if grep -q '\[[#.]*\] ' typescript; then fail "progress: $(cat typescript)"; fi
}

test_all_good_files_exit_with_zero() {
  run convert "$pictures/moon.jpg" "$pictures/harbour.jpg" --to png -o converted
  expect_status 0
  expect_lines err 0
  expect_equal "$(cat out)" "2 of 2 images converted"
}

test_the_output_folder_is_made_with_its_parents() {
  run convert "$pictures/moon.jpg" "$pictures/harbour.jpg" --to jpg -o new/deep/folder
  expect_status 0
  expect_file new/deep/folder/moon.jpg
  expect_file new/deep/folder/harbour.jpg
}

test_one_input_goes_into_a_folder_that_is_there() {
  mkdir converted
  run convert "$pictures/moon.jpg" --to png -o converted
  expect_status 0
  expect_file converted/moon.png
}

test_two_inputs_of_one_name_lose_no_file() {
  mkdir one two
  cp "$pictures/moon.jpg" one/same.jpg
  cp "$pictures/harbour.jpg" two/same.jpg
  run convert one/same.jpg two/same.jpg --to png -o converted
  expect_status 1
  expect_failure_line two/same.jpg
  expect_contains err "was already made from one/same.jpg"
  expect_same_pixels one/same.jpg converted/same.png
}

test_the_place_of_a_failed_input_is_free_for_the_next() {
  mkdir one
  echo "this is text" >one/same.jpg
  cp "$pictures/moon.jpg" same.jpg
  run convert one/same.jpg same.jpg --to png -o converted
  expect_status 1
  expect_failure_line one/same.jpg
  expect_same_pixels same.jpg converted/same.png
}

test_no_output_replaces_another_input() {
  cp "$pictures/moon.jpg" same.jpg
  cp "$pictures/marbles.png" same.png
  run convert same.jpg same.png --to png -o .
  expect_status 1
  expect_failure_line same.jpg
  expect_contains err "would replace the input same.png"
  expect_same_pixels "$pictures/marbles.png" same.png
}

test_names_with_spaces_percent_signs_and_other_letters_work_in_a_folder() {
  cp "$pictures/moon.jpg" "100% one.jpg"
  cp "$pictures/moon.jpg" "Zürich 東京.jpg"
  run convert "100% one.jpg" "Zürich 東京.jpg" --to png -o "out put %d"
  expect_status 0
  expect_file "out put %d/100% one.png"
  expect_file "out put %d/Zürich 東京.png"
}

test_a_folder_that_cannot_be_made_is_one_clear_line() {
  run convert "$pictures/moon.jpg" "$pictures/harbour.jpg" --to png -o /proc/none/here
  expect_status 1
  expect_failure_line /proc/none/here
}

run_tests
