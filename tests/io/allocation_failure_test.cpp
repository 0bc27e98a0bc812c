// Every request for memory of every load, export and creation fails once: nothing or the whole result, and
// nothing leaked.
#include <gtest/gtest.h>

#include "constructors.h"
#include "failing_allocator.h"
#include "failing_malloc.h"
#include "io/exporter.h"

namespace {

using namespace test;
using testing_support::FailingMalloc;
using testing_support::forEachFailedAllocation;

// Runs the operation with its first request for memory failing, then with its second, until none fails.
// check(result, failed) looks at what it gave. One run comes before, for what is made once in a process and
// stays, such as constant strings.
template <class Operation, class Check>
void failEveryRequest(Operation operation, Check check) {
  check(operation(), false);
  bool failed = true;
  long request = 1;
  for (; failed && !testing::Test::HasFailure(); ++request) {
    ASSERT_LT(request, 5000);
    SCOPED_TRACE(request);
    auto result = [&] {
      const FailingMalloc failing(request);
      auto made = operation();
      failed = failing.failed();
      return made;
    }();
    check(std::move(result), failed);
  }
  EXPECT_GT(request, 3) << "there was hardly anything to fail";
}

Bytes loaded(const cf::Ref<DRAVCFImageLoaderRef> &loader) {
  const cf::Ref image = cf::adopt(DRAVCFImageLoaderCopyImage(loader.get()));
  return image ? pixelsOf(image.get()) : Bytes{};
}

// Loads with the allocator given; the pixels are those that it gives when nothing fails.
template <class Load>
void expectNoneOrWhole(Load load) {
  const Bytes whole = loaded(cf::adopt(load(nullptr)));
  ASSERT_EQ(whole.size(), 24u);
  failEveryRequest([&] { return cf::adopt(load(nullptr)); },
                   [&](const cf::Ref<DRAVCFImageLoaderRef> &loader, bool failed) {
                     EXPECT_TRUE(loader || failed);
                     if (loader) {
                       EXPECT_EQ(loaded(loader), whole);
                     }
                   });
  forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    const cf::Ref loader = cf::adopt(load(allocator));
    if (loader) {
      EXPECT_EQ(loaded(loader), whole);
    }
  });
}

class LoadingWithoutMemory : public testing::TestWithParam<LoaderConstructors> {
 protected:
  // A picture that could not be read for want of memory may be taken for a damaged one.
  void SetUp() override { testing::internal::CaptureStderr(); }
  void TearDown() override { testing::internal::GetCapturedStderr(); }
};

TEST_P(LoadingWithoutMemory, FromDataGivesNoneOrTheWholePicture) {
  const cf::Ref data = dataOf(GetParam().goodBytes());
  expectNoneOrWhole([&](CFAllocatorRef allocator) { return GetParam().fromData(allocator, data.get()); });
  EXPECT_EQ(CFGetRetainCount(data.get()), 1);
}

TEST_P(LoadingWithoutMemory, FromPathAndURLGivesNoneOrTheWholePicture) {
  const TemporaryFolder folder;
  writeFile(folder.file("a"), GetParam().goodBytes());
  const cf::Ref path = string(folder.file("a"));
  const cf::Ref url = urlOf(folder.file("a"));
  expectNoneOrWhole([&](CFAllocatorRef allocator) { return GetParam().fromPath(allocator, path.get()); });
  expectNoneOrWhole([&](CFAllocatorRef allocator) { return GetParam().fromURL(allocator, url.get()); });
}

TEST_P(LoadingWithoutMemory, ADamagedSourceGivesNoneStill) {
  Bytes bytes = GetParam().goodBytes();
  bytes.resize(bytes.size() / 2);
  const cf::Ref data = dataOf(bytes);
  failEveryRequest([&] { return cf::adopt(GetParam().fromData(nullptr, data.get())); },
                   [](const cf::Ref<DRAVCFImageLoaderRef> &loader, bool) { EXPECT_FALSE(loader); });
}

INSTANTIATE_TEST_SUITE_P(Each, LoadingWithoutMemory, testing::ValuesIn(kLoaders),
                         [](const auto &loaders) { return std::string(loaders.param.name); });

