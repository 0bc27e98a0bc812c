#include "rule_words.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "failure.h"
#include "input.h"

namespace {

constexpr std::string_view kBlanks = " \t\r\v\f";

// Characters of UTF-8: bytes that begin one.
size_t charactersIn(std::string_view text) noexcept {
  return static_cast<size_t>(std::ranges::count_if(
      text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }));
}

// Splits one line, which holds no line end.
Line wordsOf(std::string_view text, size_t lineNumber) {
  text = text.substr(0, text.find('#'));
  Line words;
  for (size_t at = text.find_first_not_of(kBlanks); at != std::string_view::npos;) {
    const size_t end = std::min(text.find_first_of(kBlanks, at), text.size());
    words.push_back({text.substr(at, end - at), lineNumber, 1 + charactersIn(text.substr(0, at))});
    at = text.find_first_not_of(kBlanks, end);
  }
  return words;
}

}  // namespace

std::vector<Line> linesOf(std::string_view text) {
  std::vector<Line> lines;
  size_t number = 1;
  for (size_t start = 0; start < text.size(); ++number) {
    const size_t end = std::min(text.find('\n', start), text.size());
    Line line = wordsOf(text.substr(start, end - start), number);
    if (!line.empty()) lines.push_back(std::move(line));
    start = end + 1;
  }
  return lines;
}

void refuse(const Word &word, const std::string &why) {
  throw Failure("line " + std::to_string(word.line) + ", column " + std::to_string(word.column) + ": " + why);
}

float numberIn(const Word &word) {
  float number = 0;
  const char *const last = word.text.data() + word.text.size();
  const auto [end, error] = std::from_chars(word.text.data(), last, number);
  if (error != std::errc() || end != last || !std::isfinite(number))
    refuse(word, quoted(word) + " is not a number");
  return number;
}

std::string quoted(const Word &word) {
  constexpr size_t kLongest = 40;
  const std::string shown = shownName(std::string(word.text.substr(0, kLongest)));
  return '"' + shown + (word.text.size() > kLongest ? "...\"" : "\"");
}
