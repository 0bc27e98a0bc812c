#include "graphics/context.h"

#include <gtest/gtest.h>

#include <limits>
#include <numbers>

#include "canvas.h"

namespace cg {
namespace {

using test::Canvas;

bool equal(const CGAffineTransform &a, const CGAffineTransform &b) {
  return CGAffineTransformEqualToTransform(a, b);
}

TEST(Context, BeginsWithTheIdentityAndTheWholeSurface) {
  const Canvas canvas(7, 5, kCGImageAlphaNone);
  EXPECT_TRUE(CGAffineTransformIsIdentity(CGContextGetCTM(canvas.context())));
  EXPECT_TRUE(CGRectEqualToRect(CGContextGetClipBoundingBox(canvas.context()), CGRectMake(0, 0, 7, 5)));
  EXPECT_EQ(CGContextGetInterpolationQuality(canvas.context()), kCGInterpolationDefault);
}

TEST(Context, LaterStepsComeFirst) {
  const Canvas canvas(4, 4, kCGImageAlphaNone);
  CGContextTranslateCTM(canvas.context(), 10, 20);
  CGContextScaleCTM(canvas.context(), 2, 3);
  EXPECT_TRUE(equal(CGContextGetCTM(canvas.context()), CGAffineTransformMake(2, 0, 0, 3, 10, 20)));
  CGContextConcatCTM(canvas.context(), CGAffineTransformMakeTranslation(1, 1));
  EXPECT_TRUE(equal(CGContextGetCTM(canvas.context()), CGAffineTransformMake(2, 0, 0, 3, 12, 23)));
}

TEST(Context, AQuarterTurnIsWhole) {
  const Canvas canvas(4, 4, kCGImageAlphaNone);
  CGContextRotateCTM(canvas.context(), std::numbers::pi_v<float> / 2);
  EXPECT_TRUE(equal(CGContextGetCTM(canvas.context()), CGAffineTransformMake(0, 1, -1, 0, 0, 0)));
}

TEST(Context, ASmallAngleStays) {
  const Canvas canvas(4, 4, kCGImageAlphaNone);
  CGContextRotateCTM(canvas.context(), 1e-4f);
  EXPECT_FLOAT_EQ(CGContextGetCTM(canvas.context()).b, 1e-4f);
}

TEST(Context, RestoreBringsTheWholeStateBack) {
  const Canvas canvas(8, 8, kCGImageAlphaNone);
  CGContextRef context = canvas.context();
  CGContextSaveGState(context);
  CGContextTranslateCTM(context, 3, 3);
  CGContextClipToRect(context, CGRectMake(0, 0, 1, 1));
  CGContextSetInterpolationQuality(context, kCGInterpolationHigh);
  CGContextSetGrayFillColor(context, 1, 1);
  CGContextRestoreGState(context);
  EXPECT_TRUE(CGAffineTransformIsIdentity(CGContextGetCTM(context)));
  EXPECT_TRUE(CGRectEqualToRect(CGContextGetClipBoundingBox(context), CGRectMake(0, 0, 8, 8)));
  EXPECT_EQ(CGContextGetInterpolationQuality(context), kCGInterpolationDefault);
  CGContextFillRect(context, CGRectMake(0, 0, 8, 8));
  EXPECT_EQ(canvas.pixels(), test::Bytes(64, 0));
}

TEST(Context, ARestoreTooManyDoesNothing) {
  const Canvas canvas(4, 4, kCGImageAlphaNone);
  CGContextTranslateCTM(canvas.context(), 1, 0);
  CGContextRestoreGState(canvas.context());
  EXPECT_EQ(CGContextGetCTM(canvas.context()).tx, 1);
}

TEST(Context, StepsThatAreNoNumbersAreLeftOut) {
  const Canvas canvas(4, 4, kCGImageAlphaNone);
  const float infinity = std::numeric_limits<float>::infinity();
  const float nan = std::numeric_limits<float>::quiet_NaN();
  CGContextTranslateCTM(canvas.context(), infinity, 0);
  CGContextScaleCTM(canvas.context(), nan, 1);
  CGContextRotateCTM(canvas.context(), infinity);
  CGContextConcatCTM(canvas.context(), CGAffineTransformMake(1, nan, 0, 1, 0, 0));
  EXPECT_TRUE(CGAffineTransformIsIdentity(CGContextGetCTM(canvas.context())));
}

TEST(Context, IsEqualToItselfAlone) {
  const Canvas a(4, 4, kCGImageAlphaNone), b(4, 4, kCGImageAlphaNone);
  EXPECT_TRUE(CFEqual(a.context(), a.context()));
  EXPECT_FALSE(CFEqual(a.context(), b.context()));
  EXPECT_EQ(CFGetTypeID(a.context()), CGContextGetTypeID());
}

TEST(Context, ItsDescriptionTellsTheSizeWithoutPercentSigns) {
  const Canvas canvas(41, 23, kCGImageAlphaNone);
  const std::string text = canvas.context()->describe();
  EXPECT_NE(text.find("bitmap 41x23>"), std::string::npos) << text;
  EXPECT_EQ(text.find('%'), std::string::npos) << text;
}

TEST(Context, NoContextIsSafe) {
  CGContextSaveGState(nullptr);
  CGContextRestoreGState(nullptr);
  CGContextTranslateCTM(nullptr, 1, 1);
  CGContextClipToRect(nullptr, CGRectMake(0, 0, 1, 1));
  CGContextFillRect(nullptr, CGRectMake(0, 0, 1, 1));
  CGContextClearRect(nullptr, CGRectMake(0, 0, 1, 1));
  CGContextDrawImage(nullptr, CGRectMake(0, 0, 1, 1), nullptr);
  CGContextFlush(nullptr);
  EXPECT_TRUE(CGAffineTransformIsIdentity(CGContextGetCTM(nullptr)));
  EXPECT_TRUE(CGRectIsNull(CGContextGetClipBoundingBox(nullptr)));
}

}  // namespace
}  // namespace cg
