#!/usr/bin/env bash
# Every file format: read from what another program writes, written for it to read, damaged, and beyond what
# the format holds.
. "$(dirname "$0")/assertions.sh"

# Formats that the other program writes for us, as extensions.
foreign="png jpg tiff pict gif bmp tga webp"

# make_foreign EXTENSION FILE: the picture with alpha, or without where the format or its writer has none.
make_foreign() {
  case $1 in
    jpg | pict | bmp) "$magick/convert" "$pictures/harbour.jpg" -resize 90x60! "$1:$2" ;;
    gif) "$magick/convert" "$pictures/marbles.png" -resize 60x60 -channel A -threshold 50% +channel "$1:$2" ;;
    webp) "$magick/convert" "$pictures/marbles.png" -resize 60x60 -define webp:lossless=true "$1:$2" ;;
    # Told that rows go up, that program leaves the picture upside down, whatever it says of itself.
    tga) "$magick/convert" "$pictures/marbles.png" -resize 60x60 -orient TopLeft "$1:$2" ;;
    *) "$magick/convert" "$pictures/marbles.png" -resize 60x60 "$1:$2" ;;
  esac
}

test_the_list_names_each_format_and_what_of_it() {
  run formats
  expect_status 0
  grep -qE '^PNG +png +yes +yes$' out || fail "$(cat out)"
  grep -qE '^JPEG +jpg jpeg .*yes +yes$' out || fail "$(cat out)"
  grep -qE '^TIFF +tif tiff +yes +yes$' out || fail "$(cat out)"
  grep -qE '^PICT +pict pct pic +yes +yes$' out || fail "$(cat out)"
  local name
  for name in GIF BMP TGA WebP; do
    grep -qE "^$name +.* yes +no$" out || fail "$name: $(cat out)"
  done
  local formats
  formats=$(grep -cE '^[A-Z]' out)
  expect_equal "$(grep -c '^  read ' out)" $((formats - 1))
  expect_equal "$(grep -c '^  written ' out)" "$(grep -cE '^[A-Z].* yes +yes$' out)"
}

test_files_of_another_program_are_read_with_the_same_pixels() {
  local extension
  for extension in $foreign; do
    make_foreign "$extension" "in.$extension"
    run convert "in.$extension" -o out.png
    expect_status 0
    if [ "$extension" = jpg ]; then
      expect_close in.jpg out.png 4
    else
      expect_same_pixels "$extension:in.$extension" out.png
    fi
    run info "in.$extension"
    expect_status 0
  done
}

test_another_program_reads_what_is_written() {
  local extension
  for extension in png tiff tif; do
    run convert "$pictures/marbles.png" -o "out.$extension"
    expect_status 0
    expect_same_pixels "$pictures/marbles.png" "out.$extension"
  done
  for extension in pict pct pic; do
    run convert "$pictures/harbour.jpg" -o "out.$extension"
    expect_status 0
    expect_close "$pictures/harbour.jpg" "pict:out.$extension" 4
  done
}

test_every_format_that_is_read_becomes_every_format_that_is_written() {
  local from to
  for from in $foreign; do
    make_foreign "$from" "in.$from"
    run convert "in.$from" -o direct.png
    for to in tiff pict; do
      run convert "in.$from" -o "there.$to"
      expect_status 0
      run convert "there.$to" -o back.png
      expect_status 0
      expect_same_pixels direct.png back.png
    done
    run convert "in.$from" -o there.jpg
    expect_status 0
    expect_equal "$("$magick/identify" -format '%m %wx%h' there.jpg)" "JPEG $("$magick/identify" -format '%wx%h' direct.png)"
  done
}

test_files_of_all_formats_are_converted_in_one_call() {
  local extension
  for extension in $foreign; do make_foreign "$extension" "of-$extension.$extension"; done
  run convert of-* --to pict -o pictures
  expect_status 0
  expect_equal "$(cat out)" "8 of 8 images converted"
  for extension in $foreign; do expect_file "pictures/of-$extension.pict"; done
  echo "no image" >of-nothing.webp
  run info of-*
  expect_status 1
  expect_failure_line of-nothing.webp
  expect_equal "$(grep -c '^  format ' out)" 8
}

test_alpha_and_the_colours_that_it_hides_survive_every_format_with_alpha() {
  # Alpha of one half and less over colours that a division by it would not find again.
  "$magick/convert" -size 64x4 gradient:red-blue -alpha set -channel A -evaluate set 1% +channel faint.png
  local extension
  for extension in tiff pict pct; do
    run convert faint.png -o "there.$extension"
    expect_status 0
    run convert "there.$extension" -o back.png
    expect_status 0
    "$magick/convert" faint.png -depth 8 rgba:before
    "$magick/convert" back.png -depth 8 rgba:after
    cmp -s before after || fail "$extension changes pixels"
  done
}

test_what_was_blended_is_divided_by_its_alpha_again_in_a_picture() {
  run composite "$pictures/marbles.png" "$pictures/harbour-disc.png" -o blended.png
  expect_status 0
  run composite "$pictures/marbles.png" "$pictures/harbour-disc.png" -o blended.pct
  expect_status 0
  run convert blended.pct -o back.png
  expect_close blended.png back.png 1
}

