#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "failing_allocator.h"
#include "foundation/text.h"

namespace {

using namespace testing_support;
using cf::adopt;

const UInt8 *bytesIn(std::string_view text) { return reinterpret_cast<const UInt8 *>(text.data()); }

cf::Ref<CFURLRef> urlOf(const std::string &path) {
  return adopt(CFURLCreateFromFileSystemRepresentation(nullptr, bytesIn(path),
                                                       static_cast<CFIndex>(path.size()), false));
}

cf::Ref<CFReadStreamRef> reading(const std::string &path) {
  return adopt(CFReadStreamCreateWithFile(nullptr, urlOf(path).get()));
}

cf::Ref<CFWriteStreamRef> writing(const std::string &path) {
  return adopt(CFWriteStreamCreateWithFile(nullptr, urlOf(path).get()));
}

size_t openDescriptors() {
  const auto entries = std::filesystem::directory_iterator("/proc/self/fd");
  return static_cast<size_t>(std::distance(begin(entries), end(entries)));
}

std::string readToEnd(CFReadStreamRef stream, CFIndex most = 0) {
  std::string whole;
  CFIndex got = 0;
  while (const UInt8 *bytes = CFReadStreamGetBuffer(stream, most, &got))
    whole.append(reinterpret_cast<const char *>(bytes), static_cast<size_t>(got));
  EXPECT_EQ(got, 0);
  return whole;
}

class Stream : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string name = (std::filesystem::temp_directory_path() / "stream_testXXXXXX").string();
    ASSERT_TRUE(mkdtemp(name.data()));
    folder_ = name;
    descriptors_ = openDescriptors();
  }
  void TearDown() override {
    EXPECT_EQ(openDescriptors(), descriptors_) << "a file was left open";
    std::filesystem::remove_all(folder_);
  }
  std::string inFolder(const std::string &name) const { return folder_ + "/" + name; }
  std::string fileWith(const std::string &content) const {
    std::ofstream(inFolder("file"), std::ios::binary) << content;
    return inFolder("file");
  }
  static std::string contentOf(const std::string &path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
  }

  std::string folder_;
  size_t descriptors_ = 0;
};

using ReadStream = Stream;
using WriteStream = Stream;

TEST_F(ReadStream, ReadsAFileToItsEnd) {
  const std::string content(1'000'001, 'x');
  const auto stream = reading(fileWith(content));
  EXPECT_EQ(CFReadStreamGetStatus(stream.get()), kCFStreamStatusNotOpen);
  ASSERT_TRUE(CFReadStreamOpen(stream.get()));
  EXPECT_EQ(CFReadStreamGetStatus(stream.get()), kCFStreamStatusOpen);
  EXPECT_EQ(readToEnd(stream.get()), content);
  EXPECT_EQ(CFReadStreamGetStatus(stream.get()), kCFStreamStatusAtEnd);
  UInt8 byte;
  EXPECT_EQ(CFReadStreamRead(stream.get(), &byte, 1), 0);
  CFReadStreamClose(stream.get());
  EXPECT_EQ(CFReadStreamGetStatus(stream.get()), kCFStreamStatusClosed);
  EXPECT_EQ(CFReadStreamRead(stream.get(), &byte, 1), -1);
}

TEST_F(ReadStream, GivesNoMoreThanWasAskedFor) {
  const auto stream = reading(fileWith("abcdefgh"));
  ASSERT_TRUE(CFReadStreamOpen(stream.get()));
  CFIndex got = 0;
  const UInt8 *bytes = CFReadStreamGetBuffer(stream.get(), 3, &got);
  EXPECT_EQ(std::string(reinterpret_cast<const char *>(bytes), static_cast<size_t>(got)), "abc");
  UInt8 own[3];
  EXPECT_EQ(CFReadStreamRead(stream.get(), own, 2), 2);
  EXPECT_EQ(own[1], 'e');
  EXPECT_EQ(readToEnd(stream.get(), 1), "fgh");
}

TEST_F(ReadStream, AnEmptyFileEndsAtOnce) {
  const auto stream = reading(fileWith(""));
  ASSERT_TRUE(CFReadStreamOpen(stream.get()));
  EXPECT_EQ(readToEnd(stream.get()), "");
  EXPECT_EQ(CFReadStreamGetStatus(stream.get()), kCFStreamStatusAtEnd);
}

TEST_F(ReadStream, TheEndFoundByReadIsTheEndForGetBuffer) {
  const auto stream = reading(fileWith(""));
  ASSERT_TRUE(CFReadStreamOpen(stream.get()));
  UInt8 byte;
  EXPECT_EQ(CFReadStreamRead(stream.get(), &byte, 0), 0);
  EXPECT_EQ(CFReadStreamGetStatus(stream.get()), kCFStreamStatusOpen);
  EXPECT_EQ(CFReadStreamRead(stream.get(), &byte, 1), 0);
  EXPECT_EQ(readToEnd(stream.get()), "");
}

