#include "codec_fuzzing.h"
#include "media/codecs/tga.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t size) {
  return fuzzDecoder(codecs::decodeTga, bytes, size);
}
