#!/usr/bin/env bash
# drav convert, one file at a time.
. "$(dirname "$0")/assertions.sh"

test_a_photograph_becomes_a_png_with_the_same_pixels() {
  run convert "$pictures/harbour.jpg" -o harbour.png
  expect_status 0
  expect_lines out 0
  expect_lines err 0
  expect_equal "$("$magick/identify" -format '%m %wx%h' harbour.png)" "PNG 720x450"
  # The two programs may decode a JPEG with different rounding of its chroma: compare the luminance.
  "$magick/convert" "$pictures/harbour.jpg" -define png:exclude-chunks=all expected.png
  local error
  error=$("$magick/compare" -metric PAE expected.png harbour.png null: 2>&1 | sed 's/ .*//')
  [ "${error%.*}" -le 1028 ] || fail "differs by $error of 65535"
}

test_a_png_with_alpha_keeps_every_pixel() {
  run convert "$pictures/marbles.png" -o copy.png
  expect_status 0
  expect_same_pixels "$pictures/marbles.png" copy.png
  expect_equal "$("$magick/identify" -format '%[channels]' copy.png)" "srgba"
}

test_a_grey_photograph_stays_grey_and_keeps_every_pixel() {
  run convert "$pictures/moon.jpg" -o moon.png
  expect_status 0
  expect_same_pixels "$pictures/moon.jpg" moon.png
  expect_equal "$("$magick/identify" -format '%[channels]' moon.png)" "gray"
}

test_transparent_parts_become_white_in_a_jpeg() {
  run convert "$pictures/marbles.png" -o marbles.jpg
  expect_status 0
  expect_equal "$("$magick/identify" -format '%m' marbles.jpg)" "JPEG"
  expect_equal "$("$magick/convert" marbles.jpg -format '%[pixel:p{1,1}]' info:)" "srgb(255,255,255)"
}

test_the_built_in_pictures_of_another_program_convert() {
  local picture
  for picture in rose logo wizard; do
    "$magick/convert" "$picture:" "$picture.png"
    run convert "$picture.png" -o "$picture-copy.png"
    expect_status 0
    expect_same_pixels "$picture.png" "$picture-copy.png"
  done
}

test_the_option_wins_over_the_extension() {
  run convert "$pictures/moon.jpg" --to jpeg -o moon.png
  expect_status 0
  expect_equal "$("$magick/identify" -format '%m' jpeg:moon.png)" "JPEG"
}

test_the_content_tells_the_format_not_the_name() {
  cp "$pictures/moon.jpg" called.png
  run convert called.png -o real.png
  expect_status 0
  expect_same_pixels "$pictures/moon.jpg" real.png
}

test_names_with_spaces_percent_signs_and_other_letters_work() {
  local name
  for name in "two words.png" "100%s %n %20.png" "Zürich – 東京 🙂.png" "semi;colon'quote\".png" "[1].png" "[1]"; do
    cp "$pictures/marbles.png" "$name"
    run convert "$name" -o "out $name.png"
    expect_status 0
    expect_same_pixels "$pictures/marbles.png" "out $name.png"
  done
}

test_a_name_that_is_no_text_works() {
  local name=$'caf\xe9.png'
  cp "$pictures/marbles.png" "$name"
  run convert "$name" -o $'th\xe9.png'
  expect_status 0
  expect_file $'th\xe9.png'
}

test_a_name_that_starts_with_a_dash_works_after_two_dashes() {
  cp "$pictures/moon.jpg" -- -moon.jpg
  run convert -o moon.png -- -moon.jpg
  expect_status 0
  expect_file moon.png
}

test_standard_input_and_output_are_a_dash() {
  "$drav" convert - --to png -o - <"$pictures/marbles.png" >piped.png 2>err
  status=$?
  expect_status 0
  expect_lines err 0
  expect_same_pixels "$pictures/marbles.png" piped.png
}

test_a_pipe_is_read_to_its_end() {
  cat "$pictures/harbour.jpg" | (sleep 0.1; cat) | "$drav" convert - -o piped.png 2>err
  status=$?
  expect_status 0
  run convert "$pictures/harbour.jpg" -o direct.png
  cmp -s piped.png direct.png || fail "the pipe gave other bytes"
}

test_an_image_may_replace_itself() {
  cp "$pictures/marbles.png" same.png
  chmod 640 same.png
  run convert same.png -o same.png
  expect_status 0
  expect_same_pixels "$pictures/marbles.png" same.png
  expect_equal "$(stat -c %a same.png)" 640
  expect_nothing_left_over
}

test_a_new_file_has_the_permissions_of_any_new_file() {
  umask 027
  run convert "$pictures/moon.jpg" -o moon.png
  umask 022
  expect_equal "$(stat -c %a moon.png)" 640
}

