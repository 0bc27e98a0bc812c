// Data references: where an importer's bytes come from.

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <vector>

#include "foundation/guard.h"
#include "media/codecs/registry.h"
#include "media/component_instance.h"
#include "media/decode_fault.h"
#include "media/graphics_import.h"

namespace {

// The reference holds a file's path with its closing zero byte.
constexpr OSType kFileDataHandlerSubType = MEDIA_CODE('a', 'l', 'i', 's');

constexpr Size kChunkBytes = 1 << 20;

// An open file; closed with its owner.
struct File {
  int descriptor;
  explicit File(const char *path) noexcept : descriptor(::open(path, O_RDONLY | O_CLOEXEC)) {}
  File(const File &) = delete;
  File &operator=(const File &) = delete;
  ~File() {
    if (descriptor >= 0) ::close(descriptor);
  }

  // As read(2), but not given up for a signal.
  ssize_t read(void *out, size_t count) const noexcept {
    ssize_t got;
    do got = ::read(descriptor, out, count);
    while (got < 0 && errno == EINTR);
    return got;
  }
};

struct HandleOwner {
  Handle handle;
  explicit HandleOwner(Handle made) noexcept : handle(made) {}
  HandleOwner(const HandleOwner &) = delete;
  HandleOwner &operator=(const HandleOwner &) = delete;
  ~HandleOwner() {
    if (handle) DisposeHandle(handle);
  }
  Handle give() noexcept { return std::exchange(handle, nullptr); }
};

// Grows geometrically: the size that a file claims may be wrong, or missing for a pipe.
OSErr readAll(const File &file, Handle into) noexcept {
  const uint64_t most = CGImageGetDecodeLimits().memoryBytes;
  Size used = 0;
  for (;;) {
    const Size room = GetHandleSize(into);
    if (used == room) {
      if (static_cast<uint64_t>(room) >= most) {
        media::noteDecode(codecs::Fault::tooLarge);
        return codecTooLargeErr;
      }
      SetHandleSize(into, room ? 2 * room : kChunkBytes);
      if (MemError() != noErr) return memFullErr;
      continue;
    }
    const ssize_t got = file.read(*into + used, static_cast<size_t>(room - used));
    if (got < 0) return fnfErr;
    if (got == 0) break;
    used += got;
  }
  SetHandleSize(into, used);
  return noErr;
}

OSErr readFile(const char *path, Handle *bytes) noexcept {
  const File file(path);
  if (file.descriptor < 0) return fnfErr;
  HandleOwner made(NewHandle(0));
  if (!made.handle) return memFullErr;
  const OSErr error = readAll(file, made.handle);
  if (error == noErr) *bytes = made.give();
  return error;
}

bool holdsPath(Handle reference) noexcept {
  const Size size = GetHandleSize(reference);
  return size > 1 && std::memchr(*reference, 0, static_cast<size_t>(size)) == *reference + size - 1;
}

// Finds the bytes behind a reference; *owned is set when they were read for the purpose.
OSErr resolve(Handle reference, OSType type, Handle *data, Handle *owned) noexcept {
  if (type == HandleDataHandlerSubType) {
    if (GetHandleSize(reference) != sizeof(Handle)) return paramErr;
    std::memcpy(data, *reference, sizeof(Handle));
    return *data ? OSErr{noErr} : OSErr{nilHandleErr};
  }
  if (type != kFileDataHandlerSubType || !holdsPath(reference)) return paramErr;
  const OSErr error = readFile(*reference, owned);
  *data = *owned;
  return error;
}

// The surest importer for the data, with the data set.
OSErr openImporterFor(Handle data, GraphicsImportComponent *importer) noexcept {
  const ComponentTable *table = media::findImporterFor(reinterpret_cast<const uint8_t *>(*data),
                                                       static_cast<size_t>(GetHandleSize(data)));
  if (!table) {
    media::noteDecode(codecs::Fault::unknownFormat);
    return cantFindHandler;
  }
  if (const OSErr error = media::openComponent(table, importer); error != noErr) return error;
  const ComponentResult error = GraphicsImportSetDataHandle(*importer, data);
  if (error == noErr) return noErr;
  CloseComponent(*importer);
  *importer = nullptr;
  return static_cast<OSErr>(error);
}

OSErr makeFileReference(CFURLRef url, Handle *reference, OSType *type) noexcept {
  UInt8 path[PATH_MAX];
  if (!CFURLGetFileSystemRepresentation(url, true, path, sizeof path)) return paramErr;
  *type = kFileDataHandlerSubType;
  return PtrToHand(path, reference, static_cast<Size>(std::strlen(reinterpret_cast<char *>(path)) + 1));
}

}  // namespace

OSErr QTNewDataReferenceFromFullPathCFString(CFStringRef path, int32_t pathStyle, uint32_t flags,
                                             Handle *dataReference, OSType *dataReferenceType) {
  if (!dataReference || !dataReferenceType) return paramErr;
  *dataReference = nullptr;
  if (!path || flags || (pathStyle != kQTPOSIXPathStyle && pathStyle != kQTNativeDefaultPathStyle))
    return paramErr;
  const auto url =
      cf::adopt(CFURLCreateWithFileSystemPath(kCFAllocatorDefault, path, kCFURLPOSIXPathStyle, false));
  return url ? makeFileReference(url.get(), dataReference, dataReferenceType) : OSErr{paramErr};
}

OSErr QTNewDataReferenceFromCFURL(CFURLRef url, uint32_t flags, Handle *dataReference,
                                  OSType *dataReferenceType) {
  if (!dataReference || !dataReferenceType) return paramErr;
  *dataReference = nullptr;
  if (!url || flags) return paramErr;
  return makeFileReference(url, dataReference, dataReferenceType);
}

OSErr GetGraphicsImporterForDataRefWithFlags(Handle dataReference, OSType dataReferenceType,
                                             GraphicsImportComponent *importer, long flags) {
  if (!importer) return paramErr;
  *importer = nullptr;
  if (!dataReference) return nilHandleErr;
  if (flags) return paramErr;
  Handle data = nullptr, owned = nullptr;
  if (const OSErr error = resolve(dataReference, dataReferenceType, &data, &owned); error != noErr)
    return error;
  HandleOwner ownedData(owned);
  const OSErr error = openImporterFor(data, importer);
  if (error == noErr) (*importer)->ownedData = ownedData.give();
  return error;
}
