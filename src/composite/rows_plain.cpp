#include "composite/rows_plain.h"

#include <utility>

namespace drav {
namespace {

template <size_t Format, size_t Mode>
void plainRow(const uint8_t *source, uint8_t *destination, size_t pixels) noexcept {
  constexpr size_t step = bytesPerPixel(static_cast<PixelFormat>(Format));
  const DRAVCFCompositeFunction kernel = kKernels[Format][Mode];
  for (size_t x = 0; x < pixels; ++x) kernel(source + x * step, destination + x * step);
}

template <size_t Format, size_t... Mode>
constexpr std::array<RowFunction, kBlendModeCount> rowsOf(std::index_sequence<Mode...>) {
  return {&plainRow<Format, Mode>...};
}

using EveryMode = std::make_index_sequence<kBlendModeCount>;

}  // namespace

constinit const RowTable kPlainRows{
    "plain", {{rowsOf<0>(EveryMode{}), rowsOf<1>(EveryMode{}), rowsOf<2>(EveryMode{})}}};

void blendOnePixel(PixelFormat format, DRAVCFBlendMode mode, const uint8_t *source,
                   uint8_t *destination) noexcept {
  kKernels[static_cast<size_t>(format)][mode](source, destination);
}

}  // namespace drav
