#include "codec_fuzzing.h"
#include "media/codecs/gif.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t size) {
  return fuzzDecoder(codecs::decodeGif, bytes, size);
}
