#include "graphics/profile.h"

#include "foundation/object.h"
#include "graphics/color_engine.h"

struct CMProfile : cf::ObjectOf<CMProfile> {
  static constexpr const char *kName = "CMProfile";
  cf::Ref<CFDataRef> data;
};

namespace {

constexpr CMError kNoError = 0, kParameterError = -50, kMemoryError = -108, kProfileError = -170;

CMError openWith(cf::Ref<CFDataRef> data, CMProfileRef *profile) noexcept {
  auto opened = data ? cf::make<CMProfile>(nullptr) : nullptr;
  if (!opened) return kMemoryError;
  opened->data = std::move(data);
  *profile = opened.give();
  return kNoError;
}

}  // namespace

CMError CMGetSystemProfile(CMProfileRef *profile) {
  if (!profile) return kParameterError;
  *profile = nullptr;
  return openWith(cf::share(cg::sharedSRGBProfile()), profile);
}

CMError CMOpenProfile(CMProfileRef *profile, const CMProfileLocation *location) {
  if (!profile) return kParameterError;
  *profile = nullptr;
  if (!location || location->locType != cmHandleBasedProfile) return kParameterError;
  const CMHandleLocation &handle = location->u.handleLoc;
  if (!handle.h || !*handle.h || handle.size <= 0) return kParameterError;
  return openWith(cf::adopt(CFDataCreate(nullptr, reinterpret_cast<const UInt8 *>(*handle.h), handle.size)),
                  profile);
}

CMError CMValidateProfile(CMProfileRef profile, Boolean *valid, Boolean *preferredCMMNotFound) {
  if (preferredCMMNotFound) *preferredCMMNotFound = 0;
  const bool isValid = profile && cg::profileModel(profile->data.get());
  if (valid) *valid = isValid;
  return isValid ? kNoError : kProfileError;
}

CMError CMCloseProfile(CMProfileRef profile) {
  if (!profile) return kParameterError;
  CFRelease(profile);
  return kNoError;
}

CFDataRef CMProfileGetData(CMProfileRef profile) { return profile ? profile->data.get() : nullptr; }
