// Data providers: bytes of the caller's, of a data object, or of a file.
#include "graphics/data_provider.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>

#include "foundation/sizes.h"

namespace cg {
namespace {

// A file that goes on for ever, such as a device, ends here; no image comes near.
constexpr std::size_t kMostFileBytes = std::size_t{2} << 30;
constexpr std::size_t kChunkBytes = std::size_t{1} << 20;

class File {
 public:
  // Opened without waiting: a named pipe that nobody writes to would hold the caller for ever. Read with
  // waiting: one that somebody writes to may be slower than its reader.
  explicit File(const char *path) noexcept : descriptor_(::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
    if (descriptor_ >= 0) ::fcntl(descriptor_, F_SETFL, 0);
  }
  ~File() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  File(const File &) = delete;
  File &operator=(const File &) = delete;

  [[nodiscard]] bool isReadable() const noexcept {
    struct stat status {};
    return descriptor_ >= 0 && ::fstat(descriptor_, &status) == 0 && !S_ISDIR(status.st_mode);
  }

  // What the system says beforehand; 0 for what is not a regular file.
  [[nodiscard]] std::size_t expectedBytes() const noexcept {
    struct stat status {};
    if (::fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) return 0;
    return static_cast<std::size_t>(status.st_size);
  }

  // Bytes read, 0 at the end, -1 for an error.
  [[nodiscard]] ssize_t read(uint8_t *into, std::size_t most) const noexcept {
    ssize_t count = 0;
    do {
      count = ::read(descriptor_, into, most);
    } while (count < 0 && errno == EINTR);
    return count;
  }

 private:
  int descriptor_;
};

// Makes the data that much longer; false if memory does not hold it.
bool extend(CFMutableDataRef data, std::size_t bytes) noexcept {
  const CFIndex before = CFDataGetLength(data);
  CFDataIncreaseLength(data, static_cast<CFIndex>(bytes));
  return CFDataGetLength(data) == before + static_cast<CFIndex>(bytes);
}

// The size that the system tells is only where reading begins: files grow, and devices have none.
cf::Ref<CFDataRef> readToEnd(const File &file) noexcept {
  if (!file.isReadable() || file.expectedBytes() > kMostFileBytes) return nullptr;
  const auto content = cf::adopt(CFDataCreateMutable(nullptr, 0));
  if (!content) return nullptr;
  std::size_t length = 0, room = file.expectedBytes() + 1;
  for (;;) {
    if (length + room > kMostFileBytes + 1 || !extend(content.get(), room)) return nullptr;
    while (room > 0) {
      const ssize_t count = file.read(CFDataGetMutableBytePtr(content.get()) + length, room);
      if (count < 0) return nullptr;
      if (count == 0) {
        CFDataSetLength(content.get(), static_cast<CFIndex>(length));
        return cf::share<CFDataRef>(content.get());
      }
      length += static_cast<std::size_t>(count);
      room -= static_cast<std::size_t>(count);
    }
    room = std::max(kChunkBytes, std::min(length, kMostFileBytes + 1 - length));
  }
}

}  // namespace

std::span<const uint8_t> providerBytes(CGDataProviderRef provider) noexcept {
  return provider ? provider->bytes : std::span<const uint8_t>{};
}

}  // namespace cg

CGDataProvider::~CGDataProvider() {
  if (release) release(info, bytes.data(), bytes.size());
}

CFTypeID CGDataProviderGetTypeID(void) { return CGDataProvider::typeID(); }

CGDataProviderRef CGDataProviderCreateWithData(void *info, const void *data, size_t size,
                                               CGDataProviderReleaseDataCallback releaseData) {
  if (!data && size > 0) return nullptr;
  auto provider = cf::make<CGDataProvider>(nullptr);
  if (!provider) return nullptr;
  provider->bytes = {static_cast<const uint8_t *>(data), size};
  provider->release = releaseData;
  provider->info = info;
  return provider.give();
}

CGDataProviderRef CGDataProviderCreateWithCFData(CFDataRef data) {
  if (!data) return nullptr;
  // Mutable data may move or shrink under the provider, whose bytes are promised to stay.
  auto kept = cf::adopt(CFDataCreateCopy(nullptr, data));
  auto provider = kept ? cf::make<CGDataProvider>(nullptr) : nullptr;
  if (!provider) return nullptr;
  provider->bytes = {CFDataGetBytePtr(kept.get()), static_cast<std::size_t>(CFDataGetLength(kept.get()))};
  provider->data = std::move(kept);
  return provider.give();
}

CGDataProviderRef CGDataProviderCreateWithURL(CFURLRef url) {
  char path[PATH_MAX];
  if (!url || !CFURLGetFileSystemRepresentation(url, true, reinterpret_cast<UInt8 *>(path), sizeof path))
    return nullptr;
  return CGDataProviderCreateWithFilename(path);
}

CGDataProviderRef CGDataProviderCreateWithFilename(const char *path) {
  if (!path) return nullptr;
  const auto content = cg::readToEnd(cg::File(path));
  if (!content) return nullptr;
  auto provider = cf::make<CGDataProvider>(nullptr);
  if (!provider) return nullptr;
  provider->bytes = {CFDataGetBytePtr(content.get()),
                     static_cast<std::size_t>(CFDataGetLength(content.get()))};
  provider->data = content;
  return provider.give();
}

CGDataProviderRef CGDataProviderRetain(CGDataProviderRef provider) {
  if (provider) CFRetain(provider);
  return provider;
}

void CGDataProviderRelease(CGDataProviderRef provider) {
  if (provider) CFRelease(provider);
}

CFDataRef CGDataProviderCopyData(CGDataProviderRef provider) {
  if (!provider) return nullptr;
  return CFDataCreate(nullptr, provider->bytes.data(), static_cast<CFIndex>(provider->bytes.size()));
}
