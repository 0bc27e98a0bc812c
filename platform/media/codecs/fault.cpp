#include "media/codecs/fault.h"

namespace codecs {

const char *describe(Fault fault) noexcept {
  switch (fault) {
    case Fault::none:
      return nullptr;
    case Fault::unknownFormat:
      return "not an image this tool knows";
    case Fault::truncated:
      return "truncated";
    case Fault::damaged:
      return "damaged";
    case Fault::unsupported:
      return "a variant that is not supported";
    case Fault::tooLarge:
      return "too large";
    case Fault::noMemory:
      return "out of memory";
  }
  return "damaged";
}

}  // namespace codecs
