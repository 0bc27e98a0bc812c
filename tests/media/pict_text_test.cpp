// Text: what bytes mean, where letters go, and what faces and modes make of them.

#include <gtest/gtest.h>

#include "media/codecs/pict/coverage.h"
#include "media/codecs/pict/font_files.h"
#include "media/codecs/pict/font_names.h"
#include "picture_grid.h"
#include "picture_maker.h"

namespace codecs::pict {
namespace {

TEST(PictText, BytesAreMacRoman) {
  EXPECT_EQ(characterOf('A', CharacterSet::macRoman), U'A');
  EXPECT_EQ(characterOf(0x80, CharacterSet::macRoman), U'\u00C4');
  EXPECT_EQ(characterOf(0xA5, CharacterSet::macRoman), U'\u2022');
  EXPECT_EQ(characterOf(0xDB, CharacterSet::macRoman), U'\u20AC');
  EXPECT_EQ(characterOf(0xFF, CharacterSet::macRoman), U'\u02C7');
}

TEST(PictText, ControlCharactersDrawNothing) {
  for (int byte = 0; byte < 32; ++byte) {
    for (const auto set : {CharacterSet::macRoman, CharacterSet::symbol, CharacterSet::dingbats})
      EXPECT_EQ(characterOf(static_cast<uint8_t>(byte), set), U'\0');
  }
  EXPECT_EQ(characterOf(0x7F, CharacterSet::macRoman), U'\0');
}

TEST(PictText, TheSymbolFontIsGreek) {
  EXPECT_EQ(characterOf('a', CharacterSet::symbol), U'\u03B1');
  EXPECT_EQ(characterOf('W', CharacterSet::symbol), U'\u03A9');
  EXPECT_EQ(characterOf('~', CharacterSet::symbol), U'\u223C');
  EXPECT_EQ(characterOf(0xA5, CharacterSet::symbol), U'\u221E');
  EXPECT_EQ(characterOf(0xD6, CharacterSet::symbol), U'\u221A');
  EXPECT_EQ(characterOf(0xFF, CharacterSet::symbol), U'\0');
  EXPECT_EQ(characterOf('!', CharacterSet::dingbats), U'\u2701');
}

TEST(PictText, FamiliesHaveNumbersAndSubstitutes) {
  EXPECT_EQ(familyNumbered(0), "Chicago");
  EXPECT_EQ(familyNumbered(22), "Courier");
  EXPECT_EQ(familyNumbered(12345), "Helvetica");
  EXPECT_EQ(familyNamed("New York").substitute, "Times");
  EXPECT_EQ(familyNamed("Monaco").substitute, "Courier");
  EXPECT_EQ(familyNamed("Geneva").substitute, "Helvetica");
  EXPECT_EQ(familyNamed("Whatever").name, "Whatever");
  EXPECT_TRUE(familyNamed("Chicago").isAlwaysBold);
  EXPECT_EQ(familyNamed("Symbol").characters, CharacterSet::symbol);
}

TEST(PictText, HollowLettersAreALineAround) {
  Coverage letters{{0, 0, 5, 5}, std::vector<uint8_t>(25, 0)};
  letters.values[12] = 255;
  EXPECT_EQ(hollowed(letters, 0).values,
            (std::vector<uint8_t>{0,   0, 0, 0,   0,   0,   255, 255, 255, 0, 0, 255, 0,
                                  255, 0, 0, 255, 255, 255, 0,   0,   0,   0, 0, 0}));
  const auto shadowed = hollowed(letters, 1).values;
  EXPECT_EQ(shadowed[12], 0);
  EXPECT_EQ(shadowed[24], 255);
  EXPECT_EQ(shadowed[0], 0);
  EXPECT_EQ(shadowed[6], 255);
}

// Pixels of a text, drawn by opcodes in front of a picture's end.
class PictLetters : public testing::Test {
 protected:
  void SetUp() override {
    if (findFontFile(familyNamed("Helvetica"), false, false).path.empty())
      GTEST_SKIP() << "no fonts on this machine";
  }

  static constexpr int kWidth = 120, kHeight = 40;

  static PictureMaker picture(int size = 20, int face = 0) {
    PictureMaker made(kHeight, kWidth);
    made.op(0x0003).u16({21});
    made.op(0x000D).u16({size});
    made.op(0x0004).u8({static_cast<unsigned>(face)});
    return made;
  }
  static void longText(PictureMaker &made, int v, int h, const std::string &text) {
    made.op(0x0028).u16({v, h}).u8({static_cast<unsigned>(text.size())}).text(text);
  }