TEST_F(ReadStream, WhatCannotBeReadDoesNotOpen) {
  for (const std::string &path : {folder_, inFolder("missing"), fileWith("") + "/below"}) {
    const auto stream = reading(path);
    ASSERT_TRUE(stream);
    EXPECT_FALSE(CFReadStreamOpen(stream.get())) << path;
    EXPECT_EQ(CFReadStreamGetStatus(stream.get()), kCFStreamStatusError);
    CFIndex got = 0;
    EXPECT_EQ(CFReadStreamGetBuffer(stream.get(), 0, &got), nullptr);
    EXPECT_EQ(got, -1);
  }
}

TEST_F(ReadStream, OpensOnce) {
  const auto stream = reading(fileWith("abc"));
  ASSERT_TRUE(CFReadStreamOpen(stream.get()));
  EXPECT_FALSE(CFReadStreamOpen(stream.get()));
  EXPECT_EQ(readToEnd(stream.get()), "abc");
}

TEST_F(ReadStream, BeforeItIsOpenThereIsNothingToRead) {
  const auto stream = reading(fileWith("abc"));
  UInt8 byte;
  CFIndex got = 0;
  EXPECT_EQ(CFReadStreamRead(stream.get(), &byte, 1), -1);
  EXPECT_EQ(CFReadStreamGetBuffer(stream.get(), 0, &got), nullptr);
  EXPECT_EQ(got, -1);
  EXPECT_EQ(CFReadStreamGetStatus(stream.get()), kCFStreamStatusNotOpen);
}

