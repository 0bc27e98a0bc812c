// Encoded images for the tests of loading and export, and files to put them in.
#pragma once

#include <DravKit/DravKit.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "core/images.h"
#include "foundation/ref.h"

namespace test {

// A folder of its own that goes with the test.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    char name[] = "/tmp/drav-io-XXXXXX";
    path_ = mkdtemp(name);
  }
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }
  [[nodiscard]] std::string file(const std::string &name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

inline void writeFile(const std::string &path, const Bytes &bytes) {
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

inline Bytes readFile(const std::string &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline cf::Ref<CFStringRef> string(const std::string &text) {
  return cf::adopt(CFStringCreateWithCString(nullptr, text.c_str(), kCFStringEncodingUTF8));
}

inline cf::Ref<CFURLRef> urlOf(const std::string &path) {
  return cf::adopt(CFURLCreateWithFileSystemPath(nullptr, string(path).get(), kCFURLPOSIXPathStyle, false));
}

inline cf::Ref<CFDataRef> dataOf(const Bytes &bytes) {
  return cf::adopt(CFDataCreate(nullptr, bytes.data(), static_cast<CFIndex>(bytes.size())));
}

inline Bytes bytesOf(CFDataRef data) {
  return data ? Bytes(CFDataGetBytePtr(data), CFDataGetBytePtr(data) + CFDataGetLength(data)) : Bytes{};
}

inline Bytes pixelsOf(CGImageRef image) {
  const cf::Ref copied = cf::adopt(CGDataProviderCopyData(CGImageGetDataProvider(image)));
  return bytesOf(copied.get());
}

// A 3 x 2 picture without alpha.
inline cf::Ref<CGImageRef> picture() {
  const cf::Ref space = displaySpace();
  return makeCGImage({3, 2, 8, 32, 12, space.get(), kCGImageAlphaNoneSkipFirst},
                     {255, 255, 0,  0,  255, 0,  255, 0,  255, 0,  0,  255,  //
                      255, 10,  20, 30, 255, 40, 50,  60, 255, 70, 80, 90});
}

inline Bytes encoded(DRAVCFImageExporterRef (*make)(CFAllocatorRef), CGImageRef image) {
  const cf::Ref exporter = cf::adopt(make(nullptr));
  const cf::Ref data = cf::adopt(DRAVCFImageExportCreateData(nullptr, exporter.get(), image));
  return bytesOf(data.get());
}

inline Bytes pngBytes() { return encoded(DRAVCFImageExporterCreatePNG, picture().get()); }
inline Bytes jpegBytes() { return encoded(DRAVCFImageExporterCreateJPEG, picture().get()); }

}  // namespace test