  // The box of all pixels that are not white.
  static Box inked(const DecodedImage &image) {
    Box box{1000, 1000, 0, 0};
    for (int32_t y = 0; y < static_cast<int32_t>(image.height); ++y) {
      for (int32_t x = 0; x < static_cast<int32_t>(image.width); ++x) {
        if (pixelAt(image, static_cast<uint32_t>(x), static_cast<uint32_t>(y)) == kWhite) continue;
        box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x + 1),
               std::max(box.bottom, y + 1)};
      }
    }
    return box;
  }
  static DecodedImage decoded(PictureMaker made) {
    auto result = decodeBytes(made.end());
    EXPECT_EQ(result.fault, Fault::none);
    return std::move(result.value);
  }
  static Box inkedText(int size, int face, const std::string &text) {
    PictureMaker made = picture(size, face);
    longText(made, 30, 10, text);
    return inked(decoded(made));
  }
  static uint64_t darkness(const DecodedImage &image) {
    uint64_t sum = 0;
    for (uint32_t y = 0; y < image.height; ++y) {
      for (uint32_t x = 0; x < image.width; ++x) sum += 255u - bytesOf(pixelAt(image, x, y))[1];
    }
    return sum;
  }
  static uint64_t darknessOf(int face, const std::string &text) {
    PictureMaker made = picture(20, face);
    longText(made, 30, 10, text);
    return darkness(decoded(made));
  }
};

TEST_F(PictLetters, StandOnTheBaselineAtTheirLocation) {
  const Box box = inkedText(20, 0, "H");
  EXPECT_NEAR(box.bottom, 30, 1);
  EXPECT_NEAR(box.height(), 15, 2);
  EXPECT_GE(box.left, 10);
  EXPECT_LE(box.left, 14);
}

TEST_F(PictLetters, GrowWithTheSizeAndTwelveIsTheDefault) {
  EXPECT_GT(inkedText(30, 0, "Hx").width(), inkedText(20, 0, "Hx").width());
  EXPECT_EQ(inkedText(0, 0, "Hx"), inkedText(12, 0, "Hx"));
}

TEST_F(PictLetters, OffsetsAddToWhereTheTextBeforeStarted) {
  PictureMaker absolute = picture(), relative = picture();
  longText(absolute, 15, 5, "long one");
  longText(absolute, 15, 90, "a");
  longText(absolute, 35, 90, "b");
  longText(absolute, 38, 100, "c");
  longText(relative, 15, 5, "long one");
  relative.op(0x0029).u8({85, 1, 'a'});
  relative.op(0x002A).u8({20, 1, 'b'});
  relative.op(0x002B).u8({10, 3, 1, 'c'});
  EXPECT_EQ(gridOf(decoded(absolute)), gridOf(decoded(relative)));
}

TEST_F(PictLetters, FacesChangeThem) {
  const Box plain = inkedText(20, 0, "HHH");
  EXPECT_GT(darknessOf(1, "HHH"), darknessOf(0, "HHH"));
  EXPECT_GT(inkedText(20, 2, "l").width(), inkedText(20, 0, "l").width());
  EXPECT_GT(inkedText(20, 4, "HHH").bottom, plain.bottom);
  EXPECT_LT(inkedText(20, 32, "HHH").right, plain.right);
  EXPECT_GT(inkedText(20, 64, "HHH").right, plain.right);
  EXPECT_EQ(inkedText(20, 8, "HHH").left, plain.left - 1);
  EXPECT_GT(inkedText(20, 16, "HHH").right, inkedText(20, 8, "HHH").right);
}

TEST_F(PictLetters, SpacingMovesTheLettersThatFollow) {
  const auto rightWith = [](int code, std::initializer_list<int> operand) {
    PictureMaker made = picture();
    made.op(code).u16(operand);
    longText(made, 30, 10, "H H");
    return inked(decoded(made)).right;
  };
  const int32_t plain = rightWith(0, {});
  EXPECT_EQ(rightWith(0x0006, {7, 0}), plain + 7);
  EXPECT_EQ(rightWith(0x0016, {4096 / 20}), plain + 2);
  EXPECT_EQ(rightWith(0x002D, {8, 3, 0, 0, 0}), plain + 6);
}

