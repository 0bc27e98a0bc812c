#include <DravKit/DravKit.h>
#include <gtest/gtest.h>

namespace {

TEST(ImageFormat, EachExtensionHasItsCodeInAnyCase) {
  EXPECT_EQ(DRAVCFImageFormatForPathExtension(CFSTR("pict")), kDRAVCFImageFormatPICT);
  EXPECT_EQ(DRAVCFImageFormatForPathExtension(CFSTR("Pict")), kDRAVCFImageFormatPICT);
  EXPECT_EQ(DRAVCFImageFormatForPathExtension(CFSTR("png")), kDRAVCFImageFormatPNG);
  EXPECT_EQ(DRAVCFImageFormatForPathExtension(CFSTR("PNG")), kDRAVCFImageFormatPNG);
  EXPECT_EQ(DRAVCFImageFormatForPathExtension(CFSTR("jpeg")), kDRAVCFImageFormatJPEG);
  EXPECT_EQ(DRAVCFImageFormatForPathExtension(CFSTR("JPG")), kDRAVCFImageFormatJPEG);
}

TEST(ImageFormat, PctHasACodeOfItsOwn) {
  EXPECT_EQ(DRAVCFImageFormatForPathExtension(CFSTR("pct")), kDRAVCFImageFormatPCT);
}

TEST(ImageFormat, AnythingElseIsUnknown) {
  EXPECT_EQ(DRAVCFImageFormatForPathExtension(CFSTR("tif")), kDRAVCFImageFormatUnknown);
  EXPECT_EQ(DRAVCFImageFormatForPathExtension(CFSTR("")), kDRAVCFImageFormatUnknown);
  EXPECT_EQ(DRAVCFImageFormatForPathExtension(CFSTR(".png")), kDRAVCFImageFormatUnknown);
  EXPECT_EQ(DRAVCFImageFormatForPathExtension(CFSTR("pngx")), kDRAVCFImageFormatUnknown);
}

TEST(ImageFormat, NoExtensionIsUnknown) {
  EXPECT_EQ(DRAVCFImageFormatForPathExtension(nullptr), kDRAVCFImageFormatUnknown);
}

}  // namespace
