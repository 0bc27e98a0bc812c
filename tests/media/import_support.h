// An importer open over bytes, for the length of a test.
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "media/graphics_import.h"

struct OpenImporter {
  Handle data = nullptr;
  GraphicsImportComponent instance = nullptr;

  OpenImporter(OSType subType, const std::vector<uint8_t> &file) {
    EXPECT_EQ(PtrToHand(file.data(), &data, static_cast<Size>(file.size())), noErr);
    EXPECT_EQ(OpenADefaultComponent(GraphicsImporterComponentType, subType, &instance), noErr);
    EXPECT_EQ(GraphicsImportSetDataHandle(instance, data), noErr);
  }
  OpenImporter(const OpenImporter &) = delete;
  OpenImporter &operator=(const OpenImporter &) = delete;
  ~OpenImporter() {
    CloseComponent(instance);
    DisposeHandle(data);
  }

  ImageDescription describe() const { return describeImage(instance); }
  std::vector<uint8_t> draw() const { return drawImage(instance); }

  static ImageDescription describeImage(GraphicsImportComponent importer) {
    ImageDescriptionHandle description = nullptr;
    EXPECT_EQ(GraphicsImportGetImageDescription(importer, &description), noErr);
    if (!description) return {};
    const ImageDescription facts = **description;
    DisposeHandle(reinterpret_cast<Handle>(description));
    return facts;
  }

  // The pixels as a loader would have them drawn: grey for depth 8, else four bytes each.
  static std::vector<uint8_t> drawImage(GraphicsImportComponent importer) {
    const ImageDescription facts = describeImage(importer);
    const bool grey = facts.depth == 8;
    const size_t rowBytes = static_cast<size_t>(facts.width) * (grey ? 1 : 4);
    std::vector<uint8_t> pixels(rowBytes * static_cast<size_t>(facts.height));
    const Rect bounds{0, 0, facts.height, facts.width};
    GWorldPtr world = nullptr;
    EXPECT_EQ(NewGWorldFromPtr(&world, grey ? 40 : 32, &bounds, nullptr, nullptr, 0,
                               reinterpret_cast<Ptr>(pixels.data()), static_cast<int32_t>(rowBytes)),
              noErr);
    EXPECT_EQ(GraphicsImportSetGWorld(importer, world, nullptr), noErr);
    EXPECT_EQ(GraphicsImportDraw(importer), noErr);
    DisposeGWorld(world);
    return pixels;
  }
};
