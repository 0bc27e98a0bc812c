// What images are loaded from: every constructor from every kind of path, URL and data.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/stat.h>

#include <thread>

#include "constructors.h"
#include "failing_allocator.h"
#include "io/loader.h"

namespace {

using namespace test;

// The pixels of what was loaded, and nothing for no loader.
Bytes loaded(DRAVCFImageLoaderRef made) {
  const cf::Ref loader = cf::adopt(made);
  const cf::Ref image = cf::adopt(DRAVCFImageLoaderCopyImage(loader.get()));
  return image ? pixelsOf(image.get()) : Bytes{};
}

// Keeps what is printed for a damaged picture off the log.
class Sources : public testing::Test {
 protected:
  void SetUp() override { testing::internal::CaptureStderr(); }
  void TearDown() override { testing::internal::GetCapturedStderr(); }

  static void expectNone(const LoaderConstructors &loaders, const std::string &path) {
    SCOPED_TRACE(loaders.name);
    EXPECT_EQ(loaders.fromPath(nullptr, string(path).get()), nullptr) << path;
    const cf::Ref url = urlOf(path);
    EXPECT_EQ(loaders.fromURL(nullptr, url.get()), nullptr) << path;
  }

  TemporaryFolder folder;
};

using SourcesOfImages = Sources;

TEST_F(Sources, PathURLAndDataGiveTheSamePixels) {
  for (const LoaderConstructors &loaders : kLoaders) {
    SCOPED_TRACE(loaders.name);
    const Bytes bytes = loaders.goodBytes();
    writeFile(folder.file("a"), bytes);
    const Bytes pixels = loaded(loaders.fromData(nullptr, dataOf(bytes).get()));
    EXPECT_EQ(pixels.size(), 24u);
    EXPECT_EQ(loaded(loaders.fromPath(nullptr, string(folder.file("a")).get())), pixels);
    EXPECT_EQ(loaded(loaders.fromURL(nullptr, urlOf(folder.file("a")).get())), pixels);
    if (loaders.makeExporter != DRAVCFImageExporterCreateJPEG) {
      EXPECT_EQ(pixels, pixelsOf(picture().get()));
    }
  }
}

TEST_F(Sources, LoadersAreFromTheAllocator) {
  CFAllocatorRef allocator = kCFAllocatorMalloc;
  for (const LoaderConstructors &loaders : kLoaders) {
    const Bytes bytes = loaders.goodBytes();
    writeFile(folder.file("a"), bytes);
    for (const cf::Ref<DRAVCFImageLoaderRef> &loader :
         {cf::adopt(loaders.fromPath(allocator, string(folder.file("a")).get())),
          cf::adopt(loaders.fromURL(allocator, urlOf(folder.file("a")).get())),
          cf::adopt(loaders.fromData(allocator, dataOf(bytes).get()))}) {
      ASSERT_TRUE(loader) << loaders.name;
      EXPECT_EQ(CFGetAllocator(loader.get()), allocator) << loaders.name;
    }
  }
}

TEST_F(Sources, OfALoadersPathAreURLsFromTheDefaultAllocator) {
  for (const LoaderConstructors &loaders : kLoaders) {
    writeFile(folder.file("a"), loaders.goodBytes());
    const cf::Ref path = string(folder.file("a"));
    const cf::Ref url = urlOf(folder.file("a"));
    const testing_support::FailingAllocator forURL, forPath;
    EXPECT_TRUE(cf::adopt(loaders.fromURL(forURL.get(), url.get())));
    EXPECT_TRUE(cf::adopt(loaders.fromPath(forPath.get(), path.get())));
    EXPECT_EQ(forPath.requests(), forURL.requests()) << loaders.name;
  }
}

TEST_F(Sources, ThatAreNullGiveNone) {
  for (const LoaderConstructors &loaders : kLoaders) {
    EXPECT_EQ(loaders.fromPath(nullptr, nullptr), nullptr) << loaders.name;
    EXPECT_EQ(loaders.fromURL(nullptr, nullptr), nullptr) << loaders.name;
    EXPECT_EQ(loaders.fromData(nullptr, nullptr), nullptr) << loaders.name;
  }
}

TEST_F(Sources, WithoutBytesGiveNone) {
  writeFile(folder.file("empty"), {});
  for (const LoaderConstructors &loaders : kLoaders) {
    EXPECT_EQ(loaders.fromData(nullptr, dataOf({}).get()), nullptr) << loaders.name;
    expectNone(loaders, folder.file("empty"));
    expectNone(loaders, folder.file("absent"));
    expectNone(loaders, folder.file(""));
    expectNone(loaders, folder.file("empty/below a file"));
    expectNone(loaders, "/dev/null");
    expectNone(loaders, "/proc/self/mem");  // opens, and cannot be read
  }
}

TEST_F(Sources, OfATextThatNamesNoFileGiveNone) {
  const UniChar half[] = {'/', 0xD800, 'a'};
  const UniChar zero[] = {'/', 0, 'a'};
  const cf::Ref halfACharacter = cf::adopt(CFStringCreateWithCharacters(nullptr, half, 3));
  const cf::Ref zeroInside = cf::adopt(CFStringCreateWithCharacters(nullptr, zero, 3));
  const cf::Ref endless = string("/" + std::string(100000, 'a'));
  for (const LoaderConstructors &loaders : kLoaders) {
    for (CFStringRef path : {CFSTR(""), halfACharacter.get(), zeroInside.get(), endless.get()}) {
      EXPECT_EQ(loaders.fromPath(nullptr, path), nullptr) << loaders.name;
    }
  }
}

TEST_F(Sources, ThatMayNotBeReadGiveNone) {
  constexpr uid_t kNobody = 65534;
  const uid_t own = geteuid();
  if (own == 0 && (seteuid(kNobody) != 0 || seteuid(own) != 0)) {
    GTEST_SKIP() << "root reads everything, and cannot become anybody else here";
  }
  for (const LoaderConstructors &loaders : kLoaders) {
    writeFile(folder.file("secret"), loaders.goodBytes());
    ASSERT_EQ(chmod(folder.file("secret").c_str(), 0), 0);
    if (own == 0) {
      ASSERT_EQ(seteuid(kNobody), 0);
    }
    expectNone(loaders, folder.file("secret"));
    ASSERT_EQ(seteuid(own), 0);
    ASSERT_EQ(chmod(folder.file("secret").c_str(), 0600), 0);
  }
}

TEST_F(Sources, NeedNoTextForAName) {
  const std::string path = folder.file("\xFF\xFE \n?#%41;\x01.png");
  const cf::Ref url = cf::adopt(CFURLCreateFromFileSystemRepresentation(
      nullptr, reinterpret_cast<const UInt8 *>(path.data()), static_cast<CFIndex>(path.size()), false));
  for (const LoaderConstructors &loaders : kLoaders) {
    writeFile(path, loaders.goodBytes());
    EXPECT_EQ(loaded(loaders.fromURL(nullptr, url.get())).size(), 24u) << loaders.name;
  }
  writeFile(path, pngBytes());
  EXPECT_TRUE(cf::adopt(DRAVCFImageCreateWithURL(nullptr, url.get())));
}

TEST_F(Sources, HaveAnyCharactersInTheirPath) {
  for (const LoaderConstructors &loaders : kLoaders) {
    for (const char *name : {"100% ?#&:;%41", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x8E\xA8", "-", "a\nb", "a\\b"}) {
      writeFile(folder.file(name), loaders.goodBytes());
      const cf::Ref path = string(folder.file(name));
      EXPECT_EQ(loaded(loaders.fromPath(nullptr, path.get())).size(), 24u) << loaders.name << name;
    }
  }
}

TEST_F(Sources, ByRelativePathAreInTheCurrentFolder) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder.file(""));
  for (const LoaderConstructors &loaders : kLoaders) {
    writeFile("a:b", loaders.goodBytes());
    for (CFStringRef path : {CFSTR("a:b"), CFSTR("./a:b")}) {
      EXPECT_EQ(loaded(loaders.fromPath(nullptr, path)).size(), 24u) << loaders.name;
      const cf::Ref url =
          cf::adopt(CFURLCreateWithFileSystemPath(nullptr, path, kCFURLPOSIXPathStyle, false));
      EXPECT_EQ(loaded(loaders.fromURL(nullptr, url.get())).size(), 24u) << loaders.name;
    }
  }
  std::filesystem::current_path(before);
}

