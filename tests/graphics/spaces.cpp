#include "graphics/spaces.h"

#include <lcms2.h>

#include <array>
#include <vector>

namespace testing_support {
namespace {

cf::Ref<CFDataRef> saved(cmsHPROFILE profile) {
  cmsUInt32Number length = 0;
  cmsSaveProfileToMem(profile, nullptr, &length);
  std::vector<uint8_t> bytes(length);
  cmsSaveProfileToMem(profile, bytes.data(), &length);
  cmsCloseProfile(profile);
  return cf::adopt(CFDataCreate(nullptr, bytes.data(), static_cast<CFIndex>(length)));
}

// The Lab of inks that each take light away evenly.
cmsInt32Number labOfInks(const cmsUInt16Number in[], cmsUInt16Number out[], void *transform) {
  std::array<double, 3> light{};
  for (size_t c = 0; c < 3; ++c) light[c] = (1 - in[c] / 65535.0) * (1 - in[3] / 65535.0);
  cmsDoTransform(transform, light.data(), out, 1);
  return TRUE;
}

}  // namespace

cf::Ref<CFDataRef> gammaProfile(double gamma) {
  const CGFloat matrix[] = {0.4124F, 0.2126F, 0.0193F, 0.3576F, 0.7152F, 0.1192F, 0.1805F, 0.0722F, 0.9505F};
  const auto g = static_cast<CGFloat>(gamma);
  const CGFloat gammas[] = {g, g, g};
  return cg::makeRGBProfile(kDaylight, gammas, matrix);
}

cf::Ref<CFDataRef> grayProfile(double gamma) {
  return cg::makeGrayProfile(kDaylight, static_cast<CGFloat>(gamma));
}

cf::Ref<CFDataRef> inkProfile() {
  cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
  cmsSetProfileVersion(profile, 4.3);
  cmsSetDeviceClass(profile, cmsSigOutputClass);
  cmsSetColorSpace(profile, cmsSigCmykData);
  cmsSetPCS(profile, cmsSigLabData);
  cmsHPROFILE rgb = cmsCreate_sRGBProfile(), lab = cmsCreateLab4Profile(nullptr);
  cmsHTRANSFORM transform =
      cmsCreateTransform(rgb, TYPE_RGB_DBL, lab, TYPE_Lab_16, INTENT_PERCEPTUAL, cmsFLAGS_NOCACHE);
  cmsPipeline *pipeline = cmsPipelineAlloc(nullptr, 4, 3);
  cmsStage *table = cmsStageAllocCLut16bit(nullptr, 9, 4, 3, nullptr);
  cmsStageSampleCLut16bit(table, labOfInks, transform, 0);
  cmsPipelineInsertStage(pipeline, cmsAT_BEGIN, cmsStageAllocToneCurves(nullptr, 4, nullptr));
  cmsPipelineInsertStage(pipeline, cmsAT_END, table);
  cmsPipelineInsertStage(pipeline, cmsAT_END, cmsStageAllocToneCurves(nullptr, 3, nullptr));
  cmsWriteTag(profile, cmsSigAToB0Tag, pipeline);
  cmsPipelineFree(pipeline);
  cmsDeleteTransform(transform);
  cmsCloseProfile(rgb);
  cmsCloseProfile(lab);
  return saved(profile);
}

cf::Ref<CFDataRef> labProfile() { return saved(cmsCreateLab4Profile(nullptr)); }

}  // namespace testing_support
