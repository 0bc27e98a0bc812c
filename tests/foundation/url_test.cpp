#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <climits>

#include "failing_allocator.h"
#include "foundation/text.h"

namespace {

using namespace testing_support;
using cf::adopt;
using namespace std::string_view_literals;

cf::Ref<CFURLRef> fromPath(std::string_view path, bool isDirectory = false,
                           CFAllocatorRef allocator = nullptr) {
  return adopt(
      CFURLCreateWithFileSystemPath(allocator, stringOf(path).get(), kCFURLPOSIXPathStyle, isDirectory));
}

cf::Ref<CFURLRef> fromBytes(std::string_view bytes, bool isDirectory = false) {
  return adopt(CFURLCreateFromFileSystemRepresentation(nullptr, reinterpret_cast<const UInt8 *>(bytes.data()),
                                                       static_cast<CFIndex>(bytes.size()), isDirectory));
}

cf::Ref<CFURLRef> fromText(std::string_view text, CFURLRef base = nullptr) {
  return adopt(CFURLCreateWithString(nullptr, stringOf(text).get(), base));
}

std::string bytesOf(const cf::Ref<CFURLRef> &url, bool resolve = false) {
  std::array<UInt8, PATH_MAX> bytes;
  if (!CFURLGetFileSystemRepresentation(url.get(), resolve, bytes.data(), bytes.size())) return "(none)";
  return reinterpret_cast<const char *>(bytes.data());
}

std::string pathOf(const cf::Ref<CFURLRef> &url) {
  return textOf(adopt(CFURLCopyFileSystemPath(url.get(), kCFURLPOSIXPathStyle)));
}

struct PathAndText {
  std::string_view path, text;
};

constexpr PathAndText kFiles[] = {
    {"/a/b.png", "file:///a/b.png"},
    {"/", "file:///"},
    {"a.png", "a.png"},
    {"./a", "./a"},
    {"../a", "../a"},
    {"/a b", "file:///a%20b"},
    {"/100%", "file:///100%25"},
    {"/gr\xC3\xBC\xC3\x9F", "file:///gr%C3%BC%C3%9F"},
    {"/a?b#c", "file:///a%3Fb%23c"},
    {"/a:b", "file:///a:b"},
    {"a:b/c:d", "a%3Ab/c:d"},
    {"/a\"<>\\^`{|}", "file:///a%22%3C%3E%5C%5E%60%7B%7C%7D"},
    {"/a\nb\x7F", "file:///a%0Ab%7F"},
    {"/-._~!$&'()*+,;=@", "file:///-._~!$&'()*+,;=@"},
};

TEST(URL, APathBecomesEscapedText) {
  for (const PathAndText &row : kFiles) EXPECT_EQ(textOf(CFURLGetString(fromPath(row.path).get())), row.text);
}

TEST(URL, APathComesBackAsItWas) {
  for (const PathAndText &row : kFiles) {
    EXPECT_EQ(pathOf(fromPath(row.path)), row.path);
    EXPECT_EQ(bytesOf(fromPath(row.path)), row.path);
  }
}

TEST(URL, TextComesBackAsThePathItNames) {
  for (const PathAndText &row : kFiles) {
    EXPECT_EQ(pathOf(fromText(row.text)), row.path);
    EXPECT_EQ(textOf(CFURLGetString(fromText(row.text).get())), row.text);
    EXPECT_TRUE(CFEqual(fromText(row.text).get(), fromPath(row.path).get()));
    EXPECT_EQ(CFHash(fromText(row.text).get()), CFHash(fromPath(row.path).get()));
  }
}

TEST(URL, PathsThatNameNothingAreRefused) {
  EXPECT_FALSE(fromPath(""));
  EXPECT_FALSE(fromPath("a\0b"sv));
  EXPECT_FALSE(fromBytes(""));
  EXPECT_FALSE(fromBytes("a\0b"sv));
  const UniChar half[] = {'/', 0xD800};
  const auto broken = adopt(CFStringCreateWithCharacters(nullptr, half, 2));
  EXPECT_EQ(CFURLCreateWithFileSystemPath(nullptr, broken.get(), kCFURLPOSIXPathStyle, false), nullptr);
  EXPECT_EQ(CFURLCreateWithFileSystemPath(nullptr, nullptr, kCFURLPOSIXPathStyle, false), nullptr);
  EXPECT_EQ(CFURLCreateWithFileSystemPath(nullptr, CFSTR("/a"), 1, false), nullptr);
  EXPECT_EQ(CFURLCreateFromFileSystemRepresentation(nullptr, nullptr, 1, false), nullptr);
}

TEST(URL, AFileNameThatIsNoUTF8KeepsItsBytes) {
  const auto url = fromBytes("/gr\xFC\xDF.png");
  EXPECT_EQ(bytesOf(url), "/gr\xFC\xDF.png");
  EXPECT_EQ(textOf(CFURLGetString(url.get())), "file:///gr%FC%DF.png");
  EXPECT_EQ(pathOf(url), "(none)");
  EXPECT_EQ(textOf(adopt(CFURLCopyPathExtension(url.get()))), "png");
  EXPECT_EQ(bytesOf(fromText("file:///gr%FC%DF.png")), "/gr\xFC\xDF.png");
}

TEST(URL, AFolderEndsInASlash) {
  EXPECT_EQ(textOf(CFURLGetString(fromPath("/a", true).get())), "file:///a/");
  EXPECT_EQ(textOf(CFURLGetString(fromPath("/a/", true).get())), "file:///a/");
  EXPECT_EQ(pathOf(fromPath("/a/", true)), "/a");
  EXPECT_EQ(pathOf(fromPath("/", true)), "/");
  EXPECT_TRUE(CFURLHasDirectoryPath(fromPath("/a", true).get()));
  EXPECT_TRUE(CFURLHasDirectoryPath(fromText("file:///a/").get()));
  EXPECT_FALSE(CFURLHasDirectoryPath(fromPath("/a").get()));
}

TEST(URL, OnlyThisMachinesFilesAreFiles) {
  EXPECT_EQ(pathOf(fromText("file://localhost/a")), "/a");
  EXPECT_EQ(pathOf(fromText("FILE:///a")), "/a");
  EXPECT_EQ(pathOf(fromText("file:/a")), "/a");
  EXPECT_EQ(pathOf(fromText("file:///a?query#part")), "/a");
  for (const char *text :
       {"http://host/a", "file://host/a", "mailto:x", "//host/a", "file://", "?q", "file:///a%00b"}) {
    const auto url = fromText(text);
    ASSERT_TRUE(url) << text;
    EXPECT_EQ(pathOf(url), "(none)") << text;
    EXPECT_EQ(bytesOf(url), "(none)") << text;
  }
}

TEST(URL, TextThatIsNoURLIsRefused) {
  for (const char *text : {"", "a b", "a%", "a%2", "a%zz", "gr\xC3\xBC", "a\"b", "a\nb", "<a>"})
    EXPECT_FALSE(fromText(text)) << text;
  EXPECT_EQ(CFURLCreateWithString(nullptr, nullptr, nullptr), nullptr);
}

TEST(URL, RelativeTextStartsFromItsBase) {
  EXPECT_EQ(pathOf(fromText("c%20d.png", fromPath("/a/b.txt").get())), "/a/c d.png");
  EXPECT_EQ(pathOf(fromText("c", fromPath("/a/b", true).get())), "/a/b/c");
  EXPECT_EQ(pathOf(fromText("c", fromPath("b").get())), "c");
  EXPECT_EQ(pathOf(fromText("/c", fromPath("/a/b").get())), "/c");
  EXPECT_EQ(pathOf(fromText("file:///c", fromPath("/a/b").get())), "/c");
  EXPECT_FALSE(fromText("c", fromText("http://host/a").get()));
}

struct Name {
  std::string_view path, component, extension;
};

constexpr Name kNames[] = {
    {"/a/b.png", "b.png", "png"},
    {"b.PnG", "b.PnG", "PnG"},
    {"/a.d/b", "b", "(none)"},
    {"/a/b.tar.gz", "b.tar.gz", "gz"},
    {"/a/.hidden", ".hidden", "(none)"},
    {"/a/b.", "b.", "(none)"},
    {"/", "/", "(none)"},
    {"/a.d/", "a.d", "d"},
    {"/a/..", "..", "(none)"},
};

TEST(URL, TheLastComponentAndItsExtension) {
  for (const Name &row : kNames) {
    const auto url = fromPath(row.path);
    EXPECT_EQ(textOf(adopt(CFURLCopyLastPathComponent(url.get()))), row.component) << row.path;
    EXPECT_EQ(textOf(adopt(CFURLCopyPathExtension(url.get()))), row.extension) << row.path;
  }
  EXPECT_EQ(textOf(adopt(CFURLCopyPathExtension(fromText("http://host.org/a.png?b.c").get()))), "png");
  EXPECT_EQ(textOf(adopt(CFURLCopyPathExtension(fromText("http://host.org").get()))), "(none)");
}

TEST(URL, ARelativePathIsResolvedAgainstTheCurrentFolder) {
  std::array<char, PATH_MAX> folder;
  ASSERT_TRUE(getcwd(folder.data(), folder.size()));
  EXPECT_EQ(bytesOf(fromPath("a/b"), true), std::string(folder.data()) + "/a/b");
  EXPECT_EQ(bytesOf(fromPath("a/b"), false), "a/b");
  EXPECT_EQ(bytesOf(fromPath("/a/b"), true), "/a/b");
}

TEST(URL, ARepresentationIsWholeOrNotAtAll) {
  UInt8 bytes[8];
  EXPECT_FALSE(CFURLGetFileSystemRepresentation(fromPath("/abc").get(), false, bytes, 4));
  EXPECT_TRUE(CFURLGetFileSystemRepresentation(fromPath("/abc").get(), false, bytes, 5));
  EXPECT_STREQ(reinterpret_cast<char *>(bytes), "/abc");
  EXPECT_FALSE(CFURLGetFileSystemRepresentation(fromPath("/abc").get(), false, bytes, 0));
  EXPECT_FALSE(CFURLGetFileSystemRepresentation(nullptr, false, bytes, 8));
}

TEST(URL, CreationSurvivesEveryFailedAllocation) {
  forEachFailedAllocation(
      [](CFAllocatorRef allocator, long n) { EXPECT_EQ(!fromPath("/a/b", false, allocator), n <= 4) << n; });
  forEachFailedAllocation([](CFAllocatorRef allocator, long n) {
    EXPECT_EQ(!adopt(CFURLCreateWithString(allocator, CFSTR("file:///a"), nullptr)), n <= 4) << n;
  });
}

}  // namespace
