#include "svg.h"

#include <cstdio>

namespace {

std::string paint(const std::optional<Ink> &ink) { return ink ? hexOf(*ink) : "none"; }

std::string number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", value);
  return text;
}

void append(std::string &data, char letter, long coordinate) {
  data += letter;
  data += std::to_string(coordinate);
}

// The shortest of the ways to say it.
void appendLine(std::string &data, const Place &from, const Place &to) {
  if (to.y == from.y) return append(data, 'H', to.x);
  if (to.x == from.x) return append(data, 'V', to.y);
  append(data, 'L', to.x);
  append(data, ' ', to.y);
}

void appendLoop(std::string &data, const Loop &loop) {
  if (loop.empty()) return;
  if (!data.empty()) data += '\n';
  append(data, 'M', loop.front().x);
  append(data, ' ', loop.front().y);
  for (size_t i = 1; i < loop.size(); ++i) appendLine(data, loop[i - 1], loop[i]);
  data += 'Z';
}

}  // namespace

std::string svgOf(const Outline &outline, const LineStyle &style) {
  const std::string width = std::to_string(outline.width), height = std::to_string(outline.height);
  std::string data;
  for (const Loop &loop : outline.loops) appendLoop(data, loop);
  // The corners of the outline are the centres of pixels.
  return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + width + "\" height=\"" + height +
         "\" viewBox=\"0 0 " + width + " " + height +
         "\">\n<path transform=\"translate(0.5 0.5)\" fill-rule=\"evenodd\" fill=\"" + paint(style.fill) +
         "\" stroke=\"" + paint(style.stroke) + "\" stroke-width=\"" + number(style.strokeWidth) +
         "\" stroke-linejoin=\"round\"\nd=\"" + data + "\"/>\n</svg>\n";
}
