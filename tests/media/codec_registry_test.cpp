#include "media/codecs/registry.h"

#include <gtest/gtest.h>

#include <string>

#include "one_of_each.h"

namespace {

using codecs::Fault;

std::vector<uint8_t> onePixelPng() { return makePng({.width = 1, .height = 1, .samples = {10, 20, 30}}); }
std::vector<uint8_t> onePixelJpeg() { return makeJpeg({.width = 1, .height = 1, .samples = {10, 20, 30}}); }

TEST(CodecRegistry, RecognisesFilesByTheirContent) {
  EXPECT_EQ(codecs::recognise(onePixelPng()), &codecs::kPngCodec);
  EXPECT_EQ(codecs::recognise(onePixelJpeg()), &codecs::kJpegCodec);
  const std::vector<uint8_t> text{'t', 'e', 'x', 't'};
  EXPECT_EQ(codecs::recognise(text), nullptr);
  EXPECT_EQ(codecs::recognise({}), nullptr);
}

TEST(CodecRegistry, TellsEveryFormatFromAllOthers) {
  for (const NamedFile &file : oneOfEach()) {
    const codecs::CodecRecord *codec = codecs::recognise(file.bytes);
    ASSERT_NE(codec, nullptr) << file.name;
    EXPECT_EQ(std::string(file.name).find(codec->name), 0u) << file.name << " is taken for " << codec->name;
  }
}

TEST(CodecRegistry, FindsCodecsByTheirCodes) {
  EXPECT_EQ(codecs::forImporter(codecs::fourCharacterCode("PNGf")), &codecs::kPngCodec);
  EXPECT_EQ(codecs::forImporter(codecs::fourCharacterCode("JPEG")), &codecs::kJpegCodec);
  EXPECT_EQ(codecs::forImporter(codecs::fourCharacterCode("TIFF")), &codecs::kTiffCodec);
  EXPECT_EQ(codecs::forImporter(codecs::fourCharacterCode("GIFf")), &codecs::kGifCodec);
  EXPECT_EQ(codecs::forImporter(codecs::fourCharacterCode("BMPf")), &codecs::kBmpCodec);
  EXPECT_EQ(codecs::forImporter(codecs::fourCharacterCode("TPIC")), &codecs::kTgaCodec);
  EXPECT_EQ(codecs::forImporter(codecs::fourCharacterCode("WEBP")), &codecs::kWebpCodec);
  EXPECT_EQ(codecs::forExporter(codecs::fourCharacterCode("JPEG")), &codecs::kJpegCodec);
  EXPECT_EQ(codecs::forExporter(codecs::fourCharacterCode("GIFf")), nullptr);
  EXPECT_EQ(codecs::forImporter(codecs::fourCharacterCode("none")), nullptr);
  EXPECT_EQ(codecs::forExporter(0), nullptr);
}

TEST(CodecRegistry, EveryCodecIsFilledIn) {
  for (const codecs::CodecRecord *codec : codecs::all()) {
    EXPECT_FALSE(codec->name.empty());
    EXPECT_LT(codec->name.size(), 16u);
    EXPECT_FALSE(codec->extensions.empty());
    EXPECT_FALSE(codec->importerCodes.empty());
    EXPECT_NE(codec->score, nullptr);
    EXPECT_NE(codec->decode, nullptr);
    EXPECT_EQ(codec->encode != nullptr, codec->exporterCode != 0);
  }
}

TEST(CodecRegistry, DecodesWhateverItRecognises) {
  const CGImageDecodeLimits limits = CGImageGetDefaultDecodeLimits();
  EXPECT_EQ(codecs::decodeAny(onePixelPng(), limits).fault, Fault::none);
  EXPECT_EQ(codecs::decodeAny(onePixelJpeg(), limits).fault, Fault::none);
  EXPECT_EQ(codecs::decodeAny({}, limits).fault, Fault::unknownFormat);
}

}  // namespace
