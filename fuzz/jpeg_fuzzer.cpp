#include "codec_fuzzing.h"
#include "media/codecs/jpeg.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t size) {
  return fuzzDecoder(codecs::decodeJpeg, bytes, size);
}
