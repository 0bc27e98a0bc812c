// Assertions of the tracer, which stay on in every build.
#pragma once

namespace drav::path {

// Writes out what the tracer had to say so far, then one line to standard error, and aborts.
[[noreturn]] void assertionFailed(const char *file, unsigned line, const char *text) noexcept;

}  // namespace drav::path

// The text is given apart from the condition where it is spelt otherwise: the texts are part of the
// interface.
#define DRAV_PATH_ASSERT(condition, text)                                                       \
  do {                                                                                          \
    if (!(condition)) ::drav::path::assertionFailed(__FILE_NAME__, unsigned{__LINE__}, (text)); \
  } while (false)

// For a condition whose spelling is the text.
#define DRAV_PATH_CHECK(condition) DRAV_PATH_ASSERT(condition, #condition)
