#include "media/builtin_components.h"

#include <array>

#include "media/codecs/registry.h"

namespace media {
namespace {

// More than there are codes.
constexpr size_t kMaxComponents = 32;

struct Builtins {
  std::array<ComponentTable, kMaxComponents> tables{};
  size_t count = 0;

  Builtins() noexcept {
    for (const codecs::CodecRecord *codec : codecs::all()) {
      for (const uint32_t code : codec->importerCodes) add(kImporterFunctions, code, codec);
      if (codec->encode) add(kExporterFunctions, codec->exporterCode, codec);
    }
  }

  void add(const ComponentTable &functions, OSType code, const codecs::CodecRecord *codec) noexcept {
    if (count == tables.size()) return;
    ComponentTable &table = tables[count++];
    table = functions;
    table.subType = code;
    table.context = const_cast<codecs::CodecRecord *>(codec);
  }
};

}  // namespace

std::span<const ComponentTable> builtinComponents() noexcept {
  static const Builtins builtins;
  return {builtins.tables.data(), builtins.count};
}

}  // namespace media