test_a_link_stays_a_link() {
  mkdir there
  cp "$pictures/marbles.png" there/real.png
  ln -s there/real.png link.png
  run convert "$pictures/moon.jpg" -o link.png
  expect_status 0
  [ -L link.png ] || fail "the link was replaced"
  expect_same_pixels "$pictures/moon.jpg" there/real.png
  expect_nothing_left_over
}

test_a_device_is_written_to_and_not_replaced() {
  run convert "$pictures/moon.jpg" --to png -o /dev/null
  expect_status 0
  [ -c /dev/null ] || fail "/dev/null is no device any more"
}

test_a_truncated_file_leaves_no_output() {
  local bytes
  for bytes in 1 8 60 1000 20000; do
    head -c "$bytes" "$pictures/marbles.png" >short.png
    run convert short.png -o out.png
    expect_status 1
    expect_failure_line short.png
    expect_no_file out.png
    head -c "$bytes" "$pictures/harbour.jpg" >short.jpg
    run convert short.jpg -o out.png
    expect_status 1
    expect_failure_line short.jpg
    expect_no_file out.png
  done
  expect_nothing_left_over
}

test_a_failure_leaves_an_existing_output_as_it_was() {
  cp "$pictures/moon.jpg" keep.png
  echo "no picture" >text.jpg
  run convert text.jpg -o keep.png
  expect_status 1
  expect_failure_line text.jpg
  cmp -s keep.png "$pictures/moon.jpg" || fail "the output was touched"
}

test_a_full_disk_leaves_no_output() {
  (ulimit -f 8; "$drav" convert "$pictures/harbour.jpg" -o out.png >out 2>err; echo $? >status)
  status=$(cat status)
  expect_status 1
  expect_contains err "out.png cannot be written: File too large"
  expect_no_file out.png
  expect_nothing_left_over
}

test_a_folder_a_missing_and_an_empty_file_are_one_clear_line_each() {
  mkdir folder
  : >empty.png
  run convert folder -o out.png
  expect_status 1
  expect_equal "$(cat err)" "drav: folder: is a folder"
  run convert missing.png -o out.png
  expect_status 1
  expect_equal "$(cat err)" "drav: missing.png: No such file or directory"
  run convert empty.png -o out.png
  expect_status 1
  expect_equal "$(cat err)" "drav: empty.png: is empty"
  run convert - -o out.png </dev/null
  expect_status 1
  expect_equal "$(cat err)" "drav: standard input: is empty"
  expect_no_file out.png
}

test_an_unreadable_file_is_one_clear_line() {
  cp "$pictures/moon.jpg" secret.jpg
  chmod 0 secret.jpg
  if [ -r secret.jpg ]; then return; fi # the superuser reads everything
  run convert secret.jpg -o out.png
  expect_status 1
  expect_equal "$(cat err)" "drav: secret.jpg: Permission denied"
}

test_a_file_that_is_no_image_says_so_in_one_line() {
  echo "plain text, and more of it" >notes.txt
  run convert notes.txt -o out.png
  expect_status 1
  expect_failure_line notes.txt
  head -c 5000 /dev/zero >zeros.png
  run convert zeros.png -o out.png
  expect_status 1
  expect_failure_line zeros.png
}

test_a_line_end_in_a_name_does_not_break_the_message() {
  run convert $'two\nlines.png' -o out.png
  expect_status 1
  expect_equal "$(cat err)" 'drav: two\x0alines.png: No such file or directory'
}

test_an_empty_name_is_one_clear_line() {
  run convert "" -o out.png
  expect_status 1
  expect_equal "$(cat err)" "drav: (empty name): No such file or directory"
}

test_a_huge_file_is_refused_before_it_is_read() {
  truncate -s 2G huge.png
  run convert huge.png -o out.png
  expect_status 1
  expect_equal "$(cat err)" "drav: huge.png: is larger than 1 GiB"
}

test_a_pipe_is_written_to_and_not_replaced() {
  mkfifo pipe
  cat pipe >through.png &
  run convert "$pictures/marbles.png" --to png -o pipe
  wait
  expect_status 0
  [ -p pipe ] || fail "the pipe is no pipe any more"
  expect_same_pixels "$pictures/marbles.png" through.png
}

test_an_output_in_a_missing_folder_is_one_clear_line() {
  run convert "$pictures/moon.jpg" -o nowhere/out.png
  expect_status 1
  expect_lines err 1
  expect_contains err "nowhere/out.png cannot be written: No such file or directory"
}

test_an_image_above_the_limits_is_refused() {
  run convert --limits pixels=1000 "$pictures/moon.jpg" -o out.png
  expect_status 1
  expect_failure_line "$pictures/moon.jpg"
  expect_contains err "too large"
  run --limits pixels=1M convert "$pictures/moon.jpg" -o out.png
  expect_status 0
}

run_tests
