// A colour space unlike the main display's, and what its colours are there by the colour engine itself.
#pragma once

#include <CoreGraphics/CoreGraphics.h>
#include <lcms2.h>

#include <cstdint>
#include <vector>

#include "foundation/ref.h"
#include "graphics/profile.h"

namespace test {

struct Colour {
  uint8_t r, g, b;
};

// sRGB primaries with another gamma: every value but 0 and 255 moves.
inline cmsHPROFILE makeForeignRGB() {
  const cmsCIExyY white{0.3127, 0.3290, 1.0};
  const cmsCIExyYTRIPLE primaries{{0.64, 0.33, 1.0}, {0.30, 0.60, 1.0}, {0.15, 0.06, 1.0}};
  cmsToneCurve *curve = cmsBuildGamma(nullptr, 1.4);
  cmsToneCurve *curves[3] = {curve, curve, curve};
  cmsHPROFILE profile = cmsCreateRGBProfile(&white, &primaries, curves);
  cmsFreeToneCurve(curve);
  return profile;
}

inline cmsHPROFILE makeForeignGray() {
  cmsToneCurve *curve = cmsBuildGamma(nullptr, 1.4);
  cmsHPROFILE profile = cmsCreateGrayProfile(cmsD50_xyY(), curve);
  cmsFreeToneCurve(curve);
  return profile;
}

inline std::vector<uint8_t> profileBytes(cmsHPROFILE profile) {
  cmsUInt32Number size = 0;
  cmsSaveProfileToMem(profile, nullptr, &size);
  std::vector<uint8_t> bytes(size);
  cmsSaveProfileToMem(profile, bytes.data(), &size);
  cmsCloseProfile(profile);
  return bytes;
}

inline cf::Ref<CGColorSpaceRef> spaceOf(const std::vector<uint8_t> &bytes) {
  const cf::Ref data = cf::adopt(CFDataCreate(nullptr, bytes.data(), static_cast<CFIndex>(bytes.size())));
  return cf::adopt(CGColorSpaceCreateWithICCProfile(data.get()));
}

inline cf::Ref<CGColorSpaceRef> foreignRGBSpace() { return spaceOf(profileBytes(makeForeignRGB())); }
inline cf::Ref<CGColorSpaceRef> foreignGraySpace() { return spaceOf(profileBytes(makeForeignGray())); }

// One colour into the main display's profile, perceptual, as 8-bit RGB.
inline Colour convertedToDisplay(cmsHPROFILE from, cmsUInt32Number format, const uint8_t *in) {
  CMProfileRef system = nullptr;
  CMGetSystemProfile(&system);
  CFDataRef data = CMProfileGetData(system);
  cmsHPROFILE display =
      cmsOpenProfileFromMem(CFDataGetBytePtr(data), static_cast<cmsUInt32Number>(CFDataGetLength(data)));
  cmsHTRANSFORM transform =
      cmsCreateTransform(from, format, display, TYPE_RGB_8, INTENT_PERCEPTUAL, cmsFLAGS_NOCACHE);
  uint8_t out[3];
  cmsDoTransform(transform, in, out, 1);
  cmsDeleteTransform(transform);
  cmsCloseProfile(display);
  cmsCloseProfile(from);
  CMCloseProfile(system);
  return {out[0], out[1], out[2]};
}

inline Colour foreignRGBToDisplay(Colour colour) {
  const uint8_t in[3] = {colour.r, colour.g, colour.b};
  return convertedToDisplay(makeForeignRGB(), TYPE_RGB_8, in);
}

inline Colour foreignGrayToDisplay(uint8_t gray) {
  return convertedToDisplay(makeForeignGray(), TYPE_GRAY_8, &gray);
}

}  // namespace test
