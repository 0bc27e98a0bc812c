#include "description.h"

#include <cstdio>

#include "failure.h"
#include "input.h"

namespace {

using Json = nlohmann::ordered_json;

// Each costs a few hundred bytes of memory there, and a picture may have millions.
constexpr size_t kMostListedAsJson = 1'000'000;

void printArea(const char *what, const Area &area) {
  std::printf("  %-10s  %ld x %ld at %ld,%ld\n", what, area.width, area.height, area.x, area.y);
}

void printPicture(const PictureFacts &picture) {
  std::printf("  version     %d%s\n", picture.version, picture.isExtended ? ", extended" : "");
  printArea("frame", picture.frame);
  if (picture.drawing != picture.frame) printArea("drawing", picture.drawing);
  std::printf("  opcodes     %llu\n", static_cast<unsigned long long>(picture.opcodes));
  for (const OpcodeFact &opcode : picture.list)
    std::printf("    %04X  %-16s %zu bytes\n", opcode.code, opcode.name, opcode.operandBytes);
}

Json areaAsJson(const Area &area) {
  return {{"x", area.x}, {"y", area.y}, {"width", area.width}, {"height", area.height}};
}

Json listAsJson(const std::vector<OpcodeFact> &list) {
  if (list.size() > kMostListedAsJson)
    throw Failure("has " + std::to_string(list.size()) + " opcodes, too many for JSON: leave out --json");
  Json array = Json::array();
  for (const OpcodeFact &opcode : list)
    array.push_back({{"code", opcode.code}, {"name", opcode.name}, {"bytes", opcode.operandBytes}});
  return array;
}

Json pictureAsJson(const PictureFacts &picture) {
  Json object{{"version", picture.version},
              {"extended", picture.isExtended},
              {"frame", areaAsJson(picture.frame)},
              {"drawing", areaAsJson(picture.drawing)},
              {"opcodes", picture.opcodes}};
  if (!picture.list.empty()) object["list"] = listAsJson(picture.list);
  return object;
}

}  // namespace

void printFacts(const std::string &name, const Facts &facts) {
  std::printf("%s\n", shownName(name).c_str());
  std::printf("  format      %s\n", facts.format.c_str());
  std::printf("  size        %zu x %zu pixels\n", facts.width, facts.height);
  std::printf("  bits        %zu a component, %zu a pixel\n", facts.bitsPerComponent, facts.bitsPerPixel);
  std::printf("  colour      %s\n", facts.color.c_str());
  std::printf("  alpha       %s\n", facts.hasAlpha ? "yes" : "no");
  std::printf("  profile     %s\n", facts.profile ? shownName(*facts.profile).c_str() : "none");
  if (facts.dotsPerInchX > 0) {
    std::printf("  resolution  %.5g x %.5g dots per inch\n", facts.dotsPerInchX, facts.dotsPerInchY);
  }
  std::printf("  file        %zu bytes\n", facts.fileBytes);
  if (facts.picture) printPicture(*facts.picture);
}

Json factsAsJson(const std::string &name, const Facts &facts) {
  Json object{{"file", name},
              {"format", facts.format},
              {"width", facts.width},
              {"height", facts.height},
              {"bitsPerComponent", facts.bitsPerComponent},
              {"bitsPerPixel", facts.bitsPerPixel},
              {"color", facts.color},
              {"alpha", facts.hasAlpha},
              {"profile", nullptr},
              {"resolution", nullptr},
              {"fileBytes", facts.fileBytes}};
  if (facts.profile) object["profile"] = *facts.profile;
  if (facts.dotsPerInchX > 0) object["resolution"] = {{"x", facts.dotsPerInchX}, {"y", facts.dotsPerInchY}};
  if (facts.picture) object["picture"] = pictureAsJson(*facts.picture);
  return object;
}
