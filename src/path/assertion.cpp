#include "path/assertion.h"

#include <cstdio>
#include <cstdlib>

#include "path/text_output.h"

namespace drav::path {

void assertionFailed(const char *file, unsigned line, const char *text) noexcept {
  TextOutput::flushAll();
  std::fprintf(stderr, "%s:%u: failed assertion `%s'\n", file, line, text);
  std::abort();
}

}  // namespace drav::path
