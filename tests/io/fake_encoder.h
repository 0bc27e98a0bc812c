// An encoder under the code of PICT that writes what it is told, and keeps what it was given.
#pragma once

#include <gtest/gtest.h>

#include "files.h"
#include "media/graphics_export.h"

namespace test {

class FakeEncoder {
 public:
  explicit FakeEncoder(size_t writes, OSType subtype = MEDIA_CODE('P', 'I', 'C', 'T')) : size(writes) {
    table_.type = GraphicsExporterComponentType;
    table_.subType = subtype;
    table_.context = this;
    table_.open = [](const ComponentTable *table, void **self) -> OSErr {
      *self = table->context;
      const OSErr error = of(*self).openError;
      if (error == noErr) ++of(*self).opened;
      return error;
    };
    table_.close = [](void *self) { ++of(self).closed; };
    table_.encode = [](void *self, CGImageRef image, Handle output) -> ComponentResult {
      FakeEncoder &encoder = of(self);
      ++encoder.encoded;
      encoder.alpha = CGImageGetAlphaInfo(image);
      const cf::Ref copied = cf::adopt(CGDataProviderCopyData(CGImageGetDataProvider(image)));
      encoder.pixels = bytesOf(copied.get());
      SetHandleSize(output, static_cast<Size>(encoder.size));
      for (size_t i = 0; i < encoder.size; ++i) (*output)[i] = static_cast<char>(i);
      return encoder.encodeError;
    };
    EXPECT_EQ(RegisterComponentTable(&table_), noErr);
  }
  ~FakeEncoder() {
    EXPECT_EQ(UnregisterComponentTable(&table_), noErr);
    EXPECT_EQ(closed, opened) << "every encoder that is opened is closed";
  }
  FakeEncoder(const FakeEncoder &) = delete;
  FakeEncoder &operator=(const FakeEncoder &) = delete;

  // What it does.
  size_t size;
  OSErr openError = noErr;
  ComponentResult encodeError = noErr;

  // What it was asked.
  int opened = 0, closed = 0, encoded = 0;
  Bytes pixels;
  CGImageAlphaInfo alpha = kCGImageAlphaNone;

 private:
  static FakeEncoder &of(void *self) { return *static_cast<FakeEncoder *>(self); }
  ComponentTable table_{};
};

}  // namespace test
