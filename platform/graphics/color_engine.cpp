#include "graphics/color_engine.h"

#include <lcms2.h>
#include <lcms2_plugin.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "graphics/color_engine_cache.h"

namespace cg {
namespace {

// A profile's tables never come near this; a damaged one may claim anything.
constexpr std::size_t kMostBlockBytes = std::size_t{256} << 20;

void *engineAllocate(cmsContext, cmsUInt32Number bytes) {
  return bytes > kMostBlockBytes ? nullptr : std::malloc(bytes);
}
void engineFree(cmsContext, void *block) { std::free(block); }
void *engineReallocate(cmsContext, void *block, cmsUInt32Number bytes) {
  return bytes > kMostBlockBytes ? nullptr : std::realloc(block, bytes);
}

// What is wrong with a profile is told by results.
void stayQuiet(cmsContext, cmsUInt32Number, const char *) {}

cmsContext makeContext() noexcept {
  static cmsPluginMemHandler memory = {
      {cmsPluginMagicNumber, 2000, cmsPluginMemHandlerSig, nullptr},
      engineAllocate,
      engineFree,
      engineReallocate,
      nullptr,
      nullptr,
      nullptr,
  };
  const cmsContext context = cmsCreateContext(&memory, nullptr);
  if (context) cmsSetLogErrorHandlerTHR(context, stayQuiet);
  return context;
}

// Apart from the host application's own use of the same library. It lives as long as the process, because
// cached transforms do.
cmsContext engineContext() noexcept {
  static const cmsContext context = makeContext();
  return context;
}

struct CloseProfile {
  void operator()(void *profile) const noexcept { cmsCloseProfile(profile); }
};
using Profile = std::unique_ptr<void, CloseProfile>;

struct FreeCurve {
  void operator()(cmsToneCurve *curve) const noexcept { cmsFreeToneCurve(curve); }
};
using Curve = std::unique_ptr<cmsToneCurve, FreeCurve>;

Profile openProfile(const void *bytes, std::size_t length) noexcept {
  if (!engineContext() || length > kMostBlockBytes) return nullptr;
  return Profile(cmsOpenProfileFromMemTHR(engineContext(), bytes, static_cast<cmsUInt32Number>(length)));
}

Profile openProfile(CFDataRef data) noexcept {
  return data ? openProfile(CFDataGetBytePtr(data), static_cast<std::size_t>(CFDataGetLength(data)))
              : nullptr;
}

std::optional<ColorModel> modelOf(cmsHPROFILE profile) noexcept {
  switch (cmsGetColorSpace(profile)) {
    case cmsSigGrayData:
      return ColorModel::gray;
    case cmsSigRgbData:
      return ColorModel::rgb;
    case cmsSigCmykData:
      return ColorModel::cmyk;
    default:
      return std::nullopt;
  }
}

bool describesColors(cmsHPROFILE profile) noexcept {
  switch (cmsGetDeviceClass(profile)) {
    case cmsSigInputClass:
    case cmsSigDisplayClass:
    case cmsSigOutputClass:
    case cmsSigColorSpaceClass:
      return true;
    default:
      return false;
  }
}

cmsUInt32Number formatOf(PixelOrder order) noexcept {
  switch (order) {
    case PixelOrder::gray:
      return TYPE_GRAY_8;
    case PixelOrder::rgb:
      return TYPE_RGB_8;
    case PixelOrder::argb:
      return TYPE_ARGB_8;
    case PixelOrder::rgba:
      return TYPE_RGBA_8;
    default:
      return TYPE_CMYK_8;
  }
}

cmsUInt32Number formatOf(ColorModel model) noexcept {
  constexpr std::array kOrders = {PixelOrder::gray, PixelOrder::rgb, PixelOrder::cmyk};
  return formatOf(kOrders[static_cast<std::size_t>(model)]);
}

cmsUInt32Number engineIntent(CGColorRenderingIntent intent) noexcept {
  switch (intent) {
    case kCGRenderingIntentAbsoluteColorimetric:
      return INTENT_ABSOLUTE_COLORIMETRIC;
    case kCGRenderingIntentRelativeColorimetric:
      return INTENT_RELATIVE_COLORIMETRIC;
    case kCGRenderingIntentSaturation:
      return INTENT_SATURATION;
    default:
      return INTENT_PERCEPTUAL;
  }
}

// Without the one-pixel cache inside, a transform has no state, so that threads can share it. Grey goes in by
// tables of 256 entries alone: no need for the shortcut through a coarser table, which is up to 10 steps off
// in the shadows.
cmsUInt32Number flagsFor(PixelOrder from) noexcept {
  return from == PixelOrder::gray ? cmsFLAGS_NOCACHE | cmsFLAGS_NOOPTIMIZE : cmsFLAGS_NOCACHE;
}

class EngineTransform final : public ColorTransform {
 public:
  static std::shared_ptr<const ColorTransform> make(ColorEnd from, ColorEnd to,
                                                    CGColorRenderingIntent intent) {
    const Profile source = openProfile(from.profile), target = openProfile(to.profile);
    if (!source || !target) return nullptr;
    auto made = std::make_shared<EngineTransform>();
    made->handle_ = cmsCreateTransformTHR(engineContext(), source.get(), formatOf(from.order), target.get(),
                                          formatOf(to.order), engineIntent(intent), flagsFor(from.order));
    if (!made->handle_) return nullptr;
    return made;
  }
  EngineTransform() noexcept = default;
  ~EngineTransform() override {
    if (handle_) cmsDeleteTransform(handle_);
  }
  EngineTransform(const EngineTransform &) = delete;
  EngineTransform &operator=(const EngineTransform &) = delete;