test_a_picture_file_begins_with_blank_bytes_whatever_its_extension() {
  local extension
  for extension in pict pct; do
    run convert "$pictures/moon.jpg" -o "moon.$extension"
    expect_status 0
    cmp -s -n 512 "moon.$extension" /dev/zero || fail "moon.$extension has no file header"
    run convert "$pictures/marbles.png" -o "marbles.$extension"
    cmp -s -n 512 "marbles.$extension" /dev/zero || fail "marbles.$extension has no file header"
  done
}

test_what_is_transparent_becomes_white_in_a_jpeg_from_any_format() {
  local extension
  for extension in png tiff pct; do
    run convert "$pictures/marbles.png" -o "in.$extension"
    run convert "in.$extension" -o out.jpg
    expect_status 0
    expect_equal "$("$magick/convert" out.jpg -format '%[pixel:p{1,1}]' info:)" "srgb(255,255,255)"
  done
}

test_the_resolution_goes_from_format_to_format() {
  run convert "$pictures/harbour.jpg" -o harbour.tiff
  run convert harbour.tiff -o harbour.pict
  run convert harbour.pict -o harbour.png
  run info harbour.png
  grep -qE "resolution  (144 x 144|143.99 x 143.99) dots per inch" out || fail "$(cat out)"
}

test_a_truncated_file_of_any_format_is_one_clear_line() {
  local extension bytes size
  for extension in $foreign; do
    make_foreign "$extension" "whole.$extension"
    size=$(stat -c %s "whole.$extension")
    for bytes in 3 20 $((size / 2)); do
      head -c "$bytes" "whole.$extension" >"short.$extension"
      run convert "short.$extension" -o out.png
      expect_status 1
      expect_failure_line "short.$extension"
      expect_no_file out.png
      run info "short.$extension"
      expect_status 1
      expect_failure_line "short.$extension"
    done
  done
  expect_nothing_left_over
}

test_reasons_say_what_to_do() {
  echo "no image" >text.png
  run convert text.png -o out.tiff
  expect_equal "$(cat err)" 'drav: text.png: not an image this tool knows; "drav formats" lists those that are'
  head -c 20000 "$pictures/marbles.png" >short.png
  run convert short.png -o out.tiff
  expect_contains err "drav: short.png: truncated: it ends before its image does; get the whole file"
  run convert --limits side=10 "$pictures/marbles.png" -o out.tiff
  expect_contains err "too large: above what --limits allows"
  expect_no_file out.tiff
}

test_an_image_beyond_what_a_format_holds_is_refused_by_name() {
  run scale "$pictures/moon.jpg" --size 32768x1 -o wide.png
  expect_status 0
  run convert wide.png -o wide.pict
  expect_status 1
  expect_equal "$(cat err)" "drav: wide.png: has 32768 x 1 pixels; PICT holds at most 32767 a side: scale it, or write another format"
  expect_no_file wide.pict
  run scale "$pictures/moon.jpg" --size 1x65501 -o high.png
  expect_status 0
  run convert high.png -o high.jpg
  expect_status 1
  expect_contains err "JPEG holds at most 65500 a side"
  expect_no_file high.jpg
  local extension
  for extension in tiff png; do
    run convert wide.png -o "out.$extension"
    expect_status 0
    run info "out.$extension"
    expect_contains out "32768 x 1 pixels"
  done
  run crop wide.png --rect 0,0,32767,1 -o widest.pict
  expect_status 0
  run info widest.pict
  expect_contains out "32767 x 1 pixels"
}

test_a_folder_as_input_and_a_place_that_is_not_writable_are_one_clear_line() {
  mkdir folder
  local extension
  for extension in tiff pict; do
    run convert folder -o "out.$extension"
    expect_status 1
    expect_equal "$(cat err)" "drav: folder: is a folder"
    run convert "$pictures/moon.jpg" -o "/proc/nothing/out.$extension"
    expect_status 1
    expect_lines err 1
    expect_contains err "/proc/nothing/out.$extension cannot be written: No such file or directory"
  done
}

test_an_extension_of_no_format_that_is_written_is_misuse_and_lists_those_that_are() {
  local extension
  for extension in gif webp xyz; do
    run convert "$pictures/moon.jpg" -o "out.$extension"
    expect_status 2
    expect_contains err "$extension: no format that is written; one of png, jpg"
    expect_no_file "out.$extension"
  done
}

test_extensions_tell_the_format_in_any_case_of_letters() {
  run convert "$pictures/moon.jpg" -o MOON.TIF
  expect_status 0
  expect_equal "$("$magick/identify" -format %m MOON.TIF)" TIFF
  run convert "$pictures/moon.jpg" -o Moon.Pct
  expect_status 0
  run info Moon.Pct
  expect_contains out "format      PICT"
  run convert "$pictures/moon.jpg" --to JFIF -o moon.png
  expect_status 0
  expect_equal "$("$magick/identify" -format %m jpeg:moon.png)" JPEG
}

test_an_image_of_any_format_may_replace_itself() {
  local extension
  for extension in jpg tiff pict; do
    make_foreign "$extension" "same.$extension"
    run convert "same.$extension" -o before.png
    run convert "same.$extension" -o "same.$extension"
    expect_status 0
    run convert "same.$extension" -o after.png
    expect_close before.png after.png 40
  done
  expect_nothing_left_over
}

run_tests
