#include "graphics/color_space.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <span>

#include "graphics/profile.h"

namespace cg {
namespace {

bool equalOrBothNone(CFTypeRef a, CFTypeRef b) noexcept { return a == b || (a && b && CFEqual(a, b)); }

cf::Ref<CGColorSpaceRef> newSpace(int type, ColorModel model) noexcept {
  auto space = cf::make<CGColorSpace>(nullptr);
  if (!space) return nullptr;
  space->type = type;
  space->model = model;
  return cf::Ref<CGColorSpaceRef>::adopt(space.give());
}

// profile may be empty, as it is when memory ran out.
cf::Ref<CGColorSpaceRef> newSpace(int type, ColorModel model, cf::Ref<CFDataRef> profile) noexcept {
  auto space = profile ? newSpace(type, model) : nullptr;
  if (space) space->profile = std::move(profile);
  return space;
}

const char *typeName(int type) noexcept {
  constexpr std::array kNames = {"device grey",    "device RGB", "device CMYK", "calibrated grey",
                                 "calibrated RGB", "Lab",        "ICC based",   "indexed"};
  return kNames[static_cast<std::size_t>(type)];
}

std::span<const uint8_t> tableOf(const CGColorSpace &space) noexcept {
  return std::span(space.table).first(space.colors * componentsOf(space.model));
}

}  // namespace

CGColorSpaceRef colorsSpace(CGColorSpaceRef space) noexcept {
  return space && space->base ? space->base.get() : space;
}

bool sameColors(CGColorSpaceRef a, CGColorSpaceRef b) noexcept {
  if (CFEqual(a, b)) return true;
  // Device RGB is the display's, whose profile another space may have been made from.
  return !a->base && !b->base && a->profile && b->profile && CFEqual(a->profile.get(), b->profile.get());
}

}  // namespace cg

using namespace cg;

bool CGColorSpace::operator==(const CGColorSpace &other) const noexcept {
  if (type != other.type || model != other.model) return false;
  switch (type) {
    case kCGColorSpaceTypeIndexed:
      return CFEqual(base.get(), other.base.get()) && std::ranges::equal(tableOf(*this), tableOf(other));
    case kCGColorSpaceTypeCalibratedGray:
    case kCGColorSpaceTypeCalibratedRGB:
      return isFromProfile == other.isFromProfile && parameters == other.parameters &&
             equalOrBothNone(profile.get(), other.profile.get());
    default:
      return equalOrBothNone(profile.get(), other.profile.get());
  }
}

CFHashCode CGColorSpace::hash() const noexcept {
  const CFHashCode content = base ? CFHash(base.get()) + colors : profile ? CFHash(profile.get()) : 0;
  return content * 31 + static_cast<CFHashCode>(type);
}

std::string CGColorSpace::describe() const {
  char text[96];
  std::snprintf(text, sizeof text, "<CGColorSpace %p>{%s, %zu components}", static_cast<const void *>(this),
                typeName(type), base ? std::size_t{1} : componentsOf(model));
  return text;
}

CFTypeID CGColorSpaceGetTypeID(void) { return CGColorSpace::typeID(); }

CGColorSpaceRef CGColorSpaceCreateDeviceGray(void) {
  return newSpace(kCGColorSpaceTypeDeviceGray, ColorModel::gray).give();
}

CGColorSpaceRef CGColorSpaceCreateDeviceRGB(void) {
  return newSpace(kCGColorSpaceTypeDeviceRGB, ColorModel::rgb, cf::share(sharedSRGBProfile())).give();
}

CGColorSpaceRef CGColorSpaceCreateDeviceCMYK(void) {
  return newSpace(kCGColorSpaceTypeDeviceCMYK, ColorModel::cmyk).give();
}

CGColorSpaceRef CGColorSpaceCreateCalibratedGray(const CGFloat whitePoint[3], const CGFloat[3],
                                                 CGFloat gamma) {
  if (!whitePoint) return nullptr;
  auto space =
      newSpace(kCGColorSpaceTypeCalibratedGray, ColorModel::gray, makeGrayProfile(whitePoint, gamma));
  if (!space) return nullptr;
  std::copy_n(whitePoint, 3, space->parameters.begin());
  space->parameters[3] = gamma;
  return space.give();
}

CGColorSpaceRef CGColorSpaceCreateCalibratedRGB(const CGFloat whitePoint[3], const CGFloat[3],
                                                const CGFloat gamma[3], const CGFloat matrix[9]) {
  if (!whitePoint || !gamma || !matrix) return nullptr;
  auto space =
      newSpace(kCGColorSpaceTypeCalibratedRGB, ColorModel::rgb, makeRGBProfile(whitePoint, gamma, matrix));
  if (!space) return nullptr;
  std::copy_n(whitePoint, 3, space->parameters.begin());
  std::copy_n(gamma, 3, space->parameters.begin() + 3);
  std::copy_n(matrix, 9, space->parameters.begin() + 6);
  return space.give();
}

CGColorSpaceRef CGColorSpaceCreateWithICCProfile(CFDataRef profile) {
  if (!profile) return nullptr;
  // The display's profile is asked for at every turn, and known to be in order.
  const bool isDisplay = sharedSRGBProfile() && CFEqual(profile, sharedSRGBProfile());
  const auto model = isDisplay ? ColorModel::rgb : profileModel(profile);
  if (!model) return nullptr;
  auto bytes = isDisplay ? cf::share(sharedSRGBProfile()) : cf::adopt(CFDataCreateCopy(nullptr, profile));
  const int type = *model == ColorModel::gray ? kCGColorSpaceTypeCalibratedGray : kCGColorSpaceTypeICCBased;
  auto space = newSpace(type, *model, std::move(bytes));
  if (space) space->isFromProfile = true;
  return space.give();
}

CGColorSpaceRef CGColorSpaceCreateIndexed(CGColorSpaceRef base, size_t lastIndex,
                                          const unsigned char *table) {
  if (!base || base->base || !table || lastIndex > 255) return nullptr;
  auto space = newSpace(kCGColorSpaceTypeIndexed, base->model);
  if (!space) return nullptr;
  space->base = cf::share(base);
  space->colors = lastIndex + 1;
  std::memcpy(space->table.data(), table, space->colors * componentsOf(base->model));
  return space.give();
}

CGColorSpaceRef CGColorSpaceCreateWithPlatformColorSpace(const void *profile) {
  if (!profile) return nullptr;
  return CGColorSpaceCreateWithICCProfile(
      CMProfileGetData(static_cast<CMProfileRef>(const_cast<void *>(profile))));
}

CGColorSpaceRef CGColorSpaceRetain(CGColorSpaceRef space) {
  if (space) CFRetain(space);
  return space;
}

void CGColorSpaceRelease(CGColorSpaceRef space) {
  if (space) CFRelease(space);
}

size_t CGColorSpaceGetNumberOfComponents(CGColorSpaceRef space) {
  if (!space) return 0;
  return space->base ? 1 : componentsOf(space->model);
}

int CGColorSpaceGetType(CGColorSpaceRef space) { return space ? space->type : -1; }

CFDataRef CGColorSpaceCopyICCProfile(CGColorSpaceRef space) {
  return space && space->isFromProfile ? cf::Ref<CFDataRef>(space->profile).give() : nullptr;
}

CGColorSpaceRef CGColorSpaceGetBaseColorSpace(CGColorSpaceRef space) {
  return space ? space->base.get() : nullptr;
}
