// The bytes behind a provider, for readers inside the platform.
#pragma once

#include <CoreGraphics/CGDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <span>

#include "foundation/object.h"

struct CGDataProvider : cf::ObjectOf<CGDataProvider> {
  static constexpr const char *kName = "CGDataProvider";
  ~CGDataProvider();

  std::span<const uint8_t> bytes;
  cf::Ref<CFDataRef> data;  // where the bytes are a data object's
  CGDataProviderReleaseDataCallback release = nullptr;
  void *info = nullptr;
};

namespace cg {

// All bytes of a provider, which live as long as it does; none for NULL.
std::span<const uint8_t> providerBytes(CGDataProviderRef provider) noexcept;

}  // namespace cg
