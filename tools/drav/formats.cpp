#include "formats.h"

#include <algorithm>
#include <string_view>

#include "media/formats.h"

namespace {

// "jpg|jpeg" in pieces.
std::vector<std::string> piecesOf(std::string_view list) {
  std::vector<std::string> pieces;
  for (size_t start = 0; start < list.size();) {
    const size_t end = std::min(list.find('|', start), list.size());
    pieces.emplace_back(list.substr(start, end - start));
    start = end + 1;
  }
  return pieces;
}

std::vector<Format> askPlatform() {
  std::vector<Format> formats(CGImageGetFormatCount());
  for (size_t i = 0; i < formats.size(); ++i) {
    CGImageFormatInfo info = {};
    CGImageGetFormat(i, &info);
    formats[i] = {info.name,     piecesOf(info.extensions), info.reads, info.writes, info.exporter,
                  info.mostSide, info.holdsDrawings != 0};
  }
  return formats;
}

}  // namespace

std::span<const Format> allFormats() {
  static const std::vector<Format> formats = askPlatform();
  return formats;
}

const Format *formatForExtension(std::string extension) {
  std::ranges::transform(extension, extension.begin(),
                         [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 'a' - 'A') : c; });
  for (const Format &format : allFormats()) {
    if (std::ranges::find(format.extensions, extension) != format.extensions.end()) return &format;
  }
  return nullptr;
}

const Format *formatForBytes(std::span<const uint8_t> bytes) {
  const size_t index = CGImageRecogniseFormat(bytes.data(), bytes.size());
  return index < allFormats().size() ? &allFormats()[index] : nullptr;
}

std::string writtenExtensions() {
  std::string list;
  for (const Format &format : allFormats()) {
    if (!format.isWritten()) continue;
    for (const std::string &extension : format.extensions) list += (list.empty() ? "" : ", ") + extension;
  }
  return list;
}