TEST_F(Sources, ByURLMayBeEscapedAndOfThisMachine) {
  for (const LoaderConstructors &loaders : kLoaders) {
    writeFile(folder.file("a b"), loaders.goodBytes());
    for (const char *start : {"file://", "FILE://", "file://localhost", "file:"}) {
      const cf::Ref url = cf::adopt(
          CFURLCreateWithString(nullptr, string(std::string(start) + folder.file("%61%20b")).get(), nullptr));
      EXPECT_EQ(loaded(loaders.fromURL(nullptr, url.get())).size(), 24u) << loaders.name << start;
    }
  }
}

TEST_F(Sources, ElsewhereGiveNone) {
  for (const LoaderConstructors &loaders : kLoaders) {
    writeFile(folder.file("a"), loaders.goodBytes());
    for (const char *start : {"http://localhost", "file://elsewhere", "data:", "ftp://elsewhere"}) {
      const cf::Ref url = cf::adopt(
          CFURLCreateWithString(nullptr, string(std::string(start) + folder.file("a")).get(), nullptr));
      ASSERT_TRUE(url);
      EXPECT_EQ(loaders.fromURL(nullptr, url.get()), nullptr) << loaders.name << start;
      EXPECT_EQ(DRAVCFImageCreateWithURL(nullptr, url.get()), nullptr) << start;
    }
  }
}

