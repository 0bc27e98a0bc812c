#include "media/codecs/limits.h"

#include <gtest/gtest.h>

namespace {

TEST(DecodeLimits, DefaultsAreTheDocumentedOnes) {
  const CGImageDecodeLimits limits = CGImageGetDefaultDecodeLimits();
  EXPECT_EQ(limits.side, 65535u);
  EXPECT_EQ(limits.pixels, 268435456u);
  EXPECT_EQ(limits.memoryBytes, 1073741824u);
  EXPECT_EQ(limits.jpegScans, 500u);
  EXPECT_EQ(limits.tiffTags, 4096u);
  EXPECT_EQ(limits.profileBytes, 4194304u);
  EXPECT_EQ(limits.pictOpcodes, 10000000u);
  EXPECT_EQ(limits.paintedFrames, 64u);
  EXPECT_EQ(limits.pictWork, 3000000000u);
  EXPECT_EQ(limits.pictJpegScans, 64u);
}

TEST(DecodeLimits, WhatIsSetHoldsUntilTheDefaultsAreSetAgain) {
  CGImageDecodeLimits limits = CGImageGetDefaultDecodeLimits();
  limits.side = 12;
  CGImageSetDecodeLimits(&limits);
  EXPECT_EQ(CGImageGetDecodeLimits().side, 12u);
  CGImageSetDecodeLimits(nullptr);
  EXPECT_EQ(CGImageGetDecodeLimits().side, 65535u);
}

}  // namespace