TEST_F(ReadStream, ReadsANamedPipe) {
  const std::string path = inFolder("pipe");
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  const std::string content(300'000, 'y');
  std::thread writer([&] { std::ofstream(path, std::ios::binary) << content; });
  const auto stream = reading(path);
  EXPECT_TRUE(CFReadStreamOpen(stream.get()));
  EXPECT_EQ(readToEnd(stream.get()), content);
  writer.join();
}

TEST_F(ReadStream, ReleasedWhileOpenItClosesItsFile) {
  auto stream = reading(fileWith("abc"));
  ASSERT_TRUE(CFReadStreamOpen(stream.get()));
  EXPECT_EQ(openDescriptors(), descriptors_ + 1);
  stream.reset();
  EXPECT_EQ(openDescriptors(), descriptors_);
}

TEST_F(ReadStream, ItsFileIsNotInheritedByOtherPrograms) {
  const auto stream = reading(fileWith("abc"));
  ASSERT_TRUE(CFReadStreamOpen(stream.get()));
  for (const auto &entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code gone;
    if (std::filesystem::read_symlink(entry, gone) != inFolder("file")) continue;
    EXPECT_TRUE(fcntl(std::stoi(entry.path().filename()), F_GETFD) & FD_CLOEXEC);
  }
}

TEST_F(ReadStream, WithoutMemoryForItsBufferItFails) {
  const auto url = urlOf(fileWith("abc"));
  forEachFailedAllocation([&](CFAllocatorRef allocator, long n) {
    const auto stream = adopt(CFReadStreamCreateWithFile(allocator, url.get()));
    EXPECT_EQ(!stream, n == 1);
    if (!stream) return;
    ASSERT_TRUE(CFReadStreamOpen(stream.get()));
    CFIndex got = 0;
    const UInt8 *bytes = CFReadStreamGetBuffer(stream.get(), 0, &got);
    EXPECT_EQ(!bytes, n == 2);
    EXPECT_EQ(got, n == 2 ? -1 : 3);
    EXPECT_EQ(CFReadStreamGetStatus(stream.get()), n == 2 ? kCFStreamStatusError : kCFStreamStatusOpen);
  });
}

TEST_F(Stream, AURLThatNamesNoFileMakesNone) {
  const auto url = adopt(CFURLCreateWithString(nullptr, CFSTR("http://host/a"), nullptr));
  EXPECT_EQ(CFReadStreamCreateWithFile(nullptr, url.get()), nullptr);
  EXPECT_EQ(CFWriteStreamCreateWithFile(nullptr, url.get()), nullptr);
  EXPECT_EQ(CFReadStreamCreateWithFile(nullptr, nullptr), nullptr);
  EXPECT_EQ(CFWriteStreamCreateWithFile(nullptr, nullptr), nullptr);
  EXPECT_FALSE(CFReadStreamOpen(nullptr));
  EXPECT_FALSE(CFWriteStreamOpen(nullptr));
}

TEST_F(WriteStream, WritesANewFile) {
  const auto stream = writing(inFolder("new"));
  EXPECT_EQ(CFWriteStreamGetStatus(stream.get()), kCFStreamStatusNotOpen);
  EXPECT_FALSE(CFWriteStreamCanAcceptBytes(stream.get()));
  ASSERT_TRUE(CFWriteStreamOpen(stream.get()));
  EXPECT_EQ(CFWriteStreamGetStatus(stream.get()), kCFStreamStatusOpen);
  EXPECT_TRUE(CFWriteStreamCanAcceptBytes(stream.get()));
  EXPECT_EQ(CFWriteStreamWrite(stream.get(), bytesIn("abc"), 3), 3);
  EXPECT_EQ(CFWriteStreamWrite(stream.get(), bytesIn("def"), 3), 3);
  EXPECT_EQ(CFWriteStreamWrite(stream.get(), nullptr, 0), 0);
  EXPECT_EQ(CFWriteStreamGetStatus(stream.get()), kCFStreamStatusOpen);
  CFWriteStreamClose(stream.get());
  EXPECT_EQ(CFWriteStreamGetStatus(stream.get()), kCFStreamStatusClosed);
  EXPECT_EQ(CFWriteStreamWrite(stream.get(), bytesIn("x"), 1), -1);
  EXPECT_EQ(contentOf(inFolder("new")), "abcdef");
}

TEST_F(WriteStream, OpeningEmptiesAnOldFile) {
  const std::string path = fileWith("much longer than what follows");
  const auto stream = writing(path);
  EXPECT_EQ(contentOf(path).size(), 29u);
  ASSERT_TRUE(CFWriteStreamOpen(stream.get()));
  EXPECT_EQ(contentOf(path), "");
}

TEST_F(WriteStream, WritesMoreThanAPipeHolds) {
  const std::string path = inFolder("pipe"), content(1'000'000, 'z');
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  std::string seen;
  std::thread reader([&] { seen = contentOf(path); });
  {
    const auto stream = writing(path);
    EXPECT_TRUE(CFWriteStreamOpen(stream.get()));
    EXPECT_EQ(CFWriteStreamWrite(stream.get(), bytesIn(content), 1'000'000), 1'000'000);
  }
  reader.join();
  EXPECT_EQ(seen, content);
}

TEST_F(WriteStream, AFailedWriteIsAnError) {
  const auto stream = writing("/dev/full");
  ASSERT_TRUE(CFWriteStreamOpen(stream.get()));
  EXPECT_EQ(CFWriteStreamWrite(stream.get(), bytesIn("abc"), 3), -1);
  EXPECT_EQ(CFWriteStreamGetStatus(stream.get()), kCFStreamStatusError);
  EXPECT_FALSE(CFWriteStreamCanAcceptBytes(stream.get()));
  EXPECT_EQ(CFWriteStreamWrite(stream.get(), bytesIn("abc"), 3), -1);
}

TEST_F(WriteStream, WhatCannotBeWrittenDoesNotOpen) {
  for (const std::string &path : {folder_, inFolder("missing/file")}) {
    const auto stream = writing(path);
    EXPECT_FALSE(CFWriteStreamOpen(stream.get())) << path;
    EXPECT_EQ(CFWriteStreamGetStatus(stream.get()), kCFStreamStatusError);
  }
}

TEST_F(WriteStream, BadLengthsWriteNothing) {
  const auto stream = writing(inFolder("new"));
  ASSERT_TRUE(CFWriteStreamOpen(stream.get()));
  EXPECT_EQ(CFWriteStreamWrite(stream.get(), bytesIn("abc"), -1), -1);
  EXPECT_EQ(CFWriteStreamWrite(stream.get(), nullptr, 3), -1);
  EXPECT_EQ(CFWriteStreamGetStatus(stream.get()), kCFStreamStatusOpen);
}

TEST_F(WriteStream, ReleasedWhileOpenItClosesItsFile) {
  auto stream = writing(inFolder("new"));
  ASSERT_TRUE(CFWriteStreamOpen(stream.get()));
  CFWriteStreamWrite(stream.get(), bytesIn("abc"), 3);
  stream.reset();
  EXPECT_EQ(openDescriptors(), descriptors_);
  EXPECT_EQ(contentOf(inFolder("new")), "abc");
}

TEST_F(WriteStream, CreationSurvivesEveryFailedAllocation) {
  const auto url = urlOf(inFolder("new"));
  forEachFailedAllocation([&](CFAllocatorRef allocator, long n) {
    EXPECT_EQ(!adopt(CFWriteStreamCreateWithFile(allocator, url.get())), n == 1);
  });
}

}  // namespace
