// Small colour profiles for tests, made by the colour engine.
#pragma once

#include <lcms2.h>

#include <cmath>
#include <cstdint>
#include <vector>

inline std::vector<uint8_t> profileBytes(cmsHPROFILE profile) {
  cmsUInt32Number size = 0;
  cmsSaveProfileToMem(profile, nullptr, &size);
  std::vector<uint8_t> bytes(size);
  cmsSaveProfileToMem(profile, bytes.data(), &size);
  cmsCloseProfile(profile);
  for (size_t at = 24; at < 36 && at < bytes.size(); ++at) bytes[at] = 0;  // the day it was made
  return bytes;
}

// Red and blue swapped against sRGB, so that a conversion cannot go unnoticed.
inline std::vector<uint8_t> swappedRgbProfile() {
  const cmsCIExyY white{0.3127, 0.3290, 1};
  const cmsCIExyYTRIPLE primaries{{0.15, 0.06, 1}, {0.30, 0.60, 1}, {0.64, 0.33, 1}};
  cmsToneCurve *gamma = cmsBuildGamma(nullptr, 2.2);
  cmsToneCurve *curves[3] = {gamma, gamma, gamma};
  const cmsHPROFILE profile = cmsCreateRGBProfile(&white, &primaries, curves);
  cmsFreeToneCurve(gamma);
  return profileBytes(profile);
}

inline std::vector<uint8_t> greyProfile(double gammaValue) {
  cmsToneCurve *gamma = cmsBuildGamma(nullptr, gammaValue);
  const cmsHPROFILE profile = cmsCreateGrayProfile(cmsD50_xyY(), gamma);
  cmsFreeToneCurve(gamma);
  return profileBytes(profile);
}

// A CMYK profile in which only black ink counts: L* falls with it, colour stays neutral.
inline std::vector<uint8_t> blackInkProfile() {
  const cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
  cmsSetProfileVersion(profile, 2.1);
  cmsSetDeviceClass(profile, cmsSigOutputClass);
  cmsSetColorSpace(profile, cmsSigCmykData);
  cmsSetPCS(profile, cmsSigLabData);
  cmsPipeline *pipeline = cmsPipelineAlloc(nullptr, 4, 3);
  cmsStage *grid = cmsStageAllocCLut16bit(nullptr, 2, 4, 3, nullptr);
  cmsStageSampleCLut16bit(
      grid,
      [](const cmsUInt16Number in[], cmsUInt16Number out[], void *) -> cmsInt32Number {
        out[0] = static_cast<cmsUInt16Number>(0xFF00 - in[3] / 257 * 255);
        out[1] = out[2] = 0x8000;
        return TRUE;
      },
      nullptr, 0);
  cmsPipelineInsertStage(pipeline, cmsAT_END, grid);
  cmsWriteTag(profile, cmsSigAToB0Tag, pipeline);
  cmsPipelineFree(pipeline);
  return profileBytes(profile);
}

inline std::vector<uint8_t> srgbProfile() { return profileBytes(cmsCreate_sRGBProfile()); }
