#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "foundation/ref.h"
#include "import_support.h"
#include "jpeg_maker.h"
#include "media/codecs/limits.h"
#include "media/graphics_import.h"
#include "media/inspection.h"
#include "png_maker.h"

namespace {

std::vector<uint8_t> tinyPng() { return makePng({.width = 1, .height = 1, .samples = {200, 100, 50}}); }

struct TemporaryFile {
  std::filesystem::path path;
  TemporaryFile(const std::string &name, const std::vector<uint8_t> &bytes)
      : path(std::filesystem::temp_directory_path() / (std::to_string(getpid()) + name)) {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  }
  ~TemporaryFile() { std::filesystem::remove(path); }
};

cf::Ref<CFStringRef> stringOf(const std::string &text) {
  return cf::adopt(CFStringCreateWithCString(kCFAllocatorDefault, text.c_str(), kCFStringEncodingUTF8));
}

OSErr openPath(const std::string &path, GraphicsImportComponent *importer) {
  Handle reference = nullptr;
  OSType type = 0;
  const auto string = stringOf(path);
  EXPECT_EQ(QTNewDataReferenceFromFullPathCFString(string.get(), kQTPOSIXPathStyle, 0, &reference, &type),
            noErr);
  const OSErr error = GetGraphicsImporterForDataRefWithFlags(reference, type, importer, 0);
  DisposeHandle(reference);
  return error;
}

TEST(DataReference, ToAHandleFindsTheImporterByTheBytes) {
  const struct {
    std::vector<uint8_t> file;
    OSType subType;
  } cases[] = {{tinyPng(), MEDIA_CODE('P', 'N', 'G', 'f')},
               {makeJpeg({.width = 1, .height = 1, .samples = {9, 9, 9}}), MEDIA_CODE('J', 'P', 'E', 'G')}};
  for (const auto &one : cases) {
    Handle data = nullptr, reference = nullptr;
    PtrToHand(one.file.data(), &data, static_cast<Size>(one.file.size()));
    PtrToHand(&data, &reference, sizeof data);
    GraphicsImportComponent importer = nullptr;
    ASSERT_EQ(GetGraphicsImporterForDataRefWithFlags(reference, HandleDataHandlerSubType, &importer, 0),
              noErr);
    EXPECT_EQ(OpenImporter::describeImage(importer).cType, one.subType);
    CloseComponent(importer);
    DisposeHandle(reference);
    DisposeHandle(data);
  }
}

TEST(DataReference, ToAPathOutlivesTheReference) {
  const TemporaryFile file("data reference %41 ünï.png", tinyPng());
  GraphicsImportComponent importer = nullptr;
  ASSERT_EQ(openPath(file.path.string(), &importer), noErr);
  EXPECT_EQ(OpenImporter::drawImage(importer), (std::vector<uint8_t>{255, 200, 100, 50}));
  CloseComponent(importer);
}

TEST(DataReference, ToAUrlReadsTheFile) {
  const TemporaryFile file("data reference url.png", tinyPng());
  const auto string = stringOf(file.path.string());
  const auto url = cf::adopt(
      CFURLCreateWithFileSystemPath(kCFAllocatorDefault, string.get(), kCFURLPOSIXPathStyle, false));
  Handle reference = nullptr;
  OSType type = 0;
  ASSERT_EQ(QTNewDataReferenceFromCFURL(url.get(), 0, &reference, &type), noErr);
  GraphicsImportComponent importer = nullptr;
  ASSERT_EQ(GetGraphicsImporterForDataRefWithFlags(reference, type, &importer, 0), noErr);
  EXPECT_EQ(OpenImporter::describeImage(importer).width, 1);
  CloseComponent(importer);
  DisposeHandle(reference);
}

TEST(DataReference, FilesLargerThanAChunkAreReadWhole) {
  std::vector<uint8_t> large = tinyPng();
  large.resize(5'000'000, 7);
  const TemporaryFile file("large.png", large);
  GraphicsImportComponent importer = nullptr;
  ASSERT_EQ(openPath(file.path.string(), &importer), noErr);
  EXPECT_EQ(OpenImporter::describeImage(importer).width, 1);
  CloseComponent(importer);
}

TEST(DataReference, AnEndlessFileIsTooLarge) {
  CGImageDecodeLimits limits = CGImageGetDefaultDecodeLimits();
  limits.memoryBytes = 3'000'000;
  CGImageSetDecodeLimits(&limits);
  GraphicsImportComponent importer = nullptr;
  EXPECT_EQ(openPath("/dev/zero", &importer), codecTooLargeErr);
  EXPECT_STREQ(CGImageGetLastDecodeFault(), "too large");
  CGImageSetDecodeLimits(nullptr);
}

TEST(DataReference, WhatCannotBeReadIsNotFound) {
  GraphicsImportComponent importer = nullptr;
  EXPECT_EQ(openPath("/no/such/file.png", &importer), fnfErr);
  EXPECT_EQ(openPath(std::filesystem::temp_directory_path().string(), &importer), fnfErr);
  EXPECT_EQ(importer, nullptr);
}

TEST(DataReference, BytesThatNobodyClaimsFindNoImporter) {
  const TemporaryFile text("text.png", {'h', 'e', 'l', 'l', 'o'});
  const TemporaryFile empty("empty.png", {});
  GraphicsImportComponent importer = nullptr;
  EXPECT_EQ(openPath(text.path.string(), &importer), cantFindHandler);
  EXPECT_STREQ(CGImageGetLastDecodeFault(), "not an image this tool knows");
  EXPECT_EQ(openPath(empty.path.string(), &importer), cantFindHandler);
}

TEST(DataReference, MalformedReferencesAreErrors) {
  GraphicsImportComponent importer = nullptr;
  Handle reference = NewHandle(3);
  EXPECT_EQ(GetGraphicsImporterForDataRefWithFlags(reference, HandleDataHandlerSubType, &importer, 0),
            paramErr);
  EXPECT_EQ(GetGraphicsImporterForDataRefWithFlags(reference, MEDIA_CODE('n', 'o', 'n', 'e'), &importer, 0),
            paramErr);
  DisposeHandle(reference);
  reference = NewHandle(sizeof(Handle));
  EXPECT_EQ(GetGraphicsImporterForDataRefWithFlags(reference, HandleDataHandlerSubType, &importer, 0),
            nilHandleErr);
  DisposeHandle(reference);
  EXPECT_EQ(GetGraphicsImporterForDataRefWithFlags(nullptr, HandleDataHandlerSubType, &importer, 0),
            nilHandleErr);
  OSType type = 0;
  EXPECT_EQ(QTNewDataReferenceFromCFURL(nullptr, 0, &reference, &type), paramErr);
  EXPECT_EQ(QTNewDataReferenceFromFullPathCFString(nullptr, 0, 0, &reference, &type), paramErr);
}

// A component of the test's own, surer than any built-in one.
TEST(DataReference, ARegisteredImporterMayClaimTheBytes) {
  ComponentTable table{};
  table.type = GraphicsImporterComponentType;
  table.subType = MEDIA_CODE('m', 'i', 'n', 'e');
  table.validate = [](const ComponentTable *, const uint8_t *head, size_t size) {
    return size > 1 && head[1] == 'P' ? 1000 : 0;
  };
  table.setData = [](void *, const uint8_t *, size_t) -> ComponentResult { return noErr; };
  table.getDescription = [](void *, ImageDescription *description) -> ComponentResult {
    description->depth = 16;
    return noErr;
  };
  ASSERT_EQ(RegisterComponentTable(&table), noErr);
  const TemporaryFile file("claimed.png", tinyPng());
  GraphicsImportComponent importer = nullptr;
  ASSERT_EQ(openPath(file.path.string(), &importer), noErr);
  EXPECT_EQ(OpenImporter::describeImage(importer).depth, 16);
  CloseComponent(importer);
  UnregisterComponentTable(&table);
}

// As the one above, but it takes no data.
TEST(DataReference, AnImporterThatRefusesTheDataIsClosedAgain) {
  static int open = 0;
  ComponentTable table{};
  table.type = GraphicsImporterComponentType;
  table.subType = MEDIA_CODE('m', 'i', 'n', 'e');
  table.validate = [](const ComponentTable *, const uint8_t *, size_t) { return 1000; };
  table.open = [](const ComponentTable *, void **) -> OSErr { return ++open, noErr; };
  table.close = [](void *) { --open; };
  table.setData = [](void *, const uint8_t *, size_t) -> ComponentResult { return codecErr; };
  ASSERT_EQ(RegisterComponentTable(&table), noErr);
  const TemporaryFile file("refused.png", tinyPng());
  GraphicsImportComponent importer = nullptr;
  EXPECT_EQ(openPath(file.path.string(), &importer), codecErr);
  EXPECT_EQ(importer, nullptr);
  EXPECT_EQ(open, 0);
  table.open = [](const ComponentTable *, void **) -> OSErr { return memFullErr; };
  EXPECT_EQ(openPath(file.path.string(), &importer), memFullErr);
  EXPECT_EQ(importer, nullptr);
  UnregisterComponentTable(&table);
}

TEST(DataReference, FlagsAndStylesOfOtherSystemsAreErrors) {
  const auto path = stringOf("/a");
  const auto url = cf::adopt(CFURLCreateWithFileSystemPath(nullptr, path.get(), kCFURLPOSIXPathStyle, false));
  Handle reference = nullptr;
  OSType type = 0;
  GraphicsImportComponent importer = nullptr;
  EXPECT_EQ(QTNewDataReferenceFromFullPathCFString(path.get(), 1, 0, &reference, &type), paramErr);
  EXPECT_EQ(QTNewDataReferenceFromFullPathCFString(path.get(), 0, 1, &reference, &type), paramErr);
  EXPECT_EQ(QTNewDataReferenceFromFullPathCFString(path.get(), 0, 0, nullptr, &type), paramErr);
  EXPECT_EQ(QTNewDataReferenceFromFullPathCFString(path.get(), 0, 0, &reference, nullptr), paramErr);
  EXPECT_EQ(QTNewDataReferenceFromCFURL(url.get(), 1, &reference, &type), paramErr);
  EXPECT_EQ(QTNewDataReferenceFromCFURL(url.get(), 0, nullptr, &type), paramErr);
  EXPECT_EQ(reference, nullptr);
  ASSERT_EQ(QTNewDataReferenceFromCFURL(url.get(), 0, &reference, &type), noErr);
  EXPECT_EQ(GetGraphicsImporterForDataRefWithFlags(reference, type, &importer, 1), paramErr);
  EXPECT_EQ(GetGraphicsImporterForDataRefWithFlags(reference, type, nullptr, 0), paramErr);
  DisposeHandle(reference);
}

// The path of a file ends with its one zero byte.
TEST(DataReference, APathThatIsCutOffOrHasNoEndIsAnError) {
  const TemporaryFile file("ends.png", tinyPng());
  const auto path = stringOf(file.path.string());
  Handle good = nullptr;
  OSType type = 0;
  ASSERT_EQ(QTNewDataReferenceFromFullPathCFString(path.get(), kQTPOSIXPathStyle, 0, &good, &type), noErr);
  GraphicsImportComponent importer = nullptr;
  for (const Size size : {Size{0}, Size{1}, GetHandleSize(good) - 1, GetHandleSize(good) + 1}) {
    Handle bad = nullptr;
    ASSERT_EQ(PtrToHand(*good, &bad, GetHandleSize(good)), noErr);
    SetHandleSize(bad, size);
    EXPECT_EQ(GetGraphicsImporterForDataRefWithFlags(bad, type, &importer, 0), paramErr) << size;
    EXPECT_EQ(importer, nullptr);
    DisposeHandle(bad);
  }
  DisposeHandle(good);
}

}  // namespace
