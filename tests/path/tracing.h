// What the tracer's tests share: images drawn as text, captured output, subpaths written as text.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "path/path_finder.h"
#include "path/plain_path_finder.h"

namespace drav::path {

// The same numbers on every machine.
class RandomNumbers {
 public:
  explicit RandomNumbers(unsigned seed) : engine_(seed) {}
  std::uint32_t operator()() { return static_cast<std::uint32_t>(engine_()); }

 private:
  std::mt19937 engine_;
};

// Pixels of 4 bytes, alpha first; only the alphas matter.
struct Picture {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> bytes;

  Picture(int pictureWidth, int pictureHeight)
      : width(pictureWidth), height(pictureHeight), bytes(std::size_t{4} * pictureWidth * pictureHeight, 0) {}

  // 'X' is opaque, anything else transparent.
  static Picture of(const std::vector<std::string> &rows) {
    Picture picture(static_cast<int>(rows.at(0).size()), static_cast<int>(rows.size()));
    for (int row = 0; row < picture.height; ++row) {
      for (int column = 0; column < picture.width; ++column) {
        if (rows[static_cast<std::size_t>(row)].at(static_cast<std::size_t>(column)) == 'X') {
          picture.alpha(column, row) = 255;
        }
      }
    }
    return picture;
  }

  // Each pixel opaque with the given chance in a hundred; colour bytes are noise.
  static Picture random(int width, int height, unsigned percent, RandomNumbers &numbers) {
    Picture picture(width, height);
    for (std::uint8_t &byte : picture.bytes) byte = static_cast<std::uint8_t>(numbers());
    for (int row = 0; row < height; ++row) {
      for (int column = 0; column < width; ++column) {
        picture.alpha(column, row) = numbers() % 100 < percent ? 255 : 0;
      }
    }
    return picture;
  }

  std::uint8_t &alpha(int column, int row) {
    return bytes.at(std::size_t{4} * (static_cast<std::size_t>(width) * row + column));
  }
  void fill(int left, int top, int right, int bottom) {
    for (int row = top; row < bottom; ++row) {
      for (int column = left; column < right; ++column) alpha(column, row) = 255;
    }
  }

  ImageInfo info(float threshold = 0.0F) const { return {bytes.data(), width, height, threshold}; }
  std::unique_ptr<bool[]> flags() const {
    return std::make_unique<bool[]>(static_cast<std::size_t>(width) * height);
  }
};

// A C stream into memory.
class MemoryStream {
 public:
  MemoryStream() : stream_(open_memstream(&text_, &size_)) {}
  ~MemoryStream() {
    std::fclose(stream_);
    std::free(text_);
  }
  MemoryStream(const MemoryStream &) = delete;
  MemoryStream &operator=(const MemoryStream &) = delete;

  std::FILE *get() const { return stream_; }
  // What had reached the stream when it was last flushed.
  std::string text() const { return {text_, size_}; }

 private:
  char *text_ = nullptr;
  std::size_t size_ = 0;
  std::FILE *stream_;
};

// What work(output) prints.
template <class Work>
std::string textOf(Work &&work) {
  const MemoryStream stream;
  {
    TextOutput output(stream.get());
    work(output);
  }
  return stream.text();
}

// "M0,2 L2,2 Z" for a move-to, an add-line-to and a close.
inline std::string written(const Subpath &subpath) {
  std::string text;
  for (const PathElement &element : subpath) {
    if (!text.empty()) text += ' ';
    if (element.type == kCGPathElementCloseSubpath && element.point.x == 0 && element.point.y == 0) {
      text += 'Z';
      continue;
    }
    char number[64];
    const char letter = element.type == kCGPathElementMoveToPoint      ? 'M'
                        : element.type == kCGPathElementAddLineToPoint ? 'L'
                                                                       : '?';
    std::snprintf(number, sizeof number, "%c%.9g,%.9g", letter, static_cast<double>(element.point.x),
                  static_cast<double>(element.point.y));
    text += number;
  }
  return text;
}
using Lines = std::vector<std::string>;
inline Lines written(const SubpathList &list) {
  Lines lines;
  for (const Subpath &subpath : list) lines.push_back(written(subpath));
  return lines;
}

// The reverse of written().
inline Subpath subpathOf(const std::string &text) {
  Subpath subpath;
  std::size_t at = 0;
  while (at < text.size()) {
    if (text[at] == 'Z') {
      subpath.push_back(Close());
      ++at;
    } else {
      CGPoint point{0, 0};
      int used = 0;
      std::sscanf(text.c_str() + at + 1, "%f,%f%n", &point.x, &point.y, &used);
      subpath.push_back(text[at] == 'M' ? MoveTo(point) : LineTo(point));
      at += static_cast<std::size_t>(used) + 1;
    }
    while (at < text.size() && text[at] == ' ') ++at;
  }
  return subpath;
}
inline SubpathList listOf(const Lines &lines) {
  SubpathList list;
  for (const std::string &line : lines) list.push_back(subpathOf(line));
  return list;
}

inline plain::Paths plainly(const SubpathList &list) {
  plain::Paths paths;
  for (const Subpath &subpath : list) {
    plain::Path &path = paths.emplace_back();
    for (const PathElement &element : subpath) {
      path.push_back({element.type, element.point.x, element.point.y});
    }
  }
  return paths;
}

struct Traced {
  SubpathList list;
  std::string text;
};
inline Traced traced(const Picture &picture, float threshold = 0.0F) {
  Traced result;
  const auto visited = picture.flags();
  result.text = textOf([&](TextOutput &output) {
    result.list = TraceSubpaths(picture.info(threshold), visited.get(), output);
  });
  return result;
}

// A regular expression for the line of a failed assertion in a file of the tracer.
inline std::string assertionLine(const std::string &file, const std::string &text) {
  std::string pattern = file + ":[0-9]+: failed assertion `";
  for (const char letter : text) {
    if (letter == '(' || letter == ')' || letter == '.') pattern += '\\';
    pattern += letter;
  }
  return pattern + "'\n";
}

}  // namespace drav::path
