// Buffered text for the tracer's commentary.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string_view>

namespace drav::path {

// Collects text and hands it to a C stream in large pieces. A trace of a noisy image writes hundreds of
// megabytes, a few bytes at a time; formatted printing costs more there than the tracing itself.
//
// Nothing else may be printed to the same C stream by this thread while a TextOutput with pending text lives,
// or the two would change places. All text has reached the file behind the stream when the destructor is
// done, and also when an assertion ends the process (flushAll).
class TextOutput {
 public:
  explicit TextOutput(std::FILE *stream);
  ~TextOutput();
  TextOutput(const TextOutput &) = delete;
  TextOutput &operator=(const TextOutput &) = delete;

  TextOutput &operator<<(std::string_view text);
  TextOutput &operator<<(int number);
  TextOutput &operator<<(std::size_t number);
  // As C++ streams print a float by default: six significant digits, "1e+06" from a million on.
  TextOutput &operator<<(float number);
  // Lower-case hexadecimal without prefix.
  TextOutput &hexadecimal(std::uint32_t number);

  void flush() noexcept;
  // Flushes every TextOutput of this thread, the oldest first.
  static void flushAll() noexcept;

 private:
  static constexpr std::size_t kCapacity = std::size_t{1} << 16;
  static constexpr std::size_t kLongestNumber = 32;

  static void flushFrom(TextOutput *newest) noexcept;
  char *room(std::size_t bytes) noexcept;
  void appendLong(std::string_view text) noexcept;

  std::FILE *stream_;
  std::unique_ptr<char[]> buffer_;
  std::size_t used_ = 0;
  TextOutput *older_;
};

}  // namespace drav::path
