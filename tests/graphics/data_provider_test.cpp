#include "graphics/data_provider.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "failing_allocator.h"
#include "foundation/ref.h"

namespace {

using Provider = cf::Ref<CGDataProviderRef>;

std::string bytesOf(const Provider &provider) {
  const auto bytes = cg::providerBytes(provider.get());
  return {bytes.begin(), bytes.end()};
}

class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string &content)
      : path_(testing::TempDir() + "provider" + std::to_string(getpid())) {
    std::ofstream(path_, std::ios::binary) << content;
  }
  ~TemporaryFile() { std::filesystem::remove(path_); }
  TemporaryFile(const TemporaryFile &) = delete;
  TemporaryFile &operator=(const TemporaryFile &) = delete;
  [[nodiscard]] const char *path() const { return path_.c_str(); }

 private:
  std::string path_;
};

struct Released {
  const void *data = nullptr;
  size_t size = 0;
  int times = 0;
};
void noteRelease(void *info, const void *data, size_t size) {
  auto *released = static_cast<Released *>(info);
  *released = {data, size, released->times + 1};
}

TEST(DataProvider, GivesTheCallersBytesBackWhenItEnds) {
  Released released;
  const char bytes[] = "pixels";
  CGDataProviderRef provider = CGDataProviderCreateWithData(&released, bytes, 6, noteRelease);
  ASSERT_NE(provider, nullptr);
  CGDataProviderRetain(provider);
  CGDataProviderRelease(provider);
  EXPECT_EQ(released.times, 0);
  EXPECT_EQ(cg::providerBytes(provider).data(), reinterpret_cast<const uint8_t *>(bytes));
  CGDataProviderRelease(provider);
  EXPECT_EQ(released.times, 1);
  EXPECT_EQ(released.data, bytes);
  EXPECT_EQ(released.size, 6U);
}

TEST(DataProvider, WorksWithoutAReleaseFunction) {
  const auto provider = cf::adopt(CGDataProviderCreateWithData(nullptr, "abc", 3, nullptr));
  const auto copy = cf::adopt(CGDataProviderCopyData(provider.get()));
  ASSERT_EQ(CFDataGetLength(copy.get()), 3);
  EXPECT_EQ(std::memcmp(CFDataGetBytePtr(copy.get()), "abc", 3), 0);
}

TEST(DataProvider, NoBytesAtAnAddressThatIsNoneAreRefused) {
  EXPECT_EQ(CGDataProviderCreateWithData(nullptr, nullptr, 1, nullptr), nullptr);
  EXPECT_EQ(CGDataProviderCreateWithCFData(nullptr), nullptr);
  EXPECT_EQ(CGDataProviderCreateWithURL(nullptr), nullptr);
  EXPECT_EQ(CGDataProviderCreateWithFilename(nullptr), nullptr);
  EXPECT_EQ(CGDataProviderCopyData(nullptr), nullptr);
  CGDataProviderRelease(nullptr);
}

TEST(DataProvider, KeepsItsBytesWhenMutableDataChanges) {
  const auto data = cf::adopt(CFDataCreateMutable(nullptr, 0));
  CFDataAppendBytes(data.get(), reinterpret_cast<const UInt8 *>("before"), 6);
  const auto provider = cf::adopt(CGDataProviderCreateWithCFData(data.get()));
  CFDataGetMutableBytePtr(data.get())[0] = 'X';
  CFDataSetLength(data.get(), 1);
  EXPECT_EQ(bytesOf(provider), "before");
}

TEST(DataProvider, SharesTheBytesOfImmutableData) {
  const auto data = cf::adopt(CFDataCreate(nullptr, reinterpret_cast<const UInt8 *>("shared"), 6));
  const auto provider = cf::adopt(CGDataProviderCreateWithCFData(data.get()));
  EXPECT_EQ(cg::providerBytes(provider.get()).data(), CFDataGetBytePtr(data.get()));
}

