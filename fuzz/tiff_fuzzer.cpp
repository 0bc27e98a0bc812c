#include "codec_fuzzing.h"
#include "media/codecs/tiff.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t size) {
  return fuzzDecoder(codecs::decodeTiff, bytes, size);
}
