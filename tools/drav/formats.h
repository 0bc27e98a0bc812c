// The file formats of the tool. A new one is a new row of the table.
#pragma once

#include <DravKit/DravKit.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

struct Format {
  const char *name;                     // for people
  std::vector<std::string> extensions;  // in lower case; the first is the one that outputs get
  DRAVCFImageFormat loadAs;             // which loader; unknown where the library decides by content
  std::string_view signature;           // what its files start with; empty: no fixed start
  DRAVCFImageExporterRef (*createExporter)(CFAllocatorRef);  // null: read only
};

std::span<const Format> allFormats();

// The format that an extension without its dot means, in any case; null for none.
const Format *formatForExtension(std::string extension);

// The format whose signature these bytes start with; null for none.
const Format *formatForBytes(std::span<const uint8_t> bytes);

// The extensions of every format that is written, for messages: "png, jpg, jpeg".
std::string writtenExtensions();