  void convert(const uint8_t *in, uint8_t *out, std::size_t pixels) const noexcept override {
    cmsDoTransform(handle_, in, out, static_cast<cmsUInt32Number>(pixels));
  }

 private:
  cmsHTRANSFORM handle_ = nullptr;
};

// Where a profile was made, and when, would make equal spaces differ between two processes.
void forgetOrigin(uint8_t *profile) noexcept {
  constexpr std::size_t kDateAt = 24, kDateBytes = 12, kPlatformAt = 40, kPlatformBytes = 4;
  constexpr uint8_t kDate[kDateBytes] = {0x07, 0xD0, 0, 1, 0, 1};  // the year 2000, January the first
  std::memcpy(profile + kDateAt, kDate, kDateBytes);
  std::memset(profile + kPlatformAt, 0, kPlatformBytes);
}

cf::Ref<CFDataRef> bytesOf(cmsHPROFILE profile, CFAllocatorRef allocator) noexcept {
  constexpr cmsUInt32Number kHeaderBytes = 128;
  cmsUInt32Number length = 0;
  if (!profile || !cmsSaveProfileToMem(profile, nullptr, &length) || length < kHeaderBytes) return nullptr;
  const auto data = cf::adopt(CFDataCreateMutable(allocator, 0));
  if (!data) return nullptr;
  CFDataSetLength(data.get(), static_cast<CFIndex>(length));
  if (CFDataGetLength(data.get()) != static_cast<CFIndex>(length)) return nullptr;
  uint8_t *bytes = CFDataGetMutableBytePtr(data.get());
  if (!cmsSaveProfileToMem(profile, bytes, &length)) return nullptr;
  forgetOrigin(bytes);
  return cf::adopt(CFDataCreateCopy(allocator, data.get()));
}

// Chromaticity of a colour in XYZ; nothing for one that has none.
std::optional<cmsCIExyY> chromaticity(const CGFloat xyz[3]) noexcept {
  const double x = xyz[0], y = xyz[1], z = xyz[2], sum = x + y + z;
  if (!std::isfinite(sum) || sum <= 0) return std::nullopt;
  return cmsCIExyY{x / sum, y / sum, 1.0};
}

bool isWhite(const CGFloat xyz[3]) noexcept {
  return std::isfinite(xyz[0]) && std::isfinite(xyz[2]) && xyz[0] > 0 && xyz[1] == 1 && xyz[2] > 0;
}

Curve gammaCurve(CGFloat gamma) noexcept {
  // The format holds exponents as 16 bits before the point and 16 behind it; no display comes near.
  if (!(gamma > 0 && gamma <= 100) || !engineContext()) return nullptr;
  return Curve(cmsBuildGamma(engineContext(), gamma));
}

cf::Ref<CFDataRef> makeSRGBProfile() noexcept {
  if (!engineContext()) return nullptr;
  // Shared by everybody for good: not in the memory of whoever happens to come first.
  return bytesOf(Profile(cmsCreate_sRGBProfileTHR(engineContext())).get(), kCFAllocatorSystemDefault);
}

}  // namespace

// Only making a transform shows that every table a conversion needs is there and in order.
std::optional<ColorModel> profileModel(CFDataRef data) noexcept {
  const Profile profile = openProfile(data);
  const auto model = profile ? modelOf(profile.get()) : std::nullopt;
  if (!model || !describesColors(profile.get())) return std::nullopt;
  const Profile reference(cmsCreateXYZProfileTHR(engineContext()));
  if (!reference) return std::nullopt;
  const cmsHTRANSFORM probe =
      cmsCreateTransformTHR(engineContext(), profile.get(), formatOf(*model), reference.get(), TYPE_XYZ_DBL,
                            INTENT_PERCEPTUAL, cmsFLAGS_NOCACHE | cmsFLAGS_NOOPTIMIZE);
  if (!probe) return std::nullopt;
  cmsDeleteTransform(probe);
  return model;
}

CFDataRef sharedSRGBProfile() noexcept {
  static const cf::Ref<CFDataRef> profile = makeSRGBProfile();
  return profile.get();
}

cf::Ref<CFDataRef> makeGrayProfile(const CGFloat whitePoint[3], CGFloat gamma) noexcept {
  const Curve curve = gammaCurve(gamma);
  const auto white = chromaticity(whitePoint);
  if (!curve || !white || !isWhite(whitePoint)) return nullptr;
  return bytesOf(Profile(cmsCreateGrayProfileTHR(engineContext(), &*white, curve.get())).get(), nullptr);
}

cf::Ref<CFDataRef> makeRGBProfile(const CGFloat whitePoint[3], const CGFloat gamma[3],
                                  const CGFloat matrix[9]) noexcept {
  const Curve red = gammaCurve(gamma[0]), green = gammaCurve(gamma[1]), blue = gammaCurve(gamma[2]);
  const auto white = chromaticity(whitePoint);
  const auto r = chromaticity(matrix), g = chromaticity(matrix + 3), b = chromaticity(matrix + 6);
  if (!red || !green || !blue || !white || !isWhite(whitePoint) || !r || !g || !b) return nullptr;
  const cmsCIExyYTRIPLE primaries = {*r, *g, *b};
  cmsToneCurve *const curves[] = {red.get(), green.get(), blue.get()};
  return bytesOf(Profile(cmsCreateRGBProfileTHR(engineContext(), &*white, &primaries, curves)).get(),
                 nullptr);
}

std::shared_ptr<const ColorTransform> colorTransform(ColorEnd from, ColorEnd to,
                                                     CGColorRenderingIntent intent) noexcept {
  static TransformCache cache;
  return cache.find({from.profile, from.order, to.profile, to.order, engineIntent(intent)},
                    [&] { return EngineTransform::make(from, to, intent); });
}

}  // namespace cg
