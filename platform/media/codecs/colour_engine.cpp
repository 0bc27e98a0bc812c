#include "media/codecs/colour_engine.h"

#include <lcms2.h>
#include <lcms2_plugin.h>

#include <cstdlib>
#include <new>

namespace codecs {
namespace {

// A hostile profile may ask for tables of any size; a sound one needs a few megabytes.
constexpr cmsUInt32Number kMaxEngineBlock = 64u << 20;

void *takeBlock(cmsContext, cmsUInt32Number size) {
  return size > kMaxEngineBlock ? nullptr : std::malloc(size ? size : 1);
}
void giveBlock(cmsContext, void *block) { std::free(block); }
void *resizeBlock(cmsContext, void *block, cmsUInt32Number size) {
  return size > kMaxEngineBlock ? nullptr : std::realloc(block, size ? size : 1);
}

cmsPluginMemHandler memoryHandler() noexcept {
  cmsPluginMemHandler handler{};
  handler.base = {cmsPluginMagicNumber, 2000, cmsPluginMemHandlerSig, nullptr};
  handler.MallocPtr = takeBlock;
  handler.FreePtr = giveBlock;
  handler.ReallocPtr = resizeBlock;
  return handler;
}

cmsUInt32Number inputFormat(ProfileInput input) noexcept {
  switch (input) {
    case ProfileInput::grey:
      return TYPE_GRAY_8;
    case ProfileInput::cmyk:
      return TYPE_CMYK_8;
    case ProfileInput::cmykInverted:
      return TYPE_CMYK_8_REV;
  }
  return TYPE_GRAY_8;
}

cmsColorSpaceSignature colourSpace(ProfileInput input) noexcept {
  return input == ProfileInput::grey ? cmsSigGrayData : cmsSigCmykData;
}

// Owns a profile for the length of a block.
struct Profile {
  cmsHPROFILE handle;
  explicit Profile(cmsHPROFILE opened) noexcept : handle(opened) {}
  Profile(const Profile &) = delete;
  Profile &operator=(const Profile &) = delete;
  ~Profile() {
    if (handle) cmsCloseProfile(handle);
  }
};

cmsHTRANSFORM makeTransform(cmsContext context, Bytes bytes, ProfileInput input) noexcept {
  const Profile from(
      cmsOpenProfileFromMemTHR(context, bytes.data(), static_cast<cmsUInt32Number>(bytes.size())));
  const Profile to(cmsCreate_sRGBProfileTHR(context));
  if (!from.handle || !to.handle || cmsGetColorSpace(from.handle) != colourSpace(input)) return nullptr;
  return cmsCreateTransformTHR(context, from.handle, inputFormat(input), to.handle, TYPE_ARGB_8,
                               INTENT_PERCEPTUAL, cmsFLAGS_NOCACHE);
}

}  // namespace

struct ToSrgb::State {
  cmsPluginMemHandler memory = memoryHandler();
  cmsContext context = cmsCreateContext(&memory, nullptr);
  cmsHTRANSFORM transform = nullptr;

  State() noexcept = default;
  State(const State &) = delete;
  State &operator=(const State &) = delete;
  ~State() {
    if (transform) cmsDeleteTransform(transform);
    if (context) cmsDeleteContext(context);
  }
};

ToSrgb::ToSrgb() noexcept = default;
ToSrgb::ToSrgb(ToSrgb &&) noexcept = default;
ToSrgb &ToSrgb::operator=(ToSrgb &&) noexcept = default;
ToSrgb::~ToSrgb() = default;

ToSrgb ToSrgb::make(Bytes profile, ProfileInput input) noexcept {
  ToSrgb result;
  std::unique_ptr<State> state(new (std::nothrow) State);
  if (!state || !state->context) return result;
  state->transform = makeTransform(state->context, profile, input);
  if (state->transform) result.state_ = std::move(state);
  return result;
}

void ToSrgb::convert(const uint8_t *from, uint8_t *xrgb, size_t count) const noexcept {
  cmsDoTransform(state_->transform, from, xrgb, static_cast<cmsUInt32Number>(count));
  for (size_t i = 0; i < count; ++i) xrgb[4 * i] = 255;  // the engine leaves the extra byte as it was
}

}  // namespace codecs