TEST(DataProvider, ReadsAWholeFile) {
  std::string content(3'000'001, '\0');
  for (size_t i = 0; i < content.size(); ++i) content[i] = static_cast<char>(i * 7 + i / 251);
  const TemporaryFile file(content);
  EXPECT_EQ(bytesOf(cf::adopt(CGDataProviderCreateWithFilename(file.path()))), content);
}

TEST(DataProvider, ReadsAnEmptyFile) {
  const TemporaryFile file("");
  const auto provider = cf::adopt(CGDataProviderCreateWithFilename(file.path()));
  ASSERT_TRUE(provider);
  EXPECT_EQ(bytesOf(provider), "");
}

TEST(DataProvider, ReadsTheFileThatAURLNames) {
  const TemporaryFile file("by url");
  const auto url = cf::adopt(
      CFURLCreateFromFileSystemRepresentation(nullptr, reinterpret_cast<const UInt8 *>(file.path()),
                                              static_cast<CFIndex>(std::strlen(file.path())), false));
  EXPECT_EQ(bytesOf(cf::adopt(CGDataProviderCreateWithURL(url.get()))), "by url");
}

TEST(DataProvider, ReadsFilesWhoseSizeTheSystemDoesNotTell) {
  const auto provider = cf::adopt(CGDataProviderCreateWithFilename("/proc/self/status"));
  ASSERT_TRUE(provider);
  EXPECT_NE(bytesOf(provider).find("Name:"), std::string::npos);
}

TEST(DataProvider, RefusesFoldersAndMissingFiles) {
  EXPECT_EQ(CGDataProviderCreateWithFilename("/"), nullptr);
  EXPECT_EQ(CGDataProviderCreateWithFilename("/no/such/file"), nullptr);
}

TEST(DataProvider, RefusesAFileLargerThanAnyImage) {
  const TemporaryFile file("x");
  ASSERT_EQ(truncate(file.path(), off_t{3} << 30), 0);
  EXPECT_EQ(CGDataProviderCreateWithFilename(file.path()), nullptr);
}

TEST(DataProvider, DoesNotWaitForANamedPipe) {
  const std::string path = testing::TempDir() + "pipe" + std::to_string(getpid());
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  const auto provider = cf::adopt(CGDataProviderCreateWithFilename(path.c_str()));
  std::filesystem::remove(path);
  if (provider) {
    EXPECT_EQ(bytesOf(provider), "");
  }
}

// The writer holds the pipe open from before the reader comes until everything was taken out of it.
TEST(DataProvider, WaitsForAWriterOfANamedPipeThatIsSlowerThanItself) {
  const std::string path = testing::TempDir() + "slow pipe" + std::to_string(getpid());
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  const int pipe = open(path.c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_GE(pipe, 0);
  const std::string content(5000, 'p');
  std::thread writer([&] {
    for (const char *half : {content.data(), content.data() + 2500}) {
      usleep(5000);
      EXPECT_EQ(write(pipe, half, 2500), 2500);
    }
    for (int left = 1, polls = 0; left > 0 && polls < 2000; ++polls, usleep(1000)) {
      EXPECT_EQ(ioctl(pipe, FIONREAD, &left), 0);
    }
    close(pipe);
  });
  const auto provider = cf::adopt(CGDataProviderCreateWithFilename(path.c_str()));
  writer.join();
  std::filesystem::remove(path);
  ASSERT_TRUE(provider);
  EXPECT_EQ(bytesOf(provider), content);
}

TEST(DataProvider, SurvivesEveryFailedAllocation) {
  const TemporaryFile file(std::string(5000, 'f'));
  testing_support::forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    CFAllocatorSetDefault(allocator);
    {
      Released released;
      const auto whole = cf::adopt(CGDataProviderCreateWithFilename(file.path()));
      if (whole) {
        EXPECT_EQ(bytesOf(whole), std::string(5000, 'f'));
      }
      auto lent = cf::adopt(CGDataProviderCreateWithData(&released, "x", 1, noteRelease));
      const bool wasMade = static_cast<bool>(lent);
      lent.reset();
      EXPECT_EQ(released.times, wasMade ? 1 : 0);
    }
    CFAllocatorSetDefault(nullptr);
  });
}

}  // namespace
