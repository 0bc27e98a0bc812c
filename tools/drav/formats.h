// The file formats of the tool: those that the platform knows.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

struct Format {
  std::string name;                     // for people
  std::vector<std::string> extensions;  // in lower case; the first is the one that outputs get
  std::string reads, writes;            // what of it, for people
  uint32_t exporter = 0;                // the code of what writes it; 0: read only
  uint32_t mostSide = 0;                // pixels a side that it holds when written
  bool holdsDrawings = false;           // it can be read at any size

  bool isWritten() const noexcept { return exporter != 0; }
};

std::span<const Format> allFormats();

// The format that an extension without its dot means, in any case; null for none.
const Format *formatForExtension(std::string extension);

// The format of a file with these bytes; null for none.
const Format *formatForBytes(std::span<const uint8_t> bytes);

// The extensions of every format that is written, for messages: "png, jpg, jpeg".
std::string writtenExtensions();
