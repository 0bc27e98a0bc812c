// Streams over files.
#include <CoreFoundation/CFStream.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <climits>

#include "foundation/buffer.h"
#include "foundation/descriptor.h"
#include "foundation/url_object.h"

struct __CFReadStream : cf::ObjectOf<__CFReadStream> {
  static constexpr const char *kName = "CFReadStream";
  cf::Ref<CFURLRef> url;
  cf::Descriptor file;
  cf::Buffer<UInt8> buffer;
  CFStreamStatus status = kCFStreamStatusNotOpen;
};

struct __CFWriteStream : cf::ObjectOf<__CFWriteStream> {
  static constexpr const char *kName = "CFWriteStream";
  cf::Ref<CFURLRef> url;
  cf::Descriptor file;
  CFStreamStatus status = kCFStreamStatusNotOpen;
};

namespace cf {
namespace {

// Large enough that the calls cost nothing beside the copying, small enough to stay in the cache.
constexpr std::size_t kBufferBytes = 256 * 1024;
// One call never moves more than this, whatever the size asked for.
constexpr std::size_t kMostBytes = 1 << 30;

template <class Call>
auto retried(Call &&call) noexcept {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

Descriptor openFile(CFURLRef url, int flags) noexcept {
  constexpr mode_t kEverybody = 0666;  // less what the process's mask takes away
  return Descriptor(retried([&] { return ::open(url->path.data(), flags | O_CLOEXEC, kEverybody); }));
}

// Opening a folder for reading succeeds; only reading from it fails.
bool isFolder(const Descriptor &file) noexcept {
  struct stat status;
  return fstat(file.get(), &status) != 0 || S_ISDIR(status.st_mode);
}

template <class Stream>
Ref<Stream> newStream(CFAllocatorRef allocator, CFURLRef url) noexcept {
  if (!url || !url->isFile) return nullptr;
  auto made = make<Stream>(allocator);
  if (made) made->url = share(url);
  return made;
}

template <class Stream>
bool fail(Stream *stream) noexcept {
  stream->status = kCFStreamStatusError;
  return false;
}

CFIndex readSome(CFReadStreamRef stream, UInt8 *buffer, std::size_t length) noexcept {
  const std::size_t most = std::min(length, kMostBytes);
  const ssize_t got = retried([&] { return ::read(stream->file.get(), buffer, most); });
  if (got < 0) fail(stream);
  if (got == 0 && most > 0) stream->status = kCFStreamStatusAtEnd;
  return got;
}

bool writeAll(int file, const UInt8 *bytes, std::size_t length) noexcept {
  while (length > 0) {
    const ssize_t written = retried([&] { return ::write(file, bytes, std::min(length, kMostBytes)); });
    if (written <= 0) return false;
    bytes += written;
    length -= static_cast<std::size_t>(written);
  }
  return true;
}

}  // namespace
}  // namespace cf

using namespace cf;

CFTypeID CFReadStreamGetTypeID(void) { return __CFReadStream::typeID(); }
CFTypeID CFWriteStreamGetTypeID(void) { return __CFWriteStream::typeID(); }

CFReadStreamRef CFReadStreamCreateWithFile(CFAllocatorRef allocator, CFURLRef fileURL) {
  return newStream<__CFReadStream>(allocator, fileURL).give();
}

Boolean CFReadStreamOpen(CFReadStreamRef stream) {
  if (!stream || stream->status != kCFStreamStatusNotOpen) return false;
  Descriptor file = openFile(stream->url.get(), O_RDONLY);
  if (!file || isFolder(file)) return fail(stream);
  stream->file = std::move(file);
  stream->status = kCFStreamStatusOpen;
  return true;
}

CFStreamStatus CFReadStreamGetStatus(CFReadStreamRef stream) {
  return stream ? stream->status : CFStreamStatus{kCFStreamStatusError};
}

CFIndex CFReadStreamRead(CFReadStreamRef stream, UInt8 *buffer, CFIndex length) {
  if (!stream || !buffer || length < 0) return -1;
  if (stream->status == kCFStreamStatusAtEnd) return 0;
  if (stream->status != kCFStreamStatusOpen) return -1;
  return readSome(stream, buffer, static_cast<std::size_t>(length));
}

const UInt8 *CFReadStreamGetBuffer(CFReadStreamRef stream, CFIndex maxBytesToRead, CFIndex *numBytesRead) {
  CFIndex ignored = 0;
  CFIndex &got = numBytesRead ? *numBytesRead : ignored;
  got = -1;
  if (!stream || maxBytesToRead < 0) return nullptr;
  if (stream->status == kCFStreamStatusAtEnd) got = 0;
  if (stream->status == kCFStreamStatusOpen && stream->buffer.size() == 0) {
    stream->buffer = Buffer<UInt8>(stream->allocator());
    if (!stream->buffer.reserve(kBufferBytes) || !stream->buffer.grow(kBufferBytes)) fail(stream);
  }
  if (stream->status != kCFStreamStatusOpen) return nullptr;
  const CFIndex room = static_cast<CFIndex>(stream->buffer.size());
  const CFIndex most = maxBytesToRead == 0 ? room : std::min(maxBytesToRead, room);
  got = CFReadStreamRead(stream, stream->buffer.data(), most);
  return got > 0 ? stream->buffer.data() : nullptr;
}

void CFReadStreamClose(CFReadStreamRef stream) {
  if (!stream) return;
  stream->file.close();
  stream->status = kCFStreamStatusClosed;
}

CFWriteStreamRef CFWriteStreamCreateWithFile(CFAllocatorRef allocator, CFURLRef fileURL) {
  return newStream<__CFWriteStream>(allocator, fileURL).give();
}

Boolean CFWriteStreamOpen(CFWriteStreamRef stream) {
  if (!stream || stream->status != kCFStreamStatusNotOpen) return false;
  stream->file = openFile(stream->url.get(), O_WRONLY | O_CREAT | O_TRUNC);
  if (!stream->file) return fail(stream);
  stream->status = kCFStreamStatusOpen;
  return true;
}

CFStreamStatus CFWriteStreamGetStatus(CFWriteStreamRef stream) {
  return stream ? stream->status : CFStreamStatus{kCFStreamStatusError};
}

Boolean CFWriteStreamCanAcceptBytes(CFWriteStreamRef stream) {
  return stream && stream->status == kCFStreamStatusOpen;
}

CFIndex CFWriteStreamWrite(CFWriteStreamRef stream, const UInt8 *buffer, CFIndex length) {
  if (!CFWriteStreamCanAcceptBytes(stream) || length < 0 || (!buffer && length > 0)) return -1;
  stream->status = kCFStreamStatusWriting;
  const bool written = writeAll(stream->file.get(), buffer, static_cast<std::size_t>(length));
  stream->status = written ? kCFStreamStatusOpen : kCFStreamStatusError;
  return written ? length : -1;
}

void CFWriteStreamClose(CFWriteStreamRef stream) {
  if (!stream) return;
  const bool closed = stream->file.close();
  stream->status = closed ? kCFStreamStatusClosed : kCFStreamStatusError;
}
