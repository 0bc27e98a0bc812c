#include "media/decode_fault.h"

#include "media/inspection.h"

namespace media {
namespace {

thread_local codecs::Fault lastFault = codecs::Fault::none;

}  // namespace

void noteDecode(codecs::Fault fault) noexcept { lastFault = fault; }

ComponentResult errorFor(codecs::Fault fault) noexcept {
  switch (fault) {
    case codecs::Fault::none:
      return noErr;
    case codecs::Fault::unknownFormat:
    case codecs::Fault::truncated:
    case codecs::Fault::damaged:
      return codecBadDataErr;
    case codecs::Fault::unsupported:
      return codecUnsupportedErr;
    case codecs::Fault::tooLarge:
      return codecTooLargeErr;
    case codecs::Fault::noMemory:
      return memFullErr;
  }
  return codecBadDataErr;
}

}  // namespace media

const char *CGImageGetLastDecodeFault(void) { return codecs::describe(media::lastFault); }