struct Encoding {
  const char *name;
  DRAVCFImageExporterRef (*makeExporter)(CFAllocatorRef);
};

class ExportingWithoutMemory : public testing::TestWithParam<Encoding> {
 protected:
  static cf::Ref<CGImageRef> transparentPicture() {
    const cf::Ref space = displaySpace();
    return makeCGImage({2, 1, 8, 32, 8, space.get(), kCGImageAlphaPremultipliedFirst},
                       {128, 64, 64, 64, 255, 1, 2, 3});
  }
  static cf::Ref<CFDataRef> exported(CFAllocatorRef allocator, CGImageRef image) {
    const cf::Ref exporter = cf::adopt(GetParam().makeExporter(allocator));
    return exporter ? cf::adopt(DRAVCFImageExportCreateData(allocator, exporter.get(), image)) : nullptr;
  }
};

TEST_P(ExportingWithoutMemory, IntoDataGivesNoneOrTheWholeFile) {
  for (const auto &image : {picture(), transparentPicture()}) {
    const Bytes whole = bytesOf(exported(nullptr, image.get()).get());
    ASSERT_FALSE(whole.empty());
    const auto expectWhole = [&](const cf::Ref<CFDataRef> &data, bool failed) {
      EXPECT_TRUE(data || failed);
      if (data) {
        EXPECT_EQ(bytesOf(data.get()), whole);
      }
    };
    failEveryRequest([&] { return exported(nullptr, image.get()); }, expectWhole);
    forEachFailedAllocation(
        [&](CFAllocatorRef allocator, long) { expectWhole(exported(allocator, image.get()), true); });
  }
}

TEST_P(ExportingWithoutMemory, IntoAFileLeavesTheOldOneOrTheWholeNewOne) {
  const TemporaryFolder folder;
  const cf::Ref image = transparentPicture();
  const cf::Ref exporter = cf::adopt(GetParam().makeExporter(nullptr));
  const cf::Ref path = string(folder.file("a"));
  DRAVCFImageExportToFile(exporter.get(), image.get(), path.get());
  const Bytes whole = readFile(folder.file("a"));
  ASSERT_FALSE(whole.empty());
  const Bytes old{1, 2, 3};
  writeFile(folder.file("a"), old);
  failEveryRequest(
      [&] {
        DRAVCFImageExportToFile(exporter.get(), image.get(), path.get());
        return true;
      },
      [&](bool, bool failed) {
        const Bytes now = readFile(folder.file("a"));
        EXPECT_TRUE(now == whole || (failed && now == old));
        writeFile(folder.file("a"), old);
      });
}

INSTANTIATE_TEST_SUITE_P(Each, ExportingWithoutMemory,
                         testing::Values(Encoding{"JPEG", DRAVCFImageExporterCreateJPEG},
                                         Encoding{"PICT", DRAVCFImageExporterCreatePICT},
                                         Encoding{"PCT", DRAVCFImageExporterCreatePCT},
                                         Encoding{"PNG", DRAVCFImageExporterCreatePNG},
                                         Encoding{"TIFF", DRAVCFImageExporterCreateTIFF}),
                         [](const auto &encoding) { return std::string(encoding.param.name); });

// An image that needs its decoder twice, perhaps: once by its format and once by its bytes.
template <class Create>
void expectNoneOrAnImage(Create create) {
  testing::internal::CaptureStderr();
  failEveryRequest([&] { return cf::adopt(create(nullptr)); },
                   [&](const cf::Ref<DRAVCFImageRef> &image, bool failed) {
                     EXPECT_TRUE(image || failed);
                     if (image) {
                       EXPECT_EQ(image->buffer, nullptr);
                       EXPECT_EQ(pixelsOf(image->cgImage), pixelsOf(picture().get()));
                     }
                   });
  forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    const cf::Ref image = cf::adopt(create(allocator));
    if (image) {
      EXPECT_EQ(pixelsOf(image->cgImage), pixelsOf(picture().get()));
    }
  });
  testing::internal::GetCapturedStderr();
}

