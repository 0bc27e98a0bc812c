// Text as pixels: fonts are looked for where the system keeps them, letters are laid out one by one.
#pragma once

#include <memory>

#include "media/codecs/pict/budget.h"
#include "media/codecs/pict/coverage.h"
#include "media/codecs/pict/font_names.h"

namespace codecs::pict {

struct TextStyle {
  FontFamily family;
  bool isBold = false;
  bool isItalic = false;
  bool isUnderlined = false;
  double size = 12;           // units an em, before scaling
  double characterExtra = 0;  // units more for each character
  double spaceExtra = 0;      // and for each blank on top
  bool hasFractionalWidths = false;
  double across = 1;  // canvas pixels a unit
  double down = 1;
};

struct TextRun {
  Bytes text;
  double left = 0;  // canvas pixels, of the first letter's start
  double baseline = 0;
  Box visible;  // what is worth making
};

// Where the letters of a run went.
struct TextPlace {
  double left = 0, right = 0, top = 0, bottom = 0;
};

class Typesetter {
 public:
  Typesetter();
  Typesetter(const Typesetter &) = delete;
  Typesetter &operator=(const Typesetter &) = delete;
  ~Typesetter();

  // Gives the run's coverage within what is visible; empty where no font is found. Stops early when the
  // budget is spent.
  Coverage typeset(const TextStyle &style, const TextRun &run, Budget &budget, TextPlace &place);

 private:
  struct Fonts;
  std::unique_ptr<Fonts> fonts_;
};

}  // namespace codecs::pict
