// An importer that says what no file can be made to say.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include "core/images.h"
#include "media/graphics_import.h"

namespace test {

inline constexpr OSType kTestFormat = MEDIA_CODE('t', 'e', 's', 't');
inline constexpr OSType kPICT = MEDIA_CODE('P', 'I', 'C', 'T');
inline constexpr OSType kPCT = MEDIA_CODE('P', 'C', 'T', ' ');

// Describes a 3 x 2 image as it is told, keeps the bytes that it was handed, and fills its world with one
// byte. It stands in front of the built-in importer of its subtype while it lives; data of no stated format
// it claims only with a score.
class FakeImporter {
 public:
  explicit FakeImporter(OSType subtype) {
    table_.type = GraphicsImporterComponentType;
    table_.subType = subtype;
    table_.context = this;
    table_.open = [](const ComponentTable *table, void **self) -> OSErr {
      *self = table->context;
      const OSErr error = of(*self).openError;
      if (error == noErr) ++of(*self).opened;
      return error;
    };
    table_.close = [](void *self) { ++of(self).closed; };
    table_.validate = [](const ComponentTable *table, const uint8_t *, size_t) {
      return of(table->context).score;
    };
    table_.setData = [](void *self, const uint8_t *bytes, size_t size) -> ComponentResult {
      of(self).data = Bytes(bytes, bytes + size);
      return of(self).dataError;
    };
    table_.getDescription = [](void *self, ImageDescription *description) -> ComponentResult {
      ++of(self).described;
      description->width = of(self).width;
      description->height = of(self).height;
      description->depth = of(self).depth;
      return of(self).descriptionError;
    };
    table_.getProfile = [](void *self, Handle *made) -> ComponentResult {
      if (const auto &bytes = of(self).profile)
        PtrToHand(bytes->data(), made, static_cast<Size>(bytes->size()));
      return of(self).profileError;
    };
    table_.draw = [](void *self, const OffscreenWorld *target) -> ComponentResult {
      of(self).world = *target;
      const auto rows = static_cast<size_t>(target->bounds.bottom - target->bounds.top);
      if (of(self).paint) std::fill_n(target->pixels, rows * target->rowBytes, *of(self).paint);
      return of(self).drawError;
    };
    EXPECT_EQ(RegisterComponentTable(&table_), noErr);
  }
  ~FakeImporter() {
    EXPECT_EQ(UnregisterComponentTable(&table_), noErr);
    EXPECT_EQ(closed, opened) << "every importer that is opened is closed";
  }
  FakeImporter(const FakeImporter &) = delete;
  FakeImporter &operator=(const FakeImporter &) = delete;

  // What it says.
  int score = 0;
  int16_t width = 3, height = 2, depth = 24;
  OSErr openError = noErr;
  ComponentResult dataError = noErr, descriptionError = noErr, profileError = noErr, drawError = noErr;
  std::optional<Bytes> profile;
  std::optional<uint8_t> paint = uint8_t{77};

  // What it was asked.
  int opened = 0, closed = 0, described = 0;
  Bytes data;
  OffscreenWorld world{};

 private:
  static FakeImporter &of(void *self) { return *static_cast<FakeImporter *>(self); }
  ComponentTable table_{};
};

}  // namespace test