TEST(CreatingWithoutMemory, FromEncodedBytesGivesNoneOrAnImage) {
  const TemporaryFolder folder;
  for (const LoaderConstructors &loaders : kLoaders) {
    if (loaders.makeExporter == DRAVCFImageExporterCreateJPEG) continue;  // whose pixels are not exact
    SCOPED_TRACE(loaders.name);
    const Bytes bytes = loaders.goodBytes();
    writeFile(folder.file("a.png"), bytes);
    const cf::Ref data = dataOf(bytes);
    const cf::Ref url = urlOf(folder.file("a.png"));
    const cf::Ref path = string(folder.file("a.png"));
    expectNoneOrAnImage([&](CFAllocatorRef allocator) {
      return DRAVCFImageCreateWithFormattedData(allocator, data.get(), kDRAVCFImageFormatPNG);
    });
    expectNoneOrAnImage(
        [&](CFAllocatorRef allocator) { return DRAVCFImageCreateWithData(allocator, data.get()); });
    expectNoneOrAnImage(
        [&](CFAllocatorRef allocator) { return DRAVCFImageCreateWithURL(allocator, url.get()); });
    expectNoneOrAnImage([&](CFAllocatorRef allocator) {
      return DRAVCFImageCreateWithPathAndFormat(allocator, path.get(), kDRAVCFImageFormatPICT);
    });
  }
}

TEST(CreatingWithoutMemory, OfPNGAndTIFFDataGivesNoneOrTheWholeFile) {
  const Bytes pixels{128, 64, 64, 64, 255, 1, 2, 3};
  const auto makeImage = [&](CFAllocatorRef allocator) { return makeARGBImage(2, 1, pixels, allocator); };
  for (const auto copyData : {DRAVCFImageCopyPNGData, DRAVCFImageCopyTIFFData}) {
    const Bytes whole = bytesOf(cf::adopt(copyData(nullptr, makeImage(nullptr).get())).get());
    const auto expectWhole = [&](const cf::Ref<CFDataRef> &data, bool failed) {
      EXPECT_TRUE(data || failed);
      if (data) {
        EXPECT_EQ(bytesOf(data.get()), whole);
      }
    };
    cf::Ref<DRAVCFImageRef> image;
    failEveryRequest(
        [&] {
          image = makeImage(nullptr);
          return image ? cf::adopt(copyData(nullptr, image.get())) : nullptr;
        },
        expectWhole);
    forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
      const cf::Ref made = makeImage(allocator);
      if (made) expectWhole(cf::adopt(copyData(allocator, made.get())), true);
    });
  }
}

TEST(CreatingWithoutMemory, OfAnExportableImageGivesNoneOrTheWholeOne) {
  const Bytes pixels{128, 64, 64, 64, 255, 1, 2, 3}, divided{128, 128, 128, 128, 255, 1, 2, 3};
  const auto expectDivided = [&](const cf::Ref<CGImageRef> &image, bool failed) {
    EXPECT_TRUE(image || failed);
    if (image) {
      EXPECT_EQ(pixelsOf(image.get()), divided);
    }
  };
  const auto makeOne = [&](CFAllocatorRef allocator) -> cf::Ref<CGImageRef> {
    const cf::Ref image = makeARGBImage(2, 1, pixels, allocator);
    return image ? cf::adopt(_DRAVCFImageCreateExportableImage(image.get(), 1)) : nullptr;
  };
  failEveryRequest([&] { return makeOne(nullptr); }, expectDivided);
  forEachFailedAllocation([&](CFAllocatorRef allocator, long) { expectDivided(makeOne(allocator), true); });
}

TEST(CreatingWithoutMemory, OfALoadersDescriptionGivesNoneOrTheWholeOne) {
  const cf::Ref data = dataOf(pngBytes());
  const cf::Ref loader = cf::adopt(DRAVCFCreatePNGImageLoaderFromData(nullptr, data.get()));
  const cf::Ref whole = cf::adopt(CFCopyDescription(loader.get()));
  ASSERT_TRUE(whole);
  failEveryRequest([&] { return cf::adopt(CFCopyDescription(loader.get())); },
                   [&](const cf::Ref<CFStringRef> &made, bool failed) {
                     EXPECT_TRUE(made || failed);
                     if (made && !CFEqual(made.get(), whole.get())) {
                       EXPECT_TRUE(CFEqual(made.get(), CFSTR("(NULL)")));
                     }
                   });
}

}  // namespace
