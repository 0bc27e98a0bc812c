// The built-in exporters: a codec behind the component calls.

#include <cstring>
#include <new>

#include "foundation/guard.h"
#include "media/builtin_components.h"
#include "media/codecs/registry.h"
#include "media/export_rows.h"

namespace media {
namespace {

OSErr open(const ComponentTable *table, void **self) {
  *self = table->context;
  return noErr;
}

ComponentResult fill(Handle output, const std::vector<uint8_t> &file) noexcept {
  SetHandleSize(output, static_cast<Size>(file.size()));
  if (MemError() != noErr) return memFullErr;
  std::memcpy(*output, file.data(), file.size());
  return noErr;
}

ComponentResult encodeInto(const codecs::CodecRecord &codec, CGImageRef image, Handle output) {
  const auto rows = ExportRows::make(image, codec.alphaSupport);
  if (!rows) return codecErr;
  std::vector<uint8_t> file;
  const codecs::Fault fault = codec.encode(rows->source(), file);
  if (fault == codecs::Fault::noMemory) return memFullErr;
  return fault == codecs::Fault::none ? fill(output, file) : ComponentResult{codecErr};
}

ComponentResult encode(void *self, CGImageRef image, Handle output) {
  return cf::guardedOr(ComponentResult{memFullErr}, [&] {
    return encodeInto(*static_cast<const codecs::CodecRecord *>(self), image, output);
  });
}

}  // namespace

constinit const ComponentTable kExporterFunctions{
    .type = GraphicsExporterComponentType,
    .subType = 0,
    .context = nullptr,
    .open = open,
    .close = nullptr,
    .validate = nullptr,
    .setData = nullptr,
    .getDescription = nullptr,
    .getProfile = nullptr,
    .draw = nullptr,
    .encode = encode,
};

}  // namespace media
