#include "facts.h"

#include "failure.h"
#include "hush.h"
#include "image.h"
#include "media/inspection.h"

namespace {

CGImageFileInfo inspect(CFDataRef file) {
  const Hush hush;
  CGImageFileInfo info = {};
  const auto bytes = bytesOf(file);
  if (!CGImageInspectData(bytes.data(), bytes.size(), &info)) throw Failure(decodeFault());
  return info;
}

}  // namespace

Facts factsOf(CFDataRef file, Opcodes opcodes) {
  const CGImageFileInfo info = inspect(file);
  Facts facts;
  facts.format = info.format;
  facts.width = info.width;
  facts.height = info.height;
  facts.bitsPerPixel = 8 * (info.colorComponents + (info.hasAlpha ? 1 : 0));
  facts.color = info.colorComponents == 1 ? "gray" : "RGB";
  facts.hasAlpha = info.hasAlpha;
  if (*info.profileName) facts.profile = info.profileName;
  facts.dotsPerInchX = info.dotsPerInchX;
  facts.dotsPerInchY = info.dotsPerInchY;
  facts.fileBytes = bytesOf(file).size();
  facts.picture = pictureFactsOf(file, opcodes);
  return facts;
}
