#include "formats.h"

#include <algorithm>

using namespace std::string_view_literals;

std::span<const Format> allFormats() {
  static const std::vector<Format> formats = {
      {"PNG", {"png"}, kDRAVCFImageFormatPNG, "\x89PNG\r\n\x1a\n"sv, DRAVCFImageExporterCreatePNG},
      {"JPEG", {"jpg", "jpeg"}, kDRAVCFImageFormatJPEG, "\xff\xd8\xff"sv, DRAVCFImageExporterCreateJPEG},
  };
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
  for (const Format &format : allFormats()) {
    const std::string_view signature = format.signature;
    const bool starts = !signature.empty() && bytes.size() >= signature.size() &&
                        std::equal(signature.begin(), signature.end(), bytes.begin(),
                                   [](char a, uint8_t b) { return static_cast<uint8_t>(a) == b; });
    if (starts) return &format;
  }
  return nullptr;
}

std::string writtenExtensions() {
  std::string list;
  for (const Format &format : allFormats()) {
    if (!format.createExporter) continue;
    for (const std::string &extension : format.extensions) list += (list.empty() ? "" : ", ") + extension;
  }
  return list;
}
