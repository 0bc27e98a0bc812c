// The words of a rules file, each with its place in it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

struct Word {
  std::string_view text;
  size_t line = 0, column = 0;  // from 1; a column is a character
};

using Line = std::vector<Word>;

// The lines that hold words, without what follows a "#".
std::vector<Line> linesOf(std::string_view text);

// Throws Failure: "line 3, column 8: ...".
[[noreturn]] void refuse(const Word &word, const std::string &why);

// Throws Failure if the word is no finite number.
float numberIn(const Word &word);

// The word as messages show it.
std::string quoted(const Word &word);
