#include "path/text_output.h"

#include <charconv>
#include <cmath>
#include <cstring>

namespace drav::path {
namespace {

thread_local TextOutput *newestOutput = nullptr;

// Coordinates are whole numbers and nearly always below a million, where the general format prints them as
// integers do, an order of magnitude faster.
bool printsAsInteger(float number) noexcept {
  return number >= 0.0F && number < 1.0e6F && !std::signbit(number) && std::trunc(number) == number;
}

}  // namespace

TextOutput::TextOutput(std::FILE *stream)
    : stream_(stream), buffer_(new char[kCapacity]), older_(newestOutput) {
  newestOutput = this;
}

TextOutput::~TextOutput() {
  flush();
  newestOutput = older_;
}

char *TextOutput::room(std::size_t bytes) noexcept {
  if (kCapacity - used_ < bytes) {
    std::fwrite(buffer_.get(), 1, used_, stream_);
    used_ = 0;
  }
  return buffer_.get() + used_;
}

void TextOutput::appendLong(std::string_view text) noexcept {
  room(kCapacity);
  std::fwrite(text.data(), 1, text.size(), stream_);
}

TextOutput &TextOutput::operator<<(std::string_view text) {
  if (text.size() > kCapacity) {
    appendLong(text);
    return *this;
  }
  std::memcpy(room(text.size()), text.data(), text.size());
  used_ += text.size();
  return *this;
}

TextOutput &TextOutput::operator<<(int number) {
  char *at = room(kLongestNumber);
  used_ += static_cast<std::size_t>(std::to_chars(at, at + kLongestNumber, number).ptr - at);
  return *this;
}

TextOutput &TextOutput::operator<<(std::size_t number) {
  char *at = room(kLongestNumber);
  used_ += static_cast<std::size_t>(std::to_chars(at, at + kLongestNumber, number).ptr - at);
  return *this;
}

TextOutput &TextOutput::operator<<(float number) {
  if (printsAsInteger(number)) return *this << static_cast<int>(number);
  char *at = room(kLongestNumber);
  const auto end = std::to_chars(at, at + kLongestNumber, number, std::chars_format::general, 6);
  used_ += static_cast<std::size_t>(end.ptr - at);
  return *this;
}

TextOutput &TextOutput::hexadecimal(std::uint32_t number) {
  char *at = room(kLongestNumber);
  used_ += static_cast<std::size_t>(std::to_chars(at, at + kLongestNumber, number, 16).ptr - at);
  return *this;
}

void TextOutput::flush() noexcept {
  room(kCapacity);
  std::fflush(stream_);
}

void TextOutput::flushFrom(TextOutput *newest) noexcept {
  if (newest == nullptr) return;
  flushFrom(newest->older_);
  newest->flush();
}

void TextOutput::flushAll() noexcept { flushFrom(newestOutput); }

}  // namespace drav::path
