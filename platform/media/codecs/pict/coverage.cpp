#include "media/codecs/pict/coverage.h"

namespace codecs::pict {
namespace {

// Every pixel takes the most of those up to `before` before it and `after` behind it, in steps of `stride`.
std::vector<uint8_t> spread(const std::vector<uint8_t> &values, size_t width, size_t height, int before,
                            int after, bool isAcross) {
  std::vector<uint8_t> out(values.size());
  const size_t length = isAcross ? width : height, lines = isAcross ? height : width;
  const size_t step = isAcross ? 1 : width, lineStep = isAcross ? width : 1;
  for (size_t line = 0; line < lines; ++line) {
    for (size_t i = 0; i < length; ++i) {
      const size_t first = i >= static_cast<size_t>(before) ? i - static_cast<size_t>(before) : 0;
      const size_t last = std::min(i + static_cast<size_t>(after), length - 1);
      uint8_t most = 0;
      for (size_t k = first; k <= last; ++k) most = std::max(most, values[line * lineStep + k * step]);
      out[line * lineStep + i * step] = most;
    }
  }
  return out;
}

}  // namespace

Coverage hollowed(const Coverage &letters, int shadow) {
  Coverage hollow{letters.box, {}};
  const auto width = static_cast<size_t>(letters.box.width()),
             height = static_cast<size_t>(letters.box.height());
  hollow.values = spread(letters.values, width, height, 1 + shadow, 1, true);
  hollow.values = spread(hollow.values, width, height, 1 + shadow, 1, false);
  for (size_t i = 0; i < hollow.values.size(); ++i)
    hollow.values[i] = static_cast<uint8_t>(hollow.values[i] * (255 - letters.values[i]) / 255);
  return hollow;
}

}  // namespace codecs::pict