TEST_F(PictLetters, RatiosStretchThemAndEqualNumbersDoNot) {
  const auto boxWith = [](std::initializer_list<int> ratio) {
    PictureMaker made = picture(10);
    made.op(0x0010).u16(ratio);
    longText(made, 30, 10, "HH");
    return inked(decoded(made));
  };
  const Box plain = boxWith({1, 1, 1, 1});
  EXPECT_EQ(boxWith({16384, 16384, 16384, 16384}), plain);
  EXPECT_EQ(boxWith({5, 5, 0, 0}), plain);
  EXPECT_NEAR(boxWith({2, 1, 1, 1}).height(), 2 * plain.height(), 1);
  EXPECT_NEAR(boxWith({1, 2, 1, 1}).width(), 2 * plain.width(), 2);
}

TEST_F(PictLetters, TakeTheColourInForce) {
  PictureMaker made = picture(40);
  made.op(0x001A).u16({-1, 0, 0});
  longText(made, 35, 10, "I");
  const DecodedImage image = decoded(made);
  const Box box = inked(image);
  EXPECT_EQ(pixelAt(image, static_cast<uint32_t>(box.left + box.width() / 2), 25), opaque(255, 0, 0));
  EXPECT_EQ(image.depth, 24);
}

TEST_F(PictLetters, ModesDecideWhatTheyDoToTheGround) {
  const auto middleWith = [](int mode) {
    PictureMaker made = picture(40);
    made.op(0x001A).u16({-1, 0, 0});
    made.op(0x0031).box(0, 0, kHeight, kWidth);
    made.op(0x001A).u16({0, 0, -1});
    made.op(0x001B).u16({0, -1, 0});
    made.op(0x0005).u16({mode});
    longText(made, 35, 10, "I");
    const DecodedImage image = decoded(made);
    return std::pair(pixelAt(image, 15, 20), pixelAt(image, 11, 20));
  };
  EXPECT_EQ(middleWith(1), std::pair(opaque(0, 0, 255), opaque(255, 0, 0)));
  EXPECT_EQ(middleWith(0), std::pair(opaque(0, 0, 255), opaque(0, 255, 0)));
  EXPECT_EQ(middleWith(3).first, opaque(0, 255, 0));
  EXPECT_EQ(middleWith(2).first, opaque(0, 255, 255));
  EXPECT_EQ(middleWith(23).first, opaque(255, 0, 0));
}

// The letter is in its box's middle; its ground is what is off.
TEST_F(PictLetters, SomeModesChangeTheGroundTheyStandOn) {
  const auto middleAndGround = [](int mode) {
    PictureMaker made = picture(40);
    made.op(0x001A).u16({-1, 0, 0});
    made.op(0x001B).u16({0, -1, 0});
    made.op(0x0005).u16({mode});
    longText(made, 35, 10, "I");
    const DecodedImage image = decoded(made);
    return std::pair(pixelAt(image, 15, 20), pixelAt(image, 11, 20));
  };
  const Pixel red = opaque(255, 0, 0), green = opaque(0, 255, 0);
  EXPECT_EQ(middleAndGround(4), std::pair(green, red));
  EXPECT_EQ(middleAndGround(5), std::pair(kWhite, red));
  EXPECT_EQ(middleAndGround(6), std::pair(kWhite, kBlack));
  EXPECT_EQ(middleAndGround(7), std::pair(kWhite, green));
  EXPECT_EQ(middleAndGround(36), std::pair(red, kWhite));
  EXPECT_EQ(middleAndGround(39), std::pair(red, green));
}

TEST_F(PictLetters, AnEmptyClipHidesThem) {
  PictureMaker made = picture();
  made.op(0x0001).u16({10, 0, 0, 0, 0});
  longText(made, 30, 10, "hidden");
  EXPECT_EQ(darkness(decoded(made)), 0u);
}

TEST_F(PictLetters, NamesGoWithNumbers) {
  PictureMaker named = picture(), numbered = picture();
  named.op(0x002C).u16({10, 4711}).u8({7}).text("Courier");
  named.op(0x0003).u16({4711});
  numbered.op(0x0003).u16({22});
  longText(named, 30, 10, "Wi");
  longText(numbered, 30, 10, "Wi");
  EXPECT_EQ(gridOf(decoded(named)), gridOf(decoded(numbered)));
}

TEST_F(PictLetters, LongTextsAtAbsurdSizesEnd) {
  for (const int size : {500, 5000, 16000, 32767}) {
    PictureMaker made = picture(size, 1 | 2 | 8);
    made.op(0x0010).u16({255, 255, 1, 1});
    for (int i = 0; i < 20; ++i) longText(made, 30, -30000, std::string(255, '@'));
    const auto result = decodeBytes(made.end());
    EXPECT_TRUE(result.fault == Fault::none || result.fault == Fault::tooLarge);
  }
}

}  // namespace
}  // namespace codecs::pict