// A named pipe with the bytes in it. Whoever wrote them lets go of it once they have been taken out.
class FilledPipe {
 public:
  FilledPipe(const std::string &path, const Bytes &bytes) {
    EXPECT_EQ(mkfifo(path.c_str(), 0600), 0);
    const int pipe = open(path.c_str(), O_RDWR | O_CLOEXEC);
    EXPECT_EQ(write(pipe, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    writer_ = std::thread([pipe] {
      for (int left = 1, polls = 0; left > 0 && polls < 2000; ++polls, usleep(1000)) {
        EXPECT_EQ(ioctl(pipe, FIONREAD, &left), 0);
      }
      close(pipe);
    });
  }
  ~FilledPipe() { writer_.join(); }
  FilledPipe(const FilledPipe &) = delete;
  FilledPipe &operator=(const FilledPipe &) = delete;

 private:
  std::thread writer_;
};

TEST_F(Sources, MayBeNamedPipes) {
  int pipes = 0;
  for (const LoaderConstructors &loaders : kLoaders) {
    const std::string forPath = folder.file(std::to_string(++pipes));
    const std::string forURL = folder.file(std::to_string(++pipes));
    {
      const FilledPipe pipe(forPath, loaders.goodBytes());
      EXPECT_EQ(loaded(loaders.fromPath(nullptr, string(forPath).get())).size(), 24u) << loaders.name;
    }
    const FilledPipe pipe(forURL, loaders.goodBytes());
    EXPECT_EQ(loaded(loaders.fromURL(nullptr, urlOf(forURL).get())).size(), 24u) << loaders.name;
  }
}

// What was there is read, as much of it as there still is; nothing is looked at that is gone.
TEST_F(Sources, ThatShrinkWhileTheyAreReadGiveNoneOrTheWholePicture) {
  constexpr size_t kLong = 3 << 20;
  const std::string path = folder.file("a");
  for (const LoaderConstructors &loaders : kLoaders) {
    const Bytes good = loaders.goodBytes();
    for (useconds_t pause = 0; pause < 1000; pause += 100) {
      writeFile(path, good);
      ASSERT_EQ(truncate(path.c_str(), kLong), 0);
      std::thread shrinking([&] {
        usleep(pause);
        EXPECT_EQ(truncate(path.c_str(), static_cast<off_t>(good.size() / 2)), 0);
      });
      const Bytes pixels = loaded(loaders.fromPath(nullptr, string(path).get()));
      shrinking.join();
      EXPECT_TRUE(pixels.empty() || pixels.size() == 24) << loaders.name;
    }
  }
}

TEST_F(SourcesOfImages, OfEveryFormatAreReadFromPathAndURL) {
  const struct {
    const char *name;
    DRAVCFImageExporterRef (*makeExporter)(CFAllocatorRef);
  } files[] = {{"a.pict", DRAVCFImageExporterCreatePICT}, {"a.pct", DRAVCFImageExporterCreatePCT},
               {"a.png", DRAVCFImageExporterCreatePNG},   {"a.jpg", DRAVCFImageExporterCreateJPEG},
               {"a.tiff", DRAVCFImageExporterCreateTIFF}, {"a", DRAVCFImageExporterCreatePCT}};
  for (const auto &file : files) {
    writeFile(folder.file(file.name), encoded(file.makeExporter, picture().get()));
    const cf::Ref path = string(folder.file(file.name));
    const cf::Ref url = urlOf(folder.file(file.name));
    EXPECT_TRUE(cf::adopt(DRAVCFImageCreateWithPath(nullptr, path.get()))) << file.name;
    EXPECT_TRUE(cf::adopt(DRAVCFImageCreateWithURL(nullptr, url.get()))) << file.name;
  }
}

TEST_F(SourcesOfImages, WithoutAFileGiveNothingWhateverTheFormat) {
  const cf::Ref absent = string(folder.file("absent")), folderItself = string(folder.file(""));
  for (DRAVCFImageFormat format = 0; format <= kDRAVCFImageFormatJPEG; ++format) {
    for (CFStringRef path : {absent.get(), folderItself.get(), CFSTR(""), CFStringRef{}}) {
      EXPECT_EQ(DRAVCFImageCreateWithPathAndFormat(nullptr, path, format), nullptr) << format;
    }
    EXPECT_EQ(DRAVCFImageCreateWithURLAndFormat(nullptr, nullptr, format), nullptr) << format;
    EXPECT_EQ(DRAVCFImageCreateWithFormattedData(nullptr, nullptr, format), nullptr) << format;
    EXPECT_EQ(DRAVCFImageCreateWithFormattedData(nullptr, dataOf({}).get(), format), nullptr) << format;
  }
}

}  // namespace
